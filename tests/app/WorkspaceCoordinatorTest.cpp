// SPDX-License-Identifier: MIT
#include "WorkspaceCoordinatorTest.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

WorkspaceCoordinatorTest::WorkspaceCoordinatorTest() {
    simulator.devices = {device(u"A"_s, u"iPhone 16"_s, u"Shutdown"_s), device(u"B"_s, u"iPad Air"_s, u"Booted"_s)};
}

WorkspaceCoordinatorTest::~WorkspaceCoordinatorTest() {
    coordinator.reset();
    // Whatever was suspended resumes without its coordinator and must end by itself.
    drain();
    EXPECT_EQ(clock.sleepers(), 0U);
}

SimulatorDevice WorkspaceCoordinatorTest::device(const QString& udid, const QString& name, const QString& state) {
    SimulatorDevice device;
    device.udid = udid;
    device.name = name;
    device.state = state;
    device.runtimeIdentifier = u"com.apple.CoreSimulator.SimRuntime.iOS-18-2"_s;
    return device;
}

SafariTarget WorkspaceCoordinatorTest::page(const QString& title, int index) {
    return {u"0.%1|%2"_s.arg(index).arg(title), title, {0, index}};
}

void WorkspaceCoordinatorTest::makeCoordinator() {
    coordinator = std::make_unique<WorkspaceCoordinator>(WorkspaceCoordinator::Services{
        .simulator = simulator,
        .safari = safari,
        .arranger = arranger,
        .preflightProbe = probe,
        .profileRepository = profileRepository,
        .locationRepository = locationRepository,
        .placeSearch = placeSearch,
        .accessibility = tree,
        .desktop = desktop,
        .clock = clock,
    });
    keepJournal();
}

void WorkspaceCoordinatorTest::makeReady() {
    if (!coordinator)
        makeCoordinator();
    coordinator->setControlWindow(controlWindow);
    const testing::WatchedTask checks(coordinator->runSetupChecks());
    clock.advance(300ms);
    const testing::WatchedTask list(coordinator->refreshDevices());
    ASSERT_TRUE(checks.isDone() && list.isDone());
    ASSERT_TRUE(coordinator->canStart());
    forget();
}

void WorkspaceCoordinatorTest::makeRunning() {
    makeReady();
    safari.listed = {page(u"Start"_s, 0)};
    safari.willList({});
    const auto task = start();
    clock.advance(300ms);
    ASSERT_TRUE(task.isDone());
    ASSERT_EQ(coordinator->phase(), WorkspacePhase::running);
    forget();
}

void WorkspaceCoordinatorTest::forget() {
    log.clear();
    journal.clear();
    m_forgottenSleeps = clock.requestedSleeps().size();
}

std::vector<Clock::Duration> WorkspaceCoordinatorTest::sleeps() const {
    const auto& all = clock.requestedSleeps();
    return {all.begin() + static_cast<std::ptrdiff_t>(m_forgottenSleeps), all.end()};
}

WorkspaceCoordinatorTest::Calls WorkspaceCoordinatorTest::published(const std::string& prefix) const {
    Calls entries;
    for (const std::string& entry : journal) {
        if (entry.starts_with(prefix))
            entries.push_back(entry);
    }
    return entries;
}

void WorkspaceCoordinatorTest::keepJournal() {
    WorkspaceCoordinator* const subject = coordinator.get();
    const auto note = [this, subject](void (WorkspaceCoordinator::*changed)(), auto describe) {
        QObject::connect(subject, changed, subject,
                         [this, describe] { journal.push_back(QString(describe()).toStdString()); });
    };
    const auto flag = [](bool value) { return value ? u"true"_s : u"false"_s; };
    const auto count = [](const auto& list) { return QString::number(list.size()); };
    note(&WorkspaceCoordinator::devicesChanged, [=] { return u"devices "_s + count(subject->devices()); });
    note(&WorkspaceCoordinator::selectedDeviceIDChanged,
         [=] { return u"selection "_s + subject->selectedDeviceID().value_or(u"none"_s); });
    note(&WorkspaceCoordinator::urlInputChanged, [=] { return u"address "_s + subject->urlInput(); });
    note(&WorkspaceCoordinator::phaseChanged, [=] { return u"phase "_s + rawValue(subject->phase()); });
    note(&WorkspaceCoordinator::statusMessageChanged, [=] { return u"status "_s + subject->statusMessage(); });
    note(&WorkspaceCoordinator::recoveryMessageChanged,
         [=] { return u"recovery "_s + subject->recoveryMessage().value_or(u"none"_s); });
    note(&WorkspaceCoordinator::isRefreshingDevicesChanged,
         [=] { return u"refreshing "_s + flag(subject->isRefreshingDevices()); });
    note(&WorkspaceCoordinator::isLocationWorkingChanged,
         [=] { return u"locating "_s + flag(subject->isLocationWorking()); });
    note(&WorkspaceCoordinator::mapSelectionIDChanged, [] { return u"map selection"_s; });
    note(&WorkspaceCoordinator::recenterMapOnSelectionChanged,
         [=] { return u"recenter "_s + flag(subject->recenterMapOnSelection()); });
    note(&WorkspaceCoordinator::selectedCoordinateChanged, [] { return u"coordinate"_s; });
    note(&WorkspaceCoordinator::selectedLocationNameChanged, [] { return u"location name"_s; });
    note(&WorkspaceCoordinator::favoritesChanged, [=] { return u"favorites "_s + count(subject->favorites()); });
    note(&WorkspaceCoordinator::recentsChanged, [=] { return u"recents "_s + count(subject->recents()); });
    note(&WorkspaceCoordinator::candidateTargetsChanged,
         [=] { return u"candidates "_s + count(subject->candidateTargets()); });
    note(&WorkspaceCoordinator::setupChecksChanged, [=] { return u"checks "_s + count(subject->setupChecks()); });
    note(&WorkspaceCoordinator::isCheckingSetupChanged,
         [=] { return u"checking "_s + flag(subject->isCheckingSetup()); });
}

} // namespace corvanta
