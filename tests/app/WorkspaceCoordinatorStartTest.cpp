// SPDX-License-Identifier: MIT
#include "WorkspaceCoordinatorTest.h"

#include "safari/WorkspaceAutomationError.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;

using testing::SafariOperation;
using testing::SimulatorOperation;

using WorkspaceCoordinatorStartTest = WorkspaceCoordinatorTest;

TEST_F(WorkspaceCoordinatorStartTest, GoesThroughEveryStepInItsOrder) {
    makeReady();
    coordinator->setUrlInput(u"LocalHost:3000/A"_s);
    forget();
    safari.willList({});
    safari.willList({page(u"Start"_s, 0)});
    const auto task = start();
    clock.advance(300ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(journal,
                ElementsAre("phase preflight", "status Checking Xcode, Safari, and permissions",
                            "address http://LocalHost:3000/A", "phase booting", "status Booting iPhone 16",
                            "phase openingPage", "status Opening LocalHost in simulated Safari",
                            "phase attachingInspector", "status Waiting for Safari Web Inspector",
                            "status Attaching Web Inspector to Start", "phase running", "status Workspace running"));
    EXPECT_THAT(log.timedCalls(),
                ElementsAre("0 ensureSafariRunning", "300 developerFeaturesAvailable", "300 boot A",
                            "300 waitUntilBooted A", "300 launchSimulator A", "300 snapshotTargets iPhone 16",
                            "300 openURL A http://LocalHost:3000/A", "300 snapshotTargets iPhone 16",
                            "300 attach Start on iPhone 16", "300 tile iPhone 16"));
    EXPECT_TRUE(coordinator->canStart() && coordinator->canReload() && coordinator->canRetile() &&
                coordinator->canStop());
}

TEST_F(WorkspaceCoordinatorStartTest, TilesTheControlWindowAndTheNewInspectorByTheProfilesRatios) {
    WorkspaceProfile profile = WorkspaceProfile::fresh({});
    profile.columnRatios = {.controls = 2, .simulator = 3, .inspector = 5};
    profileRepository.save(profile);
    makeRunning();
    EXPECT_EQ(arranger.tiledControlWindow.lock(), controlWindow);
    EXPECT_NE(arranger.tiledInspectorWindow, std::nullopt);
    EXPECT_EQ(arranger.tiledInspectorWindow, safari.managedInspectorWindow());
    EXPECT_EQ(arranger.tiledRatios, (ColumnRatios{.controls = 2, .simulator = 3, .inspector = 5}));
}

TEST_F(WorkspaceCoordinatorStartTest, AllowsNothingButStopWhileItWorks) {
    makeReady();
    safari.listed = {page(u"Start"_s, 0)};
    const auto task = start();
    EXPECT_TRUE(coordinator->canStop());
    EXPECT_FALSE(coordinator->canStart() || coordinator->canReload() || coordinator->canRetile());
}

TEST_F(WorkspaceCoordinatorStartTest, PreparesADeviceThatIsBootedAlready) {
    makeReady();
    coordinator->setSelectedDeviceID(u"B"_s);
    safari.listed = {page(u"Start"_s, 0)};
    const auto task = start();
    clock.advance(300ms);
    EXPECT_THAT(published("status "), Contains("status Preparing iPad Air"));
    EXPECT_THAT(published("status "), Not(Contains("status Booting iPad Air")));
    EXPECT_EQ(log.count("boot B"), 1);
    EXPECT_EQ(log.count("waitUntilBooted B"), 1);
}

TEST_F(WorkspaceCoordinatorStartTest, TakesOnlyTheExactStateForBooted) {
    simulator.devices = {device(u"A"_s, u"iPhone 16"_s, u"booted"_s)};
    makeReady();
    const auto task = start();
    clock.advance(300ms);
    EXPECT_THAT(published("status "), Contains("status Booting iPhone 16"));
}

TEST_F(WorkspaceCoordinatorStartTest, RestoresTheSelectedLocationAndRecordsIt) {
    WorkspaceProfile profile = WorkspaceProfile::fresh({});
    profile.coordinate = Coordinate{52.5, 13.4};
    profile.locationName = u"Berlin"_s;
    profileRepository.save(profile);
    makeReady();
    safari.willList({});
    safari.listed = {page(u"Start"_s, 0)};
    const auto task = start();
    clock.advance(300ms);
    EXPECT_THAT(published("status "),
                ElementsAre("status Checking Xcode, Safari, and permissions", "status Booting iPhone 16",
                            "status Restoring Berlin", "status Opening localhost in simulated Safari",
                            "status Waiting for Safari Web Inspector", "status Attaching Web Inspector to Start",
                            "status Workspace running"));
    EXPECT_THAT(log.calls(), Contains("setLocation A 52.5,13.4"));
    EXPECT_THAT(published("recents"), ElementsAre("recents 1"));
    ASSERT_EQ(coordinator->recents().size(), 1U);
    EXPECT_EQ(coordinator->recents().front().name, u"Berlin"_s);
    EXPECT_EQ(locationRepository.loadRecents(), coordinator->recents());
}

TEST_F(WorkspaceCoordinatorStartTest, SavesTheProfileBeforeTheDeviceBoots) {
    makeReady();
    coordinator->setUrlInput(u"example.org"_s);
    simulator.script.fail(SimulatorOperation::boot, testing::FakeError(u"Unable to boot."_s));
    const auto task = start();
    clock.advance(299ms);
    EXPECT_NE(storedProfile().pageURL, u"http://example.org"_s);
    clock.advance(1ms);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_EQ(storedProfile().pageURL, u"http://example.org"_s);
    EXPECT_EQ(storedProfile().selectedDeviceUDID, u"A"_s);
    EXPECT_EQ(storedProfile().lastUsedAt, clock.wallClockNow());
}

TEST_F(WorkspaceCoordinatorStartTest, RefusesWhileTheSetupIsIncomplete) {
    safari.hasDeveloperFeatures = false;
    makeCoordinator();
    const testing::WatchedTask checks(coordinator->runSetupChecks());
    clock.advance(300ms);
    forget();
    const auto task = start();
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(journal, ElementsAre("status Complete the setup items above before starting",
                                     "recovery Fix the failed checks, then click Check Again."));
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorStartTest, RefusesBeforeTheFirstCheck) {
    makeCoordinator();
    const auto task = start();
    EXPECT_EQ(status(), "Complete the setup items above before starting");
}

TEST_F(WorkspaceCoordinatorStartTest, RefusesWithoutADevice) {
    makeReady();
    coordinator->setSelectedDeviceID(std::nullopt);
    forget();
    const auto task = start();
    EXPECT_THAT(journal, ElementsAre("status Choose an iOS simulator"));
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorStartTest, TreatsAMenuThatCannotBeReadBeforehandAsEmpty) {
    makeReady();
    safari.willFailToList(WorkspaceAutomationError::simulatorMenuUnavailable(u"iPhone 16"_s));
    safari.willList({page(u"Start"_s, 0)});
    const auto task = start();
    clock.advance(300ms);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::running);
}

