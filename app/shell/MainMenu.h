// SPDX-License-Identifier: MIT
#pragma once

#include "shell/ShellCommands.h"

#include <QObject>

class QMenuBar;

namespace corvanta {

/// The window's menus: File, Workspace and Help.
class MainMenu final : public QObject {
    Q_OBJECT

public:
    /// Fills `menuBar`, which owns this object. `commands` outlives it.
    MainMenu(QMenuBar& menuBar, ShellCommands& commands);

Q_SIGNALS:
    void aboutRequested();
    void closeRequested();
    void quitRequested();

private:
    void addFileMenu(QMenuBar& menuBar);
    static void addWorkspaceMenu(QMenuBar& menuBar, ShellCommands& commands);
    static void addHelpMenu(QMenuBar& menuBar, ShellCommands& commands);
};

} // namespace corvanta
