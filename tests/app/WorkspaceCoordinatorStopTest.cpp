// SPDX-License-Identifier: MIT
#include "WorkspaceCoordinatorTest.h"

#include "safari/WorkspaceAutomationError.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using WorkspaceCoordinatorRetileTest = WorkspaceCoordinatorTest;
using WorkspaceCoordinatorStopTest = WorkspaceCoordinatorTest;

TEST_F(WorkspaceCoordinatorRetileTest, TilesTheSameWindowsAgain) {
    makeRunning();
    coordinator->retile();
    EXPECT_THAT(log.calls(), ElementsAre("tile iPhone 16"));
    EXPECT_EQ(arranger.tiledInspectorWindow, safari.managedInspectorWindow());
    EXPECT_THAT(journal, ElementsAre("status Workspace re-tiled"));
}

TEST_F(WorkspaceCoordinatorRetileTest, OnlyTellsOfAnErrorAndStaysRunning) {
    makeRunning();
    arranger.fail(WorkspaceAutomationError::accessibilityPermissionMissing());
    coordinator->retile();
    EXPECT_THAT(journal,
                ElementsAre("status Accessibility permission is required.",
                            "recovery Allow Corvanta in System Settings > Privacy & Security > Accessibility, then "
                            "retry."));
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::running);
    forget();
    arranger.succeed();
    coordinator->retile();
    EXPECT_THAT(journal, ElementsAre("status Workspace re-tiled", "recovery none"));
}

TEST_F(WorkspaceCoordinatorRetileTest, DoesNothingOnceTheControlWindowIsClosed) {
    makeRunning();
    EXPECT_TRUE(coordinator->canRetile());
    controlWindow.reset();
    EXPECT_FALSE(coordinator->canRetile());
    coordinator->retile();
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(WorkspaceCoordinatorRetileTest, DoesNothingWithoutADevice) {
    makeRunning();
    coordinator->setSelectedDeviceID(std::nullopt);
    forget();
    coordinator->retile();
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorRetileTest, HandsOnAnAbsentInspectorWindow) {
    makeReady();
    coordinator->retile();
    EXPECT_THAT(log.calls(), ElementsAre("tile iPhone 16"));
    EXPECT_EQ(arranger.tiledInspectorWindow, std::nullopt);
}

TEST_F(WorkspaceCoordinatorStopTest, PutsTheWindowsBackAndReturnsToIdle) {
    makeRunning();
    coordinator->stopWorkspace();
    EXPECT_THAT(log.calls(), ElementsAre("restore"));
    EXPECT_THAT(journal, ElementsAre("phase idle", "status Stopped; external apps were left running"));
    EXPECT_FALSE(coordinator->canStop() || coordinator->canReload() || coordinator->canRetile());
    EXPECT_TRUE(coordinator->canStart());
}

TEST_F(WorkspaceCoordinatorStopTest, StaysIdleButSetsItsTextWhenItIsIdle) {
    makeReady();
    coordinator->stopWorkspace();
    EXPECT_THAT(journal, ElementsAre("status Stopped; external apps were left running"));
    EXPECT_THAT(log.calls(), ElementsAre("restore"));
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
}

TEST_F(WorkspaceCoordinatorStopTest, LeavesTheFailedPhase) {
    makeReady();
    safari.script.fail(testing::SafariOperation::ensureSafariRunning, testing::FakeError(u"Damaged."_s));
    const auto task = start();
    coordinator->stopWorkspace();
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
}

TEST_F(WorkspaceCoordinatorStopTest, EndsTheMonitor) {
    makeRunning();
    clock.advance(1s);
    coordinator->stopWorkspace();
    forget();
    clock.settle();
    EXPECT_EQ(clock.sleepers(), 0U);
    clock.advance(60s);
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(WorkspaceCoordinatorStopTest, LetsTheTasksBeAwaited) {
    makeRunning();
    coordinator->stopWorkspace();
    const testing::WatchedTask task(coordinator->finishTasks());
    EXPECT_FALSE(task.isDone());
    clock.settle();
    EXPECT_TRUE(task.isDone());
}

TEST_F(WorkspaceCoordinatorStopTest, AllowsAnotherStart) {
    makeRunning();
    coordinator->stopWorkspace();
    forget();
    safari.willList({});
    const auto task = start();
    clock.advance(300ms);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::running);
    EXPECT_EQ(clock.sleepers(), 1U);
}

TEST_F(WorkspaceCoordinatorStopTest, TellsWhenTheControlWindowChanges) {
    makeReady();
    int changes = 0;
    QObject::connect(coordinator.get(), &WorkspaceCoordinator::controlWindowChanged, [&] { ++changes; });
    coordinator->setControlWindow({});
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(coordinator->canRetile());
}

} // namespace

} // namespace corvanta
