// SPDX-License-Identifier: MIT
#pragma once

#include "Platform.h"
#include "layout/AXWorkspaceArranger.h"
#include "locations/LocationRepository.h"
#include "safari/SafariAXInspector.h"
#include "setup/SystemPreflightProbe.h"
#include "shell/CommandLine.h"
#include "shell/MenuBarExtra.h"
#include "shell/ShellCommands.h"
#include "shell/TerminationSignals.h"
#include "shell/UnattendedRun.h"
#include "shell/UpdateAlertPresenter.h"
#include "shell/WindowPlacement.h"
#include "shell/WorkspaceWindow.h"
#include "simulator/SimctlService.h"
#include "support/Cancellation.h"
#include "support/TaskScope.h"
#include "updates/UpdateChecker.h"
#include "workspace/ProfileRepository.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QNetworkAccessManager>
#include <QObject>
#include <QSystemTrayIcon>

#include <functional>
#include <memory>
#include <vector>

namespace corvanta {

/// The program: it makes the one coordinator with its services, and shows the window and the menus on it.
class CorvantaApp final : public QObject {
    Q_OBJECT

public:
    /// `hasTray` says whether the desktop has a place for the program's icon at the moment.
    CorvantaApp(std::unique_ptr<Platform> platform, CommandLine commandLine,
                std::function<bool()> hasTray = &QSystemTrayIcon::isSystemTrayAvailable);

    /// Opens the window and starts what its first appearance and the command line ask for. The event loop ends with
    /// the exit status.
    void start();

    /// Brings the window forward, opening it if need be, and does what the arguments of another start of the program
    /// ask for.
    void open(const CommandLine& request);

Q_SIGNALS:
    /// A window has all its widgets and is about to be shown.
    void windowMade();

    /// The program ends; nothing is to be asked of it any more.
    void leaving();

private:
    void connectParts();
    /// Opens the window or brings it forward, and activates the program.
    void openWindow();
    void makeWindow();
    /// What is left for the time after the window's first picture.
    void windowAppeared();
    void windowClosing();
    void windowChanged(QWidget* window);
    /// What each opening of the window begins with.
    [[nodiscard]] QCoro::Task<void> firstAppearance();
    /// Shows the icon in the tray and looks for updates, a moment after the window has appeared.
    [[nodiscard]] QCoro::Task<void> settleIn(CancellationToken token);
    [[nodiscard]] QCoro::Task<void> carryOutRequests();
    [[nodiscard]] QCoro::Task<void> carryOut(CommandLine request);
    /// False when the request names a device that is not there.
    [[nodiscard]] QCoro::Task<bool> selectDevice(CommandLine request);
    void leaveEarly();
    /// Stops the workspace, waits for what is still under way, and ends the event loop.
    void quit(int exitStatus);
    [[nodiscard]] QCoro::Task<void> leave(int exitStatus);

    const std::unique_ptr<Platform> m_platform;
    const CommandLine m_commandLine;
    SimctlService m_simulator;
    SafariAXInspector m_safari;
    AXWorkspaceArranger m_arranger;
    SystemPreflightProbe m_preflightProbe;
    ProfileRepository m_profileRepository;
    LocationRepository m_locationRepository;
    WorkspaceCoordinator m_coordinator;
    UnattendedRun m_unattendedRun;
    TaskScope m_tasks;
    CancellationSource m_settling;
    QNetworkAccessManager m_session;
    UpdateChecker m_updateChecker;
    ShellCommands m_commands;
    WindowPlacement m_placement;
    MenuBarExtra m_menuBarExtra;
    TerminationSignals m_terminationSignals;
    std::shared_ptr<ControlWindow> m_controlWindow;
    std::unique_ptr<WorkspaceWindow> m_window;
    UpdateAlertPresenter m_alerts;
    /// What the command lines ask for that has not been done yet.
    std::vector<CommandLine> m_requests;
    int m_appearances = 0;
    bool m_isCarryingOut = false;
    bool m_isLeaving = false;
};

} // namespace corvanta
