// SPDX-License-Identifier: MIT
#include "WorkspaceCoordinatorTest.h"

#include "safari/WorkspaceAutomationError.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using testing::SafariOperation;
using testing::SimulatorOperation;

class WorkspaceCoordinatorReloadTest : public WorkspaceCoordinatorTest {
protected:
    const SafariTarget oldPage = page(u"Start"_s, 0);
    const SafariTarget newPage = page(u"Again"_s, 1);
};

TEST_F(WorkspaceCoordinatorReloadTest, OpensTheEditedAddressAndAttachesToTheNewPage) {
    makeRunning();
    coordinator->setUrlInput(u" Example.org/Docs "_s);
    forget();
    safari.willList({oldPage});
    safari.listed = {oldPage, newPage};
    const auto task = reload();
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(journal,
                ElementsAre("address http://Example.org/Docs", "phase openingPage", "status Opening Example.org",
                            "phase attachingInspector", "status Attaching Web Inspector to Again", "phase running",
                            "status Workspace running"));
    EXPECT_THAT(log.calls(), ElementsAre("snapshotTargets iPhone 16", "openURL A http://Example.org/Docs",
                                         "snapshotTargets iPhone 16", "attach Again on iPhone 16", "tile iPhone 16"));
    EXPECT_EQ(storedProfile().pageURL, u"http://Example.org/Docs"_s);
    clock.settle();
    EXPECT_EQ(clock.sleepers(), 1U);
}

TEST_F(WorkspaceCoordinatorReloadTest, WaitsForTheNewPageAsAStartDoes) {
    makeRunning();
    const auto task = reload();
    clock.advance(10s - 1ms);
    EXPECT_FALSE(task.isDone());
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::attachingInspector);
    EXPECT_EQ(status(), "Opening localhost");
    EXPECT_EQ(log.count("snapshotTargets"), 41);
    clock.advance(1ms);
    EXPECT_TRUE(task.isDone());
    EXPECT_EQ(log.count("attach Start"), 1);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::running);
}

TEST_F(WorkspaceCoordinatorReloadTest, TreatsAMenuThatCannotBeReadBeforehandAsEmpty) {
    makeRunning();
    safari.willFailToList(WorkspaceAutomationError::developMenuUnavailable());
    const auto task = reload();
    EXPECT_TRUE(task.isDone());
    EXPECT_EQ(log.count("attach Start"), 1);
}

TEST_F(WorkspaceCoordinatorReloadTest, DoesNothingWithoutADevice) {
    makeRunning();
    coordinator->setSelectedDeviceID(std::nullopt);
    forget();
    const auto task = reload();
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorReloadTest, FailsOnAnAddressThatIsNone) {
    makeRunning();
    coordinator->setUrlInput(u"ftp://example.org"_s);
    forget();
    const auto saved = storedProfile();
    const auto task = reload();
    EXPECT_THAT(journal, ElementsAre("phase failed", "status The ftp URL scheme is not supported.",
                                     "recovery Use an HTTP or HTTPS address, for example http://localhost:3000."));
    EXPECT_EQ(storedProfile(), saved);
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorReloadTest, FailsFromAPhaseThatItMayNotLeave) {
    makeReady();
    const auto task = reload();
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_EQ(recovery(), "none");
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorReloadTest, FailsWhenThePageCannotBeOpened) {
    makeRunning();
    simulator.script.fail(SimulatorOperation::openURL, testing::FakeError(u"No such device."_s, u"Boot it."_s));
    const auto task = reload();
    EXPECT_THAT(journal, ElementsAre("phase openingPage", "status Opening localhost", "phase failed",
                                     "status No such device.", "recovery Boot it."));
}

TEST_F(WorkspaceCoordinatorReloadTest, AsksTheUserWhenSeveralNewPagesAppear) {
    makeRunning();
    safari.willList({oldPage});
    safari.listed = {oldPage, newPage, page(u"Third"_s, 2)};
    const auto task = reload();
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::attachingInspector);
    EXPECT_EQ(status(), "Choose the Safari page to inspect");
    EXPECT_THAT(coordinator->candidateTargets(), ElementsAre(newPage, page(u"Third"_s, 2)));
}

TEST_F(WorkspaceCoordinatorReloadTest, LeavesTheMonitorIdleAndReplacesItAtTheEnd) {
    makeRunning();
    const auto task = reload();
    clock.advance(9s);
    // One snapshot beforehand and one every quarter of a second; the monitor's looks would come on top.
    EXPECT_EQ(log.count("snapshotTargets"), 1 + 37);
    EXPECT_EQ(clock.sleepers(), 2U);
    clock.advance(1s);
    ASSERT_TRUE(task.isDone());
    clock.advance(2s);
    EXPECT_EQ(clock.sleepers(), 1U);
}

TEST_F(WorkspaceCoordinatorReloadTest, TakesOverFromAPollThatIsUnderWay) {
    makeRunning();
    safari.script.delay(SafariOperation::snapshotTargets, 1s);
    clock.advance(2s);
    ASSERT_EQ(log.count("snapshotTargets"), 1);
    forget();
    safari.willList({oldPage});
    safari.willList({oldPage});
    safari.listed = {oldPage, newPage};
    const auto task = reload();
    clock.advance(3s);
    EXPECT_TRUE(task.isDone());
    EXPECT_EQ(log.count("attach Again"), 1);
    EXPECT_THAT(published("phase"), ElementsAre("phase openingPage", "phase attachingInspector", "phase running"));
}

class WorkspaceCoordinatorReloadSuspension : public WorkspaceCoordinatorReloadTest,
                                             public ::testing::WithParamInterface<int> {
protected:
    [[nodiscard]] testing::WatchedTask<void> reloadPartly() {
        makeRunning();
        simulator.script.delay(SimulatorOperation::openURL, 100ms);
        safari.script.delay(SafariOperation::snapshotTargets, 100ms);
        safari.script.delay(SafariOperation::attach, 100ms);
        safari.willList({oldPage});
        safari.willList({oldPage});
        safari.listed = {oldPage, newPage};
        auto task = reload();
        for (int step = 0; step < GetParam(); ++step)
            EXPECT_TRUE(clock.step());
        EXPECT_FALSE(task.isDone());
        forget();
        return task;
    }
};

TEST_P(WorkspaceCoordinatorReloadSuspension, EndsInSilenceOnceItIsStopped) {
    const auto task = reloadPartly();
    coordinator->stopWorkspace();
    drain();
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(journal, ElementsAre("phase idle", "status Stopped; external apps were left running"));
    EXPECT_THAT(log.calls(), ElementsAre("restore"));
    EXPECT_EQ(clock.sleepers(), 0U);
}

TEST_P(WorkspaceCoordinatorReloadSuspension, OutlivesTheCoordinator) {
    const auto task = reloadPartly();
    coordinator.reset();
    drain();
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(log.calls(), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(AtEachStep, WorkspaceCoordinatorReloadSuspension, ::testing::Range(0, 6));

} // namespace

} // namespace corvanta