TEST_F(WorkspaceCoordinatorStartTest, LooksEveryQuarterSecondUntilANewPageIsListed) {
    makeReady();
    const auto old = page(u"Old"_s, 0);
    safari.willList({old});
    safari.willList({old});
    safari.willFailToList(WorkspaceAutomationError::developMenuUnavailable());
    safari.willList({old});
    safari.willList({old, page(u"New"_s, 1)});
    const auto task = start();
    clock.advance(10s);
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(sleeps(), ElementsAre(300ms, 250ms, 250ms, 250ms, 2s, 2s, 2s, 2s, 2s));
    EXPECT_THAT(log.timedCalls(), Contains("1050 attach New on iPhone 16"));
}

TEST_F(WorkspaceCoordinatorStartTest, JudgesTheLastListWithoutThePreviousOneAfterFortyLooks) {
    makeReady();
    safari.listed = {page(u"Old"_s, 0)};
    const auto task = start();
    clock.advance(300ms + 40 * 250ms - 1ms);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::attachingInspector);
    EXPECT_EQ(log.count("snapshotTargets"), 41);
    clock.advance(1ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::running);
    EXPECT_EQ(log.count("snapshotTargets"), 41);
    EXPECT_THAT(log.timedCalls(), Contains("10300 attach Old on iPhone 16"));
    std::vector<Clock::Duration> expected(41, 250ms);
    expected.front() = 300ms;
    expected.push_back(2s);
    EXPECT_EQ(sleeps(), expected);
}

