// SPDX-License-Identifier: MIT
#include "WorkspaceCoordinatorTest.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using WorkspaceCoordinatorDevicesTest = WorkspaceCoordinatorTest;
using testing::SimulatorOperation;

TEST_F(WorkspaceCoordinatorDevicesTest, SelectsTheFirstDeviceAndSavesTheProfile) {
    makeCoordinator();
    const testing::WatchedTask task(coordinator->refreshDevices());
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(coordinator->devices(), simulator.devices);
    EXPECT_EQ(coordinator->selectedDevice(), simulator.devices.front());
    EXPECT_EQ(storedProfile().selectedDeviceUDID, u"A"_s);
    EXPECT_THAT(journal, ElementsAre("refreshing true", "devices 2", "selection A", "refreshing false"));
    EXPECT_EQ(status(), "Ready");
}

TEST_F(WorkspaceCoordinatorDevicesTest, KeepsASelectionThatIsStillListedAndSavesNothing) {
    makeCoordinator();
    coordinator->setSelectedDeviceID(u"B"_s);
    forget();
    const testing::WatchedTask task(coordinator->refreshDevices());
    EXPECT_EQ(coordinator->selectedDeviceID(), u"B"_s);
    EXPECT_THAT(journal, ElementsAre("refreshing true", "devices 2", "refreshing false"));
    EXPECT_THAT(preferences.writtenKeys(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorDevicesTest, ReplacesADeletedDeviceOfTheProfileByTheFirstListedOne) {
    WorkspaceProfile profile = WorkspaceProfile::fresh({});
    profile.selectedDeviceUDID = u"deleted"_s;
    profileRepository.save(profile);
    makeCoordinator();
    const testing::WatchedTask task(coordinator->refreshDevices());
    EXPECT_EQ(coordinator->selectedDeviceID(), u"A"_s);
    EXPECT_EQ(storedProfile().selectedDeviceUDID, u"A"_s);
}

TEST_F(WorkspaceCoordinatorDevicesTest, ClearsTheSelectionWhenNothingIsListed) {
    makeReady();
    simulator.devices.clear();
    const testing::WatchedTask task(coordinator->refreshDevices());
    EXPECT_THAT(journal,
                ElementsAre("refreshing true", "devices 0", "selection none", "status No available iOS simulators",
                            "recovery Install an iOS Simulator runtime from Xcode > Settings > Components.",
                            "refreshing false"));
    EXPECT_FALSE(coordinator->canStart());
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
}

TEST_F(WorkspaceCoordinatorDevicesTest, FailsTheWorkspaceWhenTheListCannotBeRead) {
    makeReady();
    simulator.script.fail(SimulatorOperation::availableIOSDevices, testing::FakeError(u"Broken."_s, u"Mend it."_s));
    const testing::WatchedTask task(coordinator->refreshDevices());
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(task.error(), nullptr);
    EXPECT_THAT(journal, ElementsAre("refreshing true", "phase failed", "status Broken.", "recovery Mend it.",
                                     "refreshing false"));
    EXPECT_EQ(coordinator->devices(), simulator.devices);
}

TEST_F(WorkspaceCoordinatorDevicesTest, LeavesTheStatusOfARunningWorkspaceAsItIs) {
    makeRunning();
    const testing::WatchedTask task(coordinator->refreshDevices());
    EXPECT_THAT(journal, ElementsAre("refreshing true", "refreshing false"));
    EXPECT_EQ(status(), "Workspace running");
}

TEST_F(WorkspaceCoordinatorDevicesTest, LeavesTheStatusOfAFailedWorkspaceAsItIs) {
    makeReady();
    simulator.script.fail(SimulatorOperation::availableIOSDevices, testing::FakeError(u"Broken."_s));
    const testing::WatchedTask first(coordinator->refreshDevices());
    simulator.script.succeed(SimulatorOperation::availableIOSDevices);
    const testing::WatchedTask second(coordinator->refreshDevices());
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_EQ(status(), "Broken.");
}

TEST_F(WorkspaceCoordinatorDevicesTest, NeverOverlapsTwoRefreshes) {
    simulator.script.delay(SimulatorOperation::availableIOSDevices, 1s);
    makeCoordinator();
    const testing::WatchedTask first(coordinator->refreshDevices());
    const testing::WatchedTask second(coordinator->refreshDevices());
    EXPECT_TRUE(second.isDone());
    EXPECT_TRUE(coordinator->isRefreshingDevices());
    clock.advance(1s);
    EXPECT_TRUE(first.isDone());
    EXPECT_FALSE(coordinator->isRefreshingDevices());
    EXPECT_EQ(log.count("availableIOSDevices"), 1);
}

TEST_F(WorkspaceCoordinatorDevicesTest, DropsAFailureThatArrivesAfterTheCoordinatorHasGone) {
    simulator.script.delay(SimulatorOperation::availableIOSDevices, 1s);
    simulator.script.fail(SimulatorOperation::availableIOSDevices, testing::FakeError(u"Broken."_s));
    makeCoordinator();
    const testing::WatchedTask task(coordinator->refreshDevices());
    coordinator.reset();
    clock.advance(1s);
    EXPECT_TRUE(task.isDone());
    EXPECT_EQ(task.error(), nullptr);
}

TEST_F(WorkspaceCoordinatorDevicesTest, PublishesAPropertyOnlyWhenItChanges) {
    makeReady();
    coordinator->setSelectedDeviceID(u"A"_s);
    coordinator->setUrlInput(coordinator->urlInput());
    EXPECT_THAT(journal, IsEmpty());
    coordinator->setSelectedDeviceID(u"B"_s);
    coordinator->setSelectedDeviceID(u"B"_s);
    coordinator->setUrlInput(u"example.org"_s);
    coordinator->setUrlInput(u"example.org"_s);
    EXPECT_THAT(journal, ElementsAre("selection B", "address example.org"));
}

TEST_F(WorkspaceCoordinatorDevicesTest, SelectsNoDeviceThatIsNotListed) {
    makeReady();
    coordinator->setSelectedDeviceID(u"C"_s);
    EXPECT_EQ(coordinator->selectedDevice(), std::nullopt);
    EXPECT_FALSE(coordinator->canStart());
}

} // namespace

} // namespace corvanta
