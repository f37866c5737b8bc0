// SPDX-License-Identifier: MIT
#pragma once

#include "shell/ShellCommands.h"

#include <QAction>

#include <functional>

namespace corvanta {

/// A menu's item for a command, with the text and the enabled state that the command has at the moment.
class CommandAction final : public QAction {
    Q_OBJECT

public:
    /// `commands` outlives the action; `before` is called first when the item is chosen.
    CommandAction(ShellCommand command, ShellCommands& commands, QObject* parent, std::function<void()> before = {});

private:
    void showState();

    const ShellCommand m_command;
    ShellCommands& m_commands;
};

} // namespace corvanta
