// SPDX-License-Identifier: MIT
#include "shell/CorvantaApp.h"

#include "shell/AppIdentity.h"
#include "shell/FirstPaint.h"
#include "window/DisplayText.h"
#include "window/WorkspaceView.h"

#include <QCoreApplication>
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
/// Finding the icon and setting encryption up take a while, and nobody waits for them.
constexpr auto settlingTime = 200ms;
/// A tall, narrow window, as the left of three columns is.
constexpr QSize defaultWindowSize(430, 860);

/// The identifier of the listed device with that name or identifier.
std::optional<QString> identifierOf(const WorkspaceCoordinator& coordinator, const QString& wanted) {
    const auto& devices = coordinator.devices();
    const auto found = std::ranges::find_if(
        devices, [&](const SimulatorDevice& device) { return device.udid == wanted || device.name == wanted; });
    return found == devices.end() ? std::nullopt : std::optional(found->udid);
}

/// Once a page is being opened, the window may stand where the workspace has put it.
bool isOwnPlace(WorkspacePhase phase) {
    return phase == WorkspacePhase::idle || phase == WorkspacePhase::preflight || phase == WorkspacePhase::booting;
}

} // namespace

CorvantaApp::CorvantaApp(std::unique_ptr<Platform> platform, CommandLine commandLine, std::function<bool()> hasTray)
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
    , m_unattendedRun(m_coordinator, m_platform->clock())
    , m_updateChecker(AppIdentity::updateManifestURL(), AppIdentity::buildNumber(),
                      {.session = m_session, .clock = m_platform->clock()})
    , m_commands({.coordinator = m_coordinator,
                  .updateChecker = m_updateChecker,
                  .desktop = m_platform->desktop(),
                  .tasks = m_tasks})
    , m_placement(m_platform->preferences(), u"workspaceWindow"_s, [this] { return isOwnPlace(m_coordinator.phase()); })
    , m_menuBarExtra(m_commands, std::move(hasTray))
    , m_alerts(m_updateChecker, m_platform->desktop(), [this] { return m_window.get(); }) {
    connectParts();
    if (m_commandLine.start)
        new PhaseReport(m_coordinator, m_platform->clock(), this);
}

void CorvantaApp::connectParts() {
    connect(&m_terminationSignals, &TerminationSignals::terminationRequested, this, &CorvantaApp::leaveEarly);
    connect(&m_menuBarExtra.menu(), &MenuBarContentView::openRequested, this, &CorvantaApp::openWindow);
    connect(&m_menuBarExtra.menu(), &MenuBarContentView::quitRequested, this, &CorvantaApp::leaveEarly);
    // The system may end the program by ways of its own, such as the Dock's menu or a logout.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, [this] {
        if (!m_isLeaving)
            m_coordinator.stopWorkspace();
    });
}

void CorvantaApp::start() {
    open(m_commandLine);
}

void CorvantaApp::open(const CommandLine& request) {
    if (m_isLeaving)
        return;
    if (request.url)
        m_coordinator.setUrlInput(*request.url);
    m_requests.push_back(request);
    openWindow();
    // Otherwise the first appearance carries them out once the devices are listed.
    if (m_appearances == 0)
        m_tasks.start(carryOutRequests());
}

void CorvantaApp::openWindow() {
    if (m_isLeaving)
        return;
    if (!m_window)
        makeWindow();
    m_window->bringForward();
    m_platform->desktop().activateSelf();
    m_alerts.present();
}

void CorvantaApp::makeWindow() {
    auto* const view =
        new WorkspaceView({.coordinator = m_coordinator,
                           .desktop = m_platform->desktop(),
                           .placeSearch = m_platform->placeSearch(),
                           .clock = m_platform->clock(),
                           .tasks = m_tasks,
                           .makeMap = [this](QWidget& parent) { return m_platform->makeMapSurface(parent); }},
                          [this](QWidget* window) { windowChanged(window); });
    m_window = std::make_unique<WorkspaceWindow>(view, m_commands);
    connect(m_window.get(), &WorkspaceWindow::closing, this, &CorvantaApp::windowClosing);
    connect(m_window.get(), &WorkspaceWindow::quitRequested, this, &CorvantaApp::leaveEarly);
    // An unattended run neither follows what a person did nor leaves anything behind.
    if (m_commandLine.screenshot)
        m_window->resize(defaultWindowSize);
    else
        m_placement.apply(*m_window, defaultWindowSize);
    Q_EMIT windowMade();
    m_window->show();
    ++m_appearances;
    // A window that is there at once is worth more than what it will show a moment later.
    afterFirstPaint(*m_window, *this, [this] {
        if (!m_isLeaving)
            windowAppeared();
    });
}