TEST_F(WorkspaceCoordinatorStartTest, JudgesTheListLastReadEvenWhenTheLastLooksFailed) {
    makeReady();
    safari.willList({page(u"Old"_s, 0)});
    safari.willList({page(u"Old"_s, 0)});
    for (int look = 0; look < 39; ++look)
        safari.willFailToList(WorkspaceAutomationError::developMenuUnavailable());
    const auto task = start();
    clock.advance(10300ms);
    EXPECT_EQ(log.count("attach Old"), 1);
}

TEST_F(WorkspaceCoordinatorStartTest, FailsWithTheDeviceNameWhenNothingIsListedAfterFortyLooks) {
    makeReady();
    const auto task = start();
    clock.advance(10300ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_EQ(status(), "iPhone 16 is not listed in Safari's Develop menu yet.");
    EXPECT_EQ(recovery(), "Wait for the simulator to finish booting and for Safari to display the page, then retry.");
}

TEST_F(WorkspaceCoordinatorStartTest, AsksTheUserAfterFortyLooksWhenSeveralOldPagesRemain) {
    makeReady();
    safari.listed = {page(u"One"_s, 0), page(u"Two"_s, 1)};
    const auto task = start();
    clock.advance(10300ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(coordinator->candidateTargets(), safari.listed);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::attachingInspector);
}

TEST_F(WorkspaceCoordinatorStartTest, StopsARunningWorkspaceFirst) {
    makeRunning();
    safari.listed.push_back(page(u"Start"_s, 1));
    safari.willList({page(u"Start"_s, 0)});
    const auto task = start();
    clock.advance(300ms);
    EXPECT_THAT(published("phase"), ElementsAre("phase idle", "phase preflight", "phase booting", "phase openingPage",
                                                "phase attachingInspector", "phase running"));
    EXPECT_THAT(journal.at(1), "status Stopped; external apps were left running");
    EXPECT_EQ(log.calls().front(), "restore");
}

TEST_F(WorkspaceCoordinatorStartTest, StopsAFailedWorkspaceFirstAndClearsItsAdvice) {
    makeReady();
    safari.script.fail(SafariOperation::ensureSafariRunning, testing::FakeError(u"Damaged."_s, u"Mend it."_s));
    const auto failed = start();
    ASSERT_EQ(coordinator->phase(), WorkspacePhase::failed);
    forget();
    safari.script.succeed(SafariOperation::ensureSafariRunning);
    const auto task = start();
    EXPECT_THAT(journal, ElementsAre("recovery none", "phase idle", "status Stopped; external apps were left running",
                                     "phase preflight", "status Checking Xcode, Safari, and permissions"));
    EXPECT_EQ(log.calls().front(), "restore");
}

TEST_F(WorkspaceCoordinatorStartTest, RestoresNoWindowsWhenItStartsFromIdle) {
    makeReady();
    const auto task = start();
    EXPECT_EQ(log.count("restore"), 0);
}

TEST_F(WorkspaceCoordinatorStartTest, AsksTheUserWhenSeveralNewPagesAppearTogether) {
    makeReady();
    safari.willList({});
    safari.willList({page(u"One"_s, 0), page(u"Two"_s, 1)});
    const auto task = start();
    clock.advance(300ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::attachingInspector);
    EXPECT_EQ(status(), "Choose the Safari page to inspect");
    EXPECT_EQ(recovery(), "Several new inspectable pages appeared together.");
    EXPECT_THAT(coordinator->candidateTargets(), ElementsAre(page(u"One"_s, 0), page(u"Two"_s, 1)));
    EXPECT_EQ(log.count("attach"), 0);
    EXPECT_EQ(clock.sleepers(), 0U);
}

/// Every operation takes a second, and the page is listed at the second look: twelve points at which a start suspends.
class WorkspaceCoordinatorStartSuspension : public WorkspaceCoordinatorTest, public ::testing::WithParamInterface<int> {
protected:
    void makeSlowAndReady() {
        WorkspaceProfile profile = WorkspaceProfile::fresh({});
        profile.coordinate = Coordinate{52.5, 13.4};
        profileRepository.save(profile);
        makeReady();
        for (const auto operation :
             {SimulatorOperation::boot, SimulatorOperation::waitUntilBooted, SimulatorOperation::launchSimulator,
              SimulatorOperation::setLocation, SimulatorOperation::openURL})
            simulator.script.delay(operation, 1s);
        for (const auto operation :
             {SafariOperation::ensureSafariRunning, SafariOperation::snapshotTargets, SafariOperation::attach})
            safari.script.delay(operation, 1s);
        safari.willList({});
        safari.willList({});
        safari.listed = {page(u"Start"_s, 0)};
    }

    /// Starts and wakes as many sleepers as the parameter says.
    [[nodiscard]] testing::WatchedTask<void> startPartly() {
        auto task = start();
        for (int step = 0; step < GetParam(); ++step)
            EXPECT_TRUE(clock.step());
        EXPECT_FALSE(task.isDone());
        EXPECT_TRUE(isWorking(coordinator->phase()));
        return task;
    }
};

TEST_P(WorkspaceCoordinatorStartSuspension, EndsInSilenceOnceItIsStopped) {
    makeSlowAndReady();
    const auto task = startPartly();
    forget();
    coordinator->stopWorkspace();
    drain();
    EXPECT_TRUE(task.isDone());
    EXPECT_EQ(task.error(), nullptr);
    EXPECT_THAT(journal, ElementsAre("phase idle", "status Stopped; external apps were left running"));
    EXPECT_THAT(log.calls(), ElementsAre("restore"));
    EXPECT_EQ(clock.sleepers(), 0U);
    EXPECT_FALSE(coordinator->canStop());
}

TEST_P(WorkspaceCoordinatorStartSuspension, GivesWayToASecondStart) {
    makeSlowAndReady();
    const auto first = startPartly();
    forget();
    const auto second = start();
    drain();
    EXPECT_TRUE(first.isDone() && second.isDone());
    EXPECT_THAT(published("phase"), ElementsAre("phase idle", "phase preflight", "phase booting", "phase openingPage",
                                                "phase attachingInspector", "phase running"));
    EXPECT_EQ(log.count("restore"), 1);
    EXPECT_EQ(log.count("attach"), 1);
    EXPECT_EQ(status(), "Workspace running");
}

TEST_P(WorkspaceCoordinatorStartSuspension, OutlivesTheCoordinator) {
    makeSlowAndReady();
    const auto task = startPartly();
    coordinator.reset();
    forget();
    drain();
    EXPECT_TRUE(task.isDone());
    EXPECT_EQ(task.error(), nullptr);
    EXPECT_THAT(log.calls(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(AtEachStep, WorkspaceCoordinatorStartSuspension, ::testing::Range(0, 12));

TEST_F(WorkspaceCoordinatorStartTest, EndsInSilenceWhenALateFailureMeetsAStop) {
    makeReady();
    simulator.script.delay(SimulatorOperation::boot, 1s);
    simulator.script.fail(SimulatorOperation::boot, testing::FakeError(u"Unable to boot."_s));
    const auto task = start();
    clock.advance(300ms);
    coordinator->stopWorkspace();
    forget();
    clock.advance(1s);
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(journal, IsEmpty());
}

} // namespace

} // namespace corvanta
