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

class WorkspaceCoordinatorMonitorTest : public WorkspaceCoordinatorTest {
protected:
    const SafariTarget first = page(u"Start"_s, 0);
    const SafariTarget second = page(u"B"_s, 1);
    const SafariTarget third = page(u"C"_s, 2);
};

TEST_F(WorkspaceCoordinatorMonitorTest, LooksEveryTwoSecondsAndNeverAtOnce) {
    makeRunning();
    clock.advance(1999ms);
    EXPECT_THAT(log.calls(), IsEmpty());
    clock.advance(4001ms);
    EXPECT_THAT(log.timedCalls(), ElementsAre("2000 snapshotTargets iPhone 16", "4000 snapshotTargets iPhone 16",
                                              "6000 snapshotTargets iPhone 16"));
    EXPECT_THAT(sleeps(), ElementsAre(2s, 2s, 2s));
}

TEST_F(WorkspaceCoordinatorMonitorTest, ChangesNothingWhenNothingIsNew) {
    makeRunning();
    clock.advance(60s);
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_EQ(log.count("attach"), 0);
}

TEST_F(WorkspaceCoordinatorMonitorTest, AttachesToOneNewPage) {
    makeRunning();
    safari.listed = {first, second};
    clock.advance(2s);
    EXPECT_THAT(journal, ElementsAre("phase attachingInspector", "status Attaching Web Inspector to B", "phase running",
                                     "status Workspace running"));
    EXPECT_THAT(log.calls(), ElementsAre("snapshotTargets iPhone 16", "attach B on iPhone 16", "tile iPhone 16"));
    forget();
    clock.advance(2s);
    EXPECT_THAT(log.timedCalls(), ElementsAre("2000 snapshotTargets iPhone 16"));
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_EQ(clock.sleepers(), 1U);
}

TEST_F(WorkspaceCoordinatorMonitorTest, TakesNoPageForNewThatReplacedAnother) {
    makeRunning();
    safari.listed = {page(u"Replaced"_s, 0)};
    clock.advance(2s);
    EXPECT_THAT(journal, IsEmpty());
    safari.listed.push_back(second);
    clock.advance(2s);
    EXPECT_EQ(log.count("attach B"), 1);
}

TEST_F(WorkspaceCoordinatorMonitorTest, RemembersAShorterListSoThatAReturningPageIsNew) {
    makeRunning();
    safari.listed = {first, second};
    clock.advance(2s);
    safari.listed = {first};
    clock.advance(2s);
    safari.listed = {first, second};
    clock.advance(2s);
    EXPECT_EQ(log.count("attach B"), 2);
}

TEST_F(WorkspaceCoordinatorMonitorTest, PrefersTheNewPageThatMentionsTheAddress) {
    makeRunning();
    safari.listed = {first, second, page(u"LOCALHOST shop"_s, 2)};
    clock.advance(2s);
    EXPECT_EQ(log.count("attach LOCALHOST shop"), 1);
}

TEST_F(WorkspaceCoordinatorMonitorTest, AsksAmongSeveralNewPagesAndPauses) {
    makeRunning();
    safari.listed = {first, second, third};
    clock.advance(2s);
    EXPECT_THAT(journal, ElementsAre("candidates 2", "status Choose the newest Safari page",
                                     "recovery More than one inspectable page appeared."));
    EXPECT_THAT(coordinator->candidateTargets(), ElementsAre(second, third));
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::running);
    forget();
    clock.advance(20s);
    EXPECT_THAT(log.calls(), IsEmpty());
    const auto task = choose(second);
    forget();
    clock.advance(2s);
    EXPECT_EQ(log.count("snapshotTargets"), 1);
}

TEST_F(WorkspaceCoordinatorMonitorTest, DropsAListThatCannotBeRead) {
    makeRunning();
    safari.willFailToList(WorkspaceAutomationError::developMenuUnavailable());
    safari.inspectorIsPresent = false;
    clock.advance(2s);
    EXPECT_THAT(journal, IsEmpty());
    clock.advance(2s);
    EXPECT_EQ(log.count("attach Start"), 1);
}

TEST_F(WorkspaceCoordinatorMonitorTest, AttachesAgainWhenTheInspectorWasClosed) {
    makeRunning();
    safari.inspectorIsPresent = false;
    clock.advance(2s);
    EXPECT_THAT(journal, ElementsAre("phase attachingInspector", "status Attaching Web Inspector to Start",
                                     "phase running", "status Workspace running"));
    EXPECT_EQ(log.count("attach Start"), 1);
}

