// SPDX-License-Identifier: MIT
#pragma once

#include "Platform.h"
#include "layout/AXWorkspaceArranger.h"
#include "locations/LocationRepository.h"
#include "safari/SafariAXInspector.h"
#include "setup/SystemPreflightProbe.h"
#include "shell/CommandLine.h"
#include "shell/TerminationSignals.h"
#include "shell/UnattendedRun.h"
#include "simulator/SimctlService.h"
#include "support/TaskScope.h"
#include "workspace/ProfileRepository.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QMainWindow>
#include <QObject>

#include <memory>

namespace corvanta {

/// The program: it makes the one coordinator with its services and shows the window on it.
class CorvantaApp final : public QObject {
    Q_OBJECT

public:
    CorvantaApp(std::unique_ptr<Platform> platform, CommandLine commandLine);

    /// Shows the window and starts what its first appearance and the command line ask for. The event loop ends with
    /// the exit status.
    void start();

private:
    void windowChanged(QWidget* window);
    [[nodiscard]] QCoro::Task<void> firstAppearance();
    /// False when the command line names a device that is not there.
    [[nodiscard]] bool selectRequestedDevice();
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
    TerminationSignals m_terminationSignals;
    std::shared_ptr<ControlWindow> m_controlWindow;
    std::unique_ptr<QMainWindow> m_window;
    bool m_isLeaving = false;
};

} // namespace corvanta
