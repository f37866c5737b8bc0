// SPDX-License-Identifier: MIT
#pragma once

#include "shell/ShellCommands.h"

#include <QMenu>

namespace corvanta {

/// The pull-down menu of the program's icon in the system's menu bar or tray.
class MenuBarContentView final : public QMenu {
    Q_OBJECT

public:
    /// `commands` outlives the menu.
    explicit MenuBarContentView(ShellCommands& commands);

Q_SIGNALS:
    /// The window is to be opened and the program brought forward; also before a start.
    void openRequested();
    void quitRequested();

private:
    void showStatus();

    ShellCommands& m_commands;
    QAction* m_status;
};

} // namespace corvanta
