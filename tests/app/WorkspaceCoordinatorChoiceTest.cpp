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

class WorkspaceCoordinatorChoiceTest : public WorkspaceCoordinatorTest {
protected:
    /// A start that has found two new pages.
    void makeAsking() {
        makeReady();
        safari.willList({});
        safari.listed = {one, two};
        const auto task = start();
        clock.advance(300ms);
        ASSERT_EQ(coordinator->candidateTargets().size(), 2U);
        forget();
    }

    const SafariTarget one = page(u"One"_s, 0);
    const SafariTarget two = page(u"Two"_s, 1);
};

TEST_F(WorkspaceCoordinatorChoiceTest, AttachesToThePickedPage) {
    makeAsking();
    const auto task = choose(two);
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(journal, ElementsAre("candidates 0", "status Attaching Web Inspector to Two", "phase running",
                                     "status Workspace running", "recovery none"));
    EXPECT_THAT(log.calls(), ElementsAre("attach Two on iPhone 16", "tile iPhone 16"));
    EXPECT_EQ(clock.sleepers(), 1U);
}

TEST_F(WorkspaceCoordinatorChoiceTest, DoesNothingWithoutADevice) {
    makeAsking();
    coordinator->setSelectedDeviceID(std::nullopt);
    forget();
    const auto task = choose(two);
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_EQ(coordinator->candidateTargets().size(), 2U);
}

TEST_F(WorkspaceCoordinatorChoiceTest, FailsWhenThePickedPageHasGone) {
    makeAsking();
    safari.script.fail(SafariOperation::attach, WorkspaceAutomationError::targetUnavailable(u"Two"_s));
    const auto task = choose(two);
    EXPECT_EQ(task.error(), nullptr);
    EXPECT_THAT(journal, ElementsAre("candidates 0", "status Attaching Web Inspector to Two", "phase failed",
                                     "status The Safari target Two is no longer available.",
                                     "recovery Open the page again or choose another inspectable page."));
}

TEST_F(WorkspaceCoordinatorChoiceTest, LeavesRunningForAttachingWhenTheMonitorHasAsked) {
    makeRunning();
    safari.listed = {page(u"Start"_s, 0), page(u"B"_s, 1), page(u"C"_s, 2)};
    clock.advance(2s);
    ASSERT_EQ(coordinator->candidateTargets().size(), 2U);
    forget();
    const auto task = choose(page(u"C"_s, 2));
    EXPECT_THAT(journal, ElementsAre("candidates 0", "phase attachingInspector", "status Attaching Web Inspector to C",
                                     "phase running", "status Workspace running", "recovery none"));
    EXPECT_EQ(clock.sleepers(), 2U) << "the replaced monitor wakes once more to end";
    clock.settle();
    EXPECT_EQ(clock.sleepers(), 1U);
}

TEST_F(WorkspaceCoordinatorChoiceTest, EndsInSilenceOnceItIsStopped) {
    makeAsking();
    safari.script.delay(SafariOperation::attach, 1s);
    const auto task = choose(two);
    coordinator->stopWorkspace();
    forget();
    drain();
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
}

TEST_F(WorkspaceCoordinatorChoiceTest, OutlivesTheCoordinator) {
    makeAsking();
    safari.script.delay(SafariOperation::attach, 1s);
    const auto task = choose(two);
    coordinator.reset();
    drain();
    EXPECT_TRUE(task.isDone());
}

TEST_F(WorkspaceCoordinatorChoiceTest, IsForgottenByANewStart) {
    makeAsking();
    const auto task = start();
    EXPECT_EQ(journal.front(), "candidates 0");
}

TEST_F(WorkspaceCoordinatorChoiceTest, IsRefusedWhereTheWorkspaceIsIdle) {
    makeReady();
    const auto task = choose(one);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_EQ(clock.sleepers(), 0U);
}

} // namespace

} // namespace corvanta
