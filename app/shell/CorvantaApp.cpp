// SPDX-License-Identifier: MIT
#include "shell/CorvantaApp.h"

#include "window/Appearance.h"
#include "window/Symbols.h"
#include "window/WorkspaceView.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QTimer>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int maxRecents = 10;
/// A child process may take its time; leaving does not wait longer than this for it.
constexpr auto leavingLimit = 2s;

} // namespace

CorvantaApp::CorvantaApp(std::unique_ptr<Platform> platform, CommandLine commandLine)
    : m_platform(std::move(platform))
    , m_commandLine(std::move(commandLine))
    , m_simulator(m_platform->makeCommandRunner(), SimctlCommandBuilder{u"/usr/bin/xcrun"_s, u"/usr/bin/open"_s})
    , m_safari(m_platform->accessibility(), m_platform->desktop(), m_platform->clock())
    , m_arranger(m_platform->accessibility(), m_platform->desktop())
    , m_preflightProbe(m_platform->makeCommandRunner(), m_platform->desktop())
    , m_profileRepository(m_platform->preferences(), u"workspaceProfile"_s, m_platform->clock())
    , m_locationRepository(m_platform->preferences(), u"favoriteLocations"_s, u"recentLocations"_s, maxRecents,
                           m_platform->clock())
    , m_coordinator({.simulator = m_simulator,
                     .safari = m_safari,
                     .arranger = m_arranger,
                     .preflightProbe = m_preflightProbe,
                     .profileRepository = m_profileRepository,
                     .locationRepository = m_locationRepository,
                     .placeSearch = m_platform->placeSearch(),
                     .accessibility = m_platform->accessibility(),
                     .desktop = m_platform->desktop(),
                     .clock = m_platform->clock()})
    , m_unattendedRun(m_coordinator, m_platform->clock()) {
    connect(&m_terminationSignals, &TerminationSignals::terminationRequested, this, &CorvantaApp::leaveEarly);
    connect(qGuiApp, &QGuiApplication::lastWindowClosed, this, &CorvantaApp::leaveEarly);
    if (m_commandLine.start)
        new PhaseReport(m_coordinator, m_platform->clock(), this);
}

void CorvantaApp::start() {
    if (m_commandLine.url)
        m_coordinator.setUrlInput(*m_commandLine.url);
    auto* const view = new WorkspaceView({.coordinator = m_coordinator,
                                          .desktop = m_platform->desktop(),
                                          .clock = m_platform->clock(),
                                          .tasks = m_tasks},
                                         [this](QWidget* window) { windowChanged(window); });
    m_window = std::make_unique<QMainWindow>();
    m_window->setWindowTitle(u"Corvanta"_s);
    m_window->setWindowIcon(Symbols::workspace(Appearance::light().accent));
    m_window->setCentralWidget(view);
    m_window->resize(view->sizeHint());
    m_window->show();
    m_tasks.start(firstAppearance());
}

void CorvantaApp::windowChanged(QWidget* window) {
    m_controlWindow = window ? m_platform->makeControlWindow(*window) : nullptr;
    m_coordinator.setControlWindow(m_controlWindow);
}

bool CorvantaApp::selectRequestedDevice() {
    if (!m_commandLine.device)
        return true;
    const auto& devices = m_coordinator.devices();
    const QString& wanted = *m_commandLine.device;
    const auto found = std::ranges::find_if(
        devices, [&](const SimulatorDevice& device) { return device.udid == wanted || device.name == wanted; });
    if (found == devices.end()) {
        std::fprintf(stderr, "Corvanta: no available simulator device is called '%s'\n", qUtf8Printable(wanted));
        return false;
    }
    m_coordinator.setSelectedDeviceID(found->udid);
    return true;
}

QCoro::Task<void> CorvantaApp::firstAppearance() {
    co_await m_coordinator.runSetupChecks();
    if (m_isLeaving)
        co_return;
    co_await m_coordinator.refreshDevices();
    if (m_isLeaving)
        co_return;
    // Another device than the one asked for would be worse than none.
    const bool isDeviceSelected = selectRequestedDevice();
    if (m_commandLine.screenshot)
        quit(isDeviceSelected ? co_await m_unattendedRun.run(*m_commandLine.screenshot) : 1);
    else if (m_commandLine.start && isDeviceSelected)
        co_await m_coordinator.startWorkspace();
}

void CorvantaApp::leaveEarly() {
    // An unattended run that is ended from outside has not done what it was asked for.
    quit(m_commandLine.screenshot ? 1 : 0);
}

void CorvantaApp::quit(int exitStatus) {
    if (std::exchange(m_isLeaving, true))
        return;
    m_coordinator.stopWorkspace();
    // Nothing may be started any more.
    m_window->hide();
    QTimer::singleShot(leavingLimit, this, [exitStatus] { QCoreApplication::exit(exitStatus); });
    // Not among the tasks that it waits for.
    [[maybe_unused]] const auto detached = leave(exitStatus);
}

QCoro::Task<void> CorvantaApp::leave(int exitStatus) {
    co_await m_coordinator.finishTasks();
    co_await m_tasks.join();
    QCoreApplication::exit(exitStatus);
}

} // namespace corvanta
