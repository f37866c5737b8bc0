// SPDX-License-Identifier: MIT
#include "shell/MainMenu.h"

#include "shell/CommandAction.h"

#include <QMenu>
#include <QMenuBar>

#include <array>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

MainMenu::MainMenu(QMenuBar& menuBar, ShellCommands& commands)
    : QObject(&menuBar) {
    addFileMenu(menuBar);
    addWorkspaceMenu(menuBar, commands);
    addHelpMenu(menuBar, commands);
}

void MainMenu::addFileMenu(QMenuBar& menuBar) {
    QMenu* const menu = menuBar.addMenu(u"File"_s);
    QAction* const about = menu->addAction(u"About Corvanta"_s, this, &MainMenu::aboutRequested);
    about->setMenuRole(QAction::AboutRole);
    menu->addSeparator();
    QAction* const close = menu->addAction(u"Close Window"_s, this, &MainMenu::closeRequested);
    close->setShortcut(Qt::CTRL | Qt::Key_W);
    close->setMenuRole(QAction::NoRole);
    menu->addSeparator();
    QAction* const quit = menu->addAction(u"Quit Corvanta"_s, this, &MainMenu::quitRequested);
    quit->setShortcut(Qt::CTRL | Qt::Key_Q);
    quit->setMenuRole(QAction::QuitRole);
}

void MainMenu::addWorkspaceMenu(QMenuBar& menuBar, ShellCommands& commands) {
    static constexpr std::array items{
        std::pair{ShellCommand::startWorkspace, Qt::CTRL | Qt::Key_Return},
        std::pair{ShellCommand::reloadPage, Qt::CTRL | Qt::SHIFT | Qt::Key_R},
        std::pair{ShellCommand::retileWindows, Qt::CTRL | Qt::SHIFT | Qt::Key_T},
        std::pair{ShellCommand::stopWorkspace, Qt::CTRL | Qt::Key_Period},
    };
    QMenu* const menu = menuBar.addMenu(u"Workspace"_s);
    for (const auto& [command, key] : items) {
        auto* const action = new CommandAction(command, commands, menu);
        action->setShortcut(key);
        menu->addAction(action);
    }
}

void MainMenu::addHelpMenu(QMenuBar& menuBar, ShellCommands& commands) {
    QMenu* const menu = menuBar.addMenu(u"Help"_s);
    menu->addAction(new CommandAction(ShellCommand::checkForUpdates, commands, menu));
    menu->addSeparator();
    menu->addAction(new CommandAction(ShellCommand::openWebsite, commands, menu));
    menu->addAction(new CommandAction(ShellCommand::emailSupport, commands, menu));
    menu->addSeparator();
    menu->addAction(new CommandAction(ShellCommand::copyVersionInformation, commands, menu));
}

} // namespace corvanta