TEST_F(WorkspaceCoordinatorMonitorTest, AsksAmongAllPagesWhenTheInspectorWasClosed) {
    makeRunning();
    safari.inspectorIsPresent = false;
    safari.listed = {first, second};
    clock.advance(2s);
    EXPECT_THAT(journal,
                ElementsAre("phase attachingInspector", "candidates 2", "status Choose the Safari page to inspect",
                            "recovery Several new inspectable pages appeared together."));
    forget();
    clock.advance(10s);
    EXPECT_THAT(log.calls(), IsEmpty());
    const auto task = choose(first);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::running);
    clock.settle();
    EXPECT_EQ(clock.sleepers(), 1U);
}

TEST_F(WorkspaceCoordinatorMonitorTest, FailsWhenTheInspectorWasClosedAndNoPageIsLeft) {
    makeRunning();
    safari.inspectorIsPresent = false;
    safari.listed.clear();
    clock.advance(2s);
    EXPECT_THAT(journal,
                ElementsAre("phase attachingInspector", "phase failed",
                            "status iPhone 16 is not listed in Safari's Develop menu yet.",
                            "recovery Wait for the simulator to finish booting and for Safari to display the page, "
                            "then retry."));
}

TEST_F(WorkspaceCoordinatorMonitorTest, FailsWhenItCannotAttachAgain) {
    makeRunning();
    safari.script.fail(SafariOperation::attach, WorkspaceAutomationError::targetUnavailable(u"B"_s));
    safari.listed = {first, second};
    clock.advance(2s);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_EQ(status(), "The Safari target B is no longer available.");
    forget();
    clock.advance(10s);
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorMonitorTest, FailsWhenTheControlWindowIsGoneAsItAttachesAgain) {
    makeRunning();
    safari.inspectorIsPresent = false;
    controlWindow.reset();
    clock.advance(2s);
    EXPECT_EQ(status(), "Safari opened the target, but its Web Inspector window could not be found.");
}

TEST_F(WorkspaceCoordinatorMonitorTest, WatchesTheDeviceThatWasStartedEvenWhenAnotherIsSelected) {
    makeRunning();
    coordinator->setSelectedDeviceID(u"B"_s);
    forget();
    clock.advance(2s);
    EXPECT_THAT(log.calls(), ElementsAre("snapshotTargets iPhone 16"));
}

TEST_F(WorkspaceCoordinatorMonitorTest, EndsInTheMiddleOfALookWhenItIsStopped) {
    makeRunning();
    safari.script.delay(SafariOperation::snapshotTargets, 1s);
    safari.listed = {first, second};
    clock.advance(2s);
    coordinator->stopWorkspace();
    forget();
    clock.settle();
    EXPECT_EQ(clock.sleepers(), 0U);
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorMonitorTest, EndsInTheMiddleOfAnAttachWhenItIsStopped) {
    makeRunning();
    safari.script.delay(SafariOperation::attach, 1s);
    safari.listed = {first, second};
    clock.advance(2s);
    ASSERT_EQ(coordinator->phase(), WorkspacePhase::attachingInspector);
    coordinator->stopWorkspace();
    forget();
    drain();
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_EQ(clock.sleepers(), 0U);
}

TEST_F(WorkspaceCoordinatorMonitorTest, NeverKeepsTheCoordinatorAlive) {
    makeRunning();
    clock.advance(1s);
    coordinator.reset();
    forget();
    drain();
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_EQ(clock.sleepers(), 0U);
}

TEST_F(WorkspaceCoordinatorMonitorTest, EndsInTheMiddleOfALookWhenTheCoordinatorGoes) {
    makeRunning();
    safari.script.delay(SafariOperation::snapshotTargets, 1s);
    clock.advance(2s);
    coordinator.reset();
    drain();
    EXPECT_EQ(clock.sleepers(), 0U);
}

TEST_F(WorkspaceCoordinatorMonitorTest, EndsInTheMiddleOfAnAttachWhenTheCoordinatorGoes) {
    makeRunning();
    safari.script.delay(SafariOperation::attach, 1s);
    safari.inspectorIsPresent = false;
    clock.advance(2s);
    ASSERT_EQ(log.count("attach"), 1);
    coordinator.reset();
    drain();
    EXPECT_EQ(clock.sleepers(), 0U);
}

} // namespace

} // namespace corvanta
