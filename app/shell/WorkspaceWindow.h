// SPDX-License-Identifier: MIT
#pragma once

#include "shell/ShellCommands.h"

#include <QMainWindow>

namespace corvanta {

/// The one window: the workspace view beneath the main menu.
class WorkspaceWindow final : public QMainWindow {
    Q_OBJECT

public:
    /// Takes `content` over. `commands` outlives the window.
    WorkspaceWindow(QWidget* content, ShellCommands& commands);

    /// Shows the window, or brings it back to where it was if it is iconified.
    void bringForward();

Q_SIGNALS:
    /// The window is being closed by whoever uses it; it is still there.
    void closing();
    void quitRequested();

protected:
    void closeEvent(QCloseEvent* event) override;
};

} // namespace corvanta
