// SPDX-License-Identifier: MIT
#include "WorkspaceCoordinatorTest.h"

#include "setup/SetupCheckEvaluator.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using WorkspaceCoordinatorSetupTest = WorkspaceCoordinatorTest;

TEST_F(WorkspaceCoordinatorSetupTest, BeginsWithTheStoredProfileAndListsAndTouchesNothing) {
    WorkspaceProfile profile = WorkspaceProfile::fresh({});
    profile.selectedDeviceUDID = u"B"_s;
    profile.pageURL = u"https://example.org/A"_s;
    profile.coordinate = Coordinate{52.5, 13.4};
    profile.locationName = u"Berlin"_s;
    profileRepository.save(profile);
    locationRepository.addFavorite(u"Home"_s, {1, 2});
    locationRepository.recordRecent(u"Work"_s, {3, 4});
    makeCoordinator();
    EXPECT_THAT(coordinator->devices(), IsEmpty());
    EXPECT_EQ(coordinator->selectedDeviceID(), u"B"_s);
    EXPECT_EQ(coordinator->urlInput(), u"https://example.org/A"_s);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
    EXPECT_EQ(status(), "Ready");
    EXPECT_EQ(recovery(), "none");
    EXPECT_FALSE(coordinator->isRefreshingDevices());
    EXPECT_FALSE(coordinator->isCheckingSetup());
    EXPECT_EQ(coordinator->selectedCoordinate(), (Coordinate{52.5, 13.4}));
    EXPECT_EQ(coordinator->selectedLocationName(), u"Berlin"_s);
    EXPECT_EQ(coordinator->favorites().size(), 1U);
    EXPECT_EQ(coordinator->recents().size(), 1U);
    EXPECT_THAT(coordinator->candidateTargets(), IsEmpty());
    EXPECT_THAT(coordinator->setupChecks(), IsEmpty());
    EXPECT_EQ(coordinator->selectedDevice(), std::nullopt);
    EXPECT_FALSE(coordinator->canStart() || coordinator->canReload() || coordinator->canRetile() ||
                 coordinator->canStop());
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_THAT(clock.requestedSleeps(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorSetupTest, LeavesSafariAloneWithoutThePermission) {
    tree.trusted = false;
    makeCoordinator();
    const testing::WatchedTask task(coordinator->runSetupChecks());
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(log.calls(), ElementsAre("facts untrusted, developer features unknown"));
    EXPECT_EQ(tree.trustRequests, 0);
    EXPECT_EQ(status(), "Complete the setup items above");
    EXPECT_EQ(recovery(), "Use the action beside each missing requirement, then click Check Again.");
}

TEST_F(WorkspaceCoordinatorSetupTest, LooksAtSafarisMenuThreeHundredMillisecondsAfterItRuns) {
    makeCoordinator();
    const testing::WatchedTask task(coordinator->runSetupChecks());
    clock.advance(299ms);
    EXPECT_FALSE(task.isDone());
    clock.advance(1ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(log.timedCalls(), ElementsAre("0 ensureSafariRunning", "300 developerFeaturesAvailable",
                                              "300 facts trusted, developer features on"));
}

TEST_F(WorkspaceCoordinatorSetupTest, TakesTheDeveloperFeaturesForOffWhenSafariCannotBeLaunched) {
    safari.script.fail(testing::SafariOperation::ensureSafariRunning, testing::FakeError(u"Damaged."_s));
    makeCoordinator();
    const testing::WatchedTask task(coordinator->runSetupChecks());
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(log.calls(), ElementsAre("ensureSafariRunning", "facts trusted, developer features off"));
    EXPECT_THAT(sleeps(), IsEmpty());
    EXPECT_EQ(status(), "Complete the setup items above");
}

TEST_F(WorkspaceCoordinatorSetupTest, PublishesEachStepOnceWhenTheSetupIsComplete) {
    makeCoordinator();
    const testing::WatchedTask task(coordinator->runSetupChecks());
    clock.advance(300ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(journal, ElementsAre("checking true", "status Checking this Mac", "checks 7",
                                     "status Setup ready; looking for simulators", "checking false"));
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
    EXPECT_EQ(log.count("availableIOSDevices"), 0);
}

TEST_F(WorkspaceCoordinatorSetupTest, IsReadyWhenDevicesAreListedAlready) {
    makeReady();
    const testing::WatchedTask task(coordinator->runSetupChecks());
    clock.advance(300ms);
    EXPECT_THAT(journal, ElementsAre("checking true", "status Checking this Mac", "status Ready", "checking false"));
}

TEST_F(WorkspaceCoordinatorSetupTest, ClearsTheOldAdviceWhileItChecksAgain) {
    safari.hasDeveloperFeatures = false;
    makeCoordinator();
    const testing::WatchedTask first(coordinator->runSetupChecks());
    clock.advance(300ms);
    forget();
    safari.hasDeveloperFeatures = true;
    const testing::WatchedTask second(coordinator->runSetupChecks());
    EXPECT_EQ(recovery(), "none");
    clock.advance(300ms);
    EXPECT_THAT(journal, ElementsAre("checking true", "status Checking this Mac", "recovery none", "checks 7",
                                     "status Setup ready; looking for simulators", "checking false"));
}

TEST_F(WorkspaceCoordinatorSetupTest, NeverOverlapsTwoRuns) {
    makeCoordinator();
    const testing::WatchedTask first(coordinator->runSetupChecks());
    const testing::WatchedTask second(coordinator->runSetupChecks());
    EXPECT_TRUE(second.isDone());
    clock.advance(300ms);
    EXPECT_TRUE(first.isDone());
    EXPECT_EQ(log.count("facts"), 1);
}

TEST_F(WorkspaceCoordinatorSetupTest, LeavesTheFailedPhaseAsItIs) {
    simulator.script.fail(testing::SimulatorOperation::availableIOSDevices, testing::FakeError(u"Broken."_s));
    makeCoordinator();
    const testing::WatchedTask list(coordinator->refreshDevices());
    const testing::WatchedTask task(coordinator->runSetupChecks());
    clock.advance(300ms);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
}

TEST_F(WorkspaceCoordinatorSetupTest, DoesNothingForTheActionNone) {
    makeCoordinator();
    const testing::WatchedTask task(coordinator->performSetupAction(SetupRecoveryAction::none));
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_THAT(sleeps(), IsEmpty());
    EXPECT_THAT(journal, IsEmpty());
}

struct ActionCase {
    std::string name;
    SetupRecoveryAction action;
    std::string call;
};

void PrintTo(const ActionCase& value, std::ostream* stream) {
    *stream << value.name;
}

class WorkspaceCoordinatorSetupAction : public WorkspaceCoordinatorTest,
                                        public ::testing::WithParamInterface<ActionCase> {};

TEST_P(WorkspaceCoordinatorSetupAction, IsCarriedOutAndFollowedByAnotherCheckAndTheDeviceList) {
    makeCoordinator();
    const testing::WatchedTask task(coordinator->performSetupAction(GetParam().action));
    clock.advance(499ms);
    EXPECT_THAT(log.calls(), ElementsAre(GetParam().call));
    EXPECT_THAT(journal, IsEmpty());
    clock.advance(301ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(log.timedCalls(),
                ElementsAre("0 " + GetParam().call, "500 ensureSafariRunning", "800 developerFeaturesAvailable",
                            "800 facts trusted, developer features on", "800 availableIOSDevices"));
    EXPECT_THAT(sleeps(), ElementsAre(500ms, 300ms));
}

constexpr auto storePage = "open macappstore://apps.apple.com/app/xcode/id497799835";

INSTANTIATE_TEST_SUITE_P(
    Cases, WorkspaceCoordinatorSetupAction,
    ::testing::Values(ActionCase{"openSoftwareUpdate", SetupRecoveryAction::openSoftwareUpdate,
                                 "open x-apple.systempreferences:com.apple.Software-Update-Settings.extension"},
                      ActionCase{"openXcodeDownload", SetupRecoveryAction::openXcodeDownload, storePage},
                      ActionCase{"openXcodeThatIsMissing", SetupRecoveryAction::openXcode, storePage},
                      ActionCase{"openSafari", SetupRecoveryAction::openSafari, "ensureSafariRunning"}),
    testing::CaseName());

TEST_F(WorkspaceCoordinatorSetupTest, WaitsForXcodeToLaunch) {
    desktop.paths[u"com.apple.dt.Xcode"_s] = u"/Applications/Xcode.app"_s;
    desktop.script.delay(testing::DesktopOperation::openApplication, 4s);
    makeCoordinator();
    const testing::WatchedTask task(coordinator->performSetupAction(SetupRecoveryAction::openXcode));
    clock.advance(4s + 499ms);
    EXPECT_THAT(log.calls(), ElementsAre("openApplication /Applications/Xcode.app"));
    clock.advance(301ms);
    EXPECT_TRUE(task.isDone());
}

TEST_F(WorkspaceCoordinatorSetupTest, ChecksAgainEvenWhenTheActionFails) {
    desktop.paths[u"com.apple.dt.Xcode"_s] = u"/Applications/Xcode.app"_s;
    desktop.script.fail(testing::DesktopOperation::openApplication, testing::FakeError(u"Damaged."_s));
    makeCoordinator();
    const testing::WatchedTask task(coordinator->performSetupAction(SetupRecoveryAction::openXcode));
    clock.advance(800ms);
    ASSERT_TRUE(task.isDone());
    task.result();
    EXPECT_EQ(log.count("facts"), 1);
}

TEST_F(WorkspaceCoordinatorSetupTest, AsksForThePermissionAndOpensTheSettingsWhenItIsStillMissing) {
    tree.trusted = false;
    makeCoordinator();
    const testing::WatchedTask task(coordinator->performSetupAction(SetupRecoveryAction::requestAccessibility));
    EXPECT_EQ(tree.trustRequests, 1);
    clock.advance(500ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(log.calls(),
                ElementsAre("open x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility",
                            "facts untrusted, developer features unknown"));
}

TEST_F(WorkspaceCoordinatorSetupTest, DoesNotAskForAPermissionThatIsHeld) {
    makeCoordinator();
    const testing::WatchedTask task(coordinator->performSetupAction(SetupRecoveryAction::requestAccessibility));
    clock.advance(800ms);
    EXPECT_EQ(tree.trustRequests, 0);
    EXPECT_EQ(log.count("open "), 0);
}

TEST_F(WorkspaceCoordinatorSetupTest, ListsNoDevicesWhileSomethingIsStillMissing) {
    safari.hasDeveloperFeatures = false;
    makeCoordinator();
    const testing::WatchedTask task(coordinator->performSetupAction(SetupRecoveryAction::openSafari));
    clock.advance(800ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(log.count("availableIOSDevices"), 0);
    EXPECT_EQ(coordinator->setupChecks().back().recoveryAction, SetupRecoveryAction::openSafari);
}

class WorkspaceCoordinatorSetupSuspension : public WorkspaceCoordinatorTest,
                                            public ::testing::WithParamInterface<int> {};

TEST_P(WorkspaceCoordinatorSetupSuspension, OutlivesTheCoordinator) {
    desktop.paths[u"com.apple.dt.Xcode"_s] = u"/Applications/Xcode.app"_s;
    desktop.script.delay(testing::DesktopOperation::openApplication, 1s);
    safari.script.delay(testing::SafariOperation::ensureSafariRunning, 1s);
    probe.script.delay(testing::PreflightOperation::facts, 1s);
    simulator.script.delay(testing::SimulatorOperation::availableIOSDevices, 1s);
    makeCoordinator();
    const testing::WatchedTask task(coordinator->performSetupAction(SetupRecoveryAction::openXcode));
    for (int step = 0; step < GetParam(); ++step)
        ASSERT_TRUE(clock.step());
    ASSERT_FALSE(task.isDone());
    coordinator.reset();
    forget();
    drain();
    EXPECT_TRUE(task.isDone());
    EXPECT_EQ(task.error(), nullptr);
    EXPECT_THAT(log.calls(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(AtEachStep, WorkspaceCoordinatorSetupSuspension, ::testing::Range(0, 6));

} // namespace

} // namespace corvanta
