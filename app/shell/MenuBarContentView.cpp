// SPDX-License-Identifier: MIT
#include "shell/MenuBarContentView.h"

#include "shell/CommandAction.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

MenuBarContentView::MenuBarContentView(ShellCommands& commands)
    : m_commands(commands)
    , m_status(addAction(QString())) {
    m_status->setEnabled(false);
    connect(&m_commands, &ShellCommands::stateChanged, this, &MenuBarContentView::showStatus);
    showStatus();
    addAction(u"Open Corvanta"_s, this, &MenuBarContentView::openRequested);
    addSeparator();
    addAction(new CommandAction(ShellCommand::startWorkspace, m_commands, this, [this] { Q_EMIT openRequested(); }));
    addAction(new CommandAction(ShellCommand::reloadPage, m_commands, this));
    addAction(new CommandAction(ShellCommand::retileWindows, m_commands, this));
    addAction(new CommandAction(ShellCommand::stopWorkspace, m_commands, this));
    addSeparator();
    addAction(new CommandAction(ShellCommand::checkForUpdates, m_commands, this));
    addSeparator();
    QAction* const quit = addAction(u"Quit Corvanta"_s, this, &MenuBarContentView::quitRequested);
    quit->setShortcut(Qt::CTRL | Qt::Key_Q);
    for (QAction* const action : actions())
        action->setMenuRole(QAction::NoRole);
}

void MenuBarContentView::showStatus() {
    m_status->setText(statusText(m_commands.state().phase));
}

} // namespace corvanta
