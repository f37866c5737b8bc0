// SPDX-License-Identifier: MIT
#include "shell/CommandAction.h"

#include <utility>

namespace corvanta {

CommandAction::CommandAction(ShellCommand command, ShellCommands& commands, QObject* parent,
                             std::function<void()> before)
    : QAction(parent)
    , m_command(command)
    , m_commands(commands) {
    // No item is moved to another menu because of the words in it.
    setMenuRole(NoRole);
    connect(&m_commands, &ShellCommands::stateChanged, this, &CommandAction::showState);
    connect(this, &QAction::triggered, &m_commands, [this, first = std::move(before)] {
        if (first)
            first();
        m_commands.perform(m_command);
    });
    showState();
}

void CommandAction::showState() {
    const MenuItem item = menuItem(m_command, m_commands.state());
    setText(item.text);
    setEnabled(item.isEnabled);
}

} // namespace corvanta