void CorvantaApp::windowAppeared() {
    m_tasks.start(firstAppearance());
    // Nobody uses the menu of an unattended run or reads its alerts.
    if (!m_commandLine.screenshot)
        m_tasks.start(settleIn(m_settling.token()));
}

void CorvantaApp::windowClosing() {
    // A window that is closed at once goes before its icon has come.
    if (!m_commandLine.screenshot)
        m_menuBarExtra.show();
    if (!m_menuBarExtra.isReachable()) {
        leaveEarly();
        return;
    }
    // A second close may come before the window is gone.
    if (!m_window)
        return;
    m_placement.save();
    m_alerts.close();
    m_window->disconnect(this);
    m_window.release()->deleteLater();
}

void CorvantaApp::windowChanged(QWidget* window) {
    m_controlWindow = window ? m_platform->makeControlWindow(*window) : nullptr;
    m_coordinator.setControlWindow(m_controlWindow);
}

QCoro::Task<void> CorvantaApp::settleIn(CancellationToken token) {
    if (co_await m_platform->clock().sleepFor(settlingTime, token) == SleepResult::cancelled)
        co_return;
    m_menuBarExtra.show();
    co_await m_updateChecker.checkAutomatically();
}

QCoro::Task<void> CorvantaApp::firstAppearance() {
    co_await m_platform->untilReady();
    if (!m_isLeaving)
        co_await m_coordinator.runSetupChecks();
    if (!m_isLeaving)
        co_await m_coordinator.refreshDevices();
    // A window that was closed and opened again meanwhile has its own, which finds the checks under way.
    if (--m_appearances == 0)
        co_await carryOutRequests();
}

QCoro::Task<void> CorvantaApp::carryOutRequests() {
    if (std::exchange(m_isCarryingOut, true))
        co_return;
    while (!m_requests.empty() && !m_isLeaving) {
        const CommandLine request = m_requests.front();
        m_requests.erase(m_requests.begin());
        co_await carryOut(request);
    }
    m_isCarryingOut = false;
}

QCoro::Task<void> CorvantaApp::carryOut(CommandLine request) {
    // Another device than the one asked for would be worse than none.
    const bool isDeviceSelected = co_await selectDevice(request);
    if (m_isLeaving)
        co_return;
    if (request.screenshot)
        quit(isDeviceSelected ? co_await m_unattendedRun.run(*request.screenshot) : 1);
    else if (request.start && isDeviceSelected && m_coordinator.canReload() && !request.device)
        co_await m_coordinator.reloadPage();
    else if (request.start && isDeviceSelected)
        co_await m_coordinator.startWorkspace();
}

QCoro::Task<bool> CorvantaApp::selectDevice(CommandLine request) {
    if (!request.device)
        co_return true;
    const QString wanted = *request.device;
    // One that was made since the devices were listed.
    if (!identifierOf(m_coordinator, wanted))
        co_await m_coordinator.refreshDevices();
    const auto identifier = identifierOf(m_coordinator, wanted);
    if (!identifier) {
        std::fprintf(stderr, "Corvanta: no available simulator device is called '%s'\n",
                     qUtf8Printable(displayText(wanted, longestLine)));
        co_return false;
    }
    m_coordinator.setSelectedDeviceID(identifier);
    co_return true;
}

void CorvantaApp::leaveEarly() {
    // An unattended run that is ended from outside has not done what it was asked for.
    quit(m_commandLine.screenshot ? 1 : 0);
}

void CorvantaApp::quit(int exitStatus) {
    if (std::exchange(m_isLeaving, true))
        return;
    Q_EMIT leaving();
    m_coordinator.stopWorkspace();
    m_settling.cancel();
    m_updateChecker.cancel();
    if (!m_commandLine.screenshot)
        m_placement.save();
    // Nothing may be started any more.
    m_alerts.close();
    m_menuBarExtra.hide();
    if (m_window)
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
