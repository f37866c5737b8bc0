// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop.h"
#include "support/TaskScope.h"
#include "updates/UpdateChecker.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QObject>
#include <QString>

namespace corvanta {

/// What the main menu and the menu-bar menu offer alike.
enum class ShellCommand {
    startWorkspace,
    reloadPage,
    retileWindows,
    stopWorkspace,
    checkForUpdates,
    openWebsite,
    emailSupport,
    copyVersionInformation,
};

/// What the items of the menus depend on.
struct ShellState {
    WorkspacePhase phase = WorkspacePhase::idle;
    bool canStart = false;
    bool canReload = false;
    bool canRetile = false;
    bool canStop = false;
    bool isCheckingForUpdates = false;

    bool operator==(const ShellState&) const = default;
};

/// A command as a menu shows it.
struct MenuItem {
    QString text;
    bool isEnabled = true;

    bool operator==(const MenuItem&) const = default;
};

[[nodiscard]] MenuItem menuItem(ShellCommand command, const ShellState& state);

/// The line of the menu-bar menu that says what the workspace is doing.
[[nodiscard]] QString statusText(WorkspacePhase phase);

/// Carries out the menus' commands and says what they depend on. Main thread only.
class ShellCommands final : public QObject {
    Q_OBJECT

public:
    /// All of it outlives the commands.
    struct Services {
        WorkspaceCoordinator& coordinator;
        UpdateChecker& updateChecker;
        Desktop& desktop;
        TaskScope& tasks;
    };

    explicit ShellCommands(const Services& services, QObject* parent = nullptr);

    [[nodiscard]] ShellState state() const;

    /// Returns at once; what takes time goes on by itself.
    void perform(ShellCommand command);

Q_SIGNALS:
    /// The state may be another one now.
    void stateChanged();

private:
    Services m_services;
};

} // namespace corvanta
