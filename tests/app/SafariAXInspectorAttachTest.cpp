// SPDX-License-Identifier: MIT
#include "SafariAXInspectorTest.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;

TEST_F(SafariAXInspectorTest, PressesThePageAndKeepsTheNewInspectorWindow) {
    addPage(u"Start"_s);
    addPageThatOpens(u"Shop"_s, u"shop window"_s, 500ms);
    const auto task = attach(target(u"Shop"_s, 1));
    clock.advance(240ms);
    EXPECT_THAT(tree.log.timedCalls(), ElementsAre("0 AXPress Develop", "120 AXPress iPhone 16", "240 AXPress Shop"));
    EXPECT_FALSE(inspector.managedInspectorIsPresent());
    clock.advance(599ms);
    EXPECT_FALSE(task.isDone());
    clock.advance(1ms);
    ASSERT_TRUE(task.isDone());
    task.result();
    EXPECT_EQ(clock.elapsed(), 840ms);
    EXPECT_TRUE(inspector.managedInspectorIsPresent());
    EXPECT_THAT(clock.requestedSleeps(), ElementsAre(120ms, 120ms, 200ms, 200ms, 200ms));
    EXPECT_EQ(tree.log.count("AXCancel"), 0);
}

TEST_F(SafariAXInspectorTest, FindsAWindowThatAppearsOnTheThirdLookAfterThePress) {
    addPage(u"Start"_s);
    // One read happens before the press.
    safari.beforeRead(u"AXWindows"_s, 4, [this] { addInspectorWindow(u"start window"_s); });
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(640ms);
    ASSERT_TRUE(task.isDone());
    task.result();
    EXPECT_EQ(safari.reads(u"AXWindows"_s), 4);
}

TEST_F(SafariAXInspectorTest, FindsAWindowThatIsThereAtOnceWithoutSleepingAgain) {
    addPageThatOpens(u"Start"_s, u"start window"_s, 0ms);
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(clock.requestedSleeps(), ElementsAre(120ms, 120ms));
}

TEST_F(SafariAXInspectorTest, FindsAWindowThatIsThereOnTheThirtiethLook) {
    addPageThatOpens(u"Start"_s, u"start window"_s, 29 * 200ms);
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(240ms + 29 * 200ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(task.error(), nullptr);
}

TEST_F(SafariAXInspectorTest, GivesUpAfterThirtyLooksTwoHundredMillisecondsApart) {
    addPageThatOpens(u"Start"_s, u"start window"_s, 29 * 200ms + 1ms);
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(240ms + 6s - 1ms);
    EXPECT_FALSE(task.isDone());
    clock.advance(1ms);
    EXPECT_EQ(errorOf(task), WorkspaceAutomationError::inspectorWindowUnavailable());
    EXPECT_EQ(safari.reads(u"AXWindows"_s), 31);
    EXPECT_EQ(inspector.managedInspectorWindow(), std::nullopt);
}

TEST_F(SafariAXInspectorTest, LooksPastWindowsThatAreNoInspectors) {
    auto& page = addPage(u"Start"_s);
    auto& census = tree.add(u"localhost"_s).append(tree.add(u"Elements"_s)).append(tree.add(u"Network"_s));
    page.whenPerformed(u"AXPress"_s, [&] {
        safari.append(tree.add(u"A page"_s), u"AXWindows"_s);
        safari.append(census, u"AXWindows"_s);
    });
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(inspector.managedInspectorWindow(), census.handle());
}

TEST_F(SafariAXInspectorTest, ReportsATargetThatVanishedBeforeItIsPressed) {
    auto& page = addPage(u"Start"_s);
    const auto listed = snapshot();
    clock.advance(240ms);
    const SafariTarget vanished = listed.result().front();
    tree.remove(page);
    tree.log.clear();
    const auto task = attach(vanished);
    clock.advance(240ms);
    EXPECT_EQ(errorOf(task), WorkspaceAutomationError::targetUnavailable(u"Start"_s));
    EXPECT_THAT(tree.log.calls(), ElementsAre("AXPress Develop", "AXPress iPhone 16", "AXCancel Develop"));
}

TEST_F(SafariAXInspectorTest, ReportsATargetThatVanishesAsTheMenuIsRead) {
    auto& page = addPage(u"Start"_s);
    page.beforeRead(u"AXEnabled"_s, 1, [&] { tree.remove(page); });
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    EXPECT_EQ(errorOf(task), WorkspaceAutomationError::targetUnavailable(u"Start"_s));
    EXPECT_THAT(tree.log.calls(),
                ElementsAre("AXPress Develop", "AXPress iPhone 16", "AXPress Start refused", "AXCancel Develop"));
}

TEST_F(SafariAXInspectorTest, ReportsATargetThatRefusesThePress) {
    addPage(u"Start"_s).refuse(u"AXPress"_s);
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    EXPECT_EQ(errorOf(task), WorkspaceAutomationError::targetUnavailable(u"Start"_s));
    EXPECT_EQ(tree.log.calls().back(), "AXCancel Develop");
}

TEST_F(SafariAXInspectorTest, PassesTheMenusFailuresOnWhenItAttaches) {
    tree.remove(device);
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(120ms);
    EXPECT_EQ(errorOf(task), WorkspaceAutomationError::simulatorMenuUnavailable(u"iPhone 16"_s));
}

TEST_F(SafariAXInspectorTest, FindsNothingNewWhenThePagesInspectorWasOpenAlready) {
    addInspectorWindow(u"start window"_s);
    addPage(u"Start"_s);
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(240ms + 6s);
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(errorOf(task), WorkspaceAutomationError::inspectorWindowUnavailable());
    EXPECT_EQ(tree.log.count("AXCancel"), 0);
}

TEST_F(SafariAXInspectorTest, ClosesTheFirstInspectorWhenItAttachesToAnotherPage) {
    addPageThatOpens(u"Start"_s, u"start window"_s, 0ms);
    addPageThatOpens(u"Shop"_s, u"shop window"_s, 0ms);
    const auto first = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    ASSERT_TRUE(first.isDone());
    const auto firstWindow = inspector.managedInspectorWindow();
    ASSERT_TRUE(firstWindow);
    tree.elementOf(*firstWindow).set(u"AXCloseButton"_s, &tree.add(u"close button"_s));
    tree.log.clear();

    const auto second = attach(target(u"Shop"_s, 1));
    clock.advance(240ms);
    ASSERT_TRUE(second.isDone());
    second.result();
    EXPECT_NE(inspector.managedInspectorWindow(), firstWindow);
    EXPECT_THAT(tree.log.calls(),
                ElementsAre("AXPress Develop", "AXPress iPhone 16", "AXPress Shop", "AXPress close button"));
}

TEST_F(SafariAXInspectorTest, LeavesAFirstInspectorWithoutACloseButtonOpen) {
    addPageThatOpens(u"Start"_s, u"start window"_s, 0ms);
    addPageThatOpens(u"Shop"_s, u"shop window"_s, 0ms);
    const auto first = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    const auto second = attach(target(u"Shop"_s, 1));
    clock.advance(240ms);
    ASSERT_TRUE(second.isDone());
    EXPECT_EQ(second.error(), nullptr);
}

TEST_F(SafariAXInspectorTest, KeepsTheManagedInspectorWhenItsWindowIsTheOneThatComesBack) {
    auto& window = tree.add(u"window"_s).title(u"Web Inspector"_s).set(u"AXCloseButton"_s, &tree.add(u"close"_s));
    addPage(u"Start"_s).whenPerformed(u"AXPress"_s, [&] { safari.set(u"AXWindows"_s, Element::Elements{&window}); });
    const auto first = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    ASSERT_TRUE(first.isDone());
    // Hidden from the list, so that the next look takes it for a new window.
    safari.set(u"AXWindows"_s, Element::Elements{});
    const auto second = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    ASSERT_TRUE(second.isDone());
    EXPECT_EQ(second.error(), nullptr);
    EXPECT_EQ(inspector.managedInspectorWindow(), window.handle());
    EXPECT_EQ(tree.log.count("AXPress close"), 0);
}

TEST_F(SafariAXInspectorTest, KeepsTheManagedInspectorWhenAnAttachFails) {
    addPageThatOpens(u"Start"_s, u"start window"_s, 0ms);
    const auto first = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    const auto kept = inspector.managedInspectorWindow();
    const auto second = attach(target(u"Gone"_s, 7));
    clock.advance(240ms);
    EXPECT_NE(second.error(), nullptr);
    EXPECT_EQ(inspector.managedInspectorWindow(), kept);
}

TEST_F(SafariAXInspectorTest, NoticesThatTheManagedInspectorIsGone) {
    EXPECT_FALSE(inspector.managedInspectorIsPresent());
    auto& window = tree.add(u"window"_s).title(u"Web Inspector"_s);
    addPage(u"Start"_s).whenPerformed(u"AXPress"_s, [&] { safari.append(window, u"AXWindows"_s); });
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    EXPECT_TRUE(inspector.managedInspectorIsPresent());
    addInspectorWindow(u"another"_s);
    tree.remove(window);
    EXPECT_FALSE(inspector.managedInspectorIsPresent());
    EXPECT_NE(inspector.managedInspectorWindow(), std::nullopt);
}

TEST_F(SafariAXInspectorTest, NoticesThatTheManagedInspectorIsGoneWithSafari) {
    addPageThatOpens(u"Start"_s, u"start window"_s, 0ms);
    const auto task = attach(target(u"Start"_s, 0));
    clock.advance(240ms);
    tree.quitApplication(safariIdentifier);
    EXPECT_FALSE(inspector.managedInspectorIsPresent());
}

TEST_F(SafariAXInspectorTest, LetsMenuOperationsTakeTurns) {
    addPageThatOpens(u"Start"_s, u"start window"_s, 0ms);
    const auto first = snapshot();
    const auto second = attach(target(u"Start"_s, 0));
    const auto third = snapshot();
    clock.advance(2s);
    EXPECT_TRUE(first.isDone() && second.isDone() && third.isDone());
    EXPECT_THAT(tree.log.timedCalls(),
                ElementsAre("0 AXPress Develop", "120 AXPress iPhone 16", "240 AXCancel Develop", //
                            "240 AXPress Develop", "360 AXPress iPhone 16", "480 AXPress Start",  //
                            "480 AXPress Develop", "600 AXPress iPhone 16", "720 AXCancel Develop"));
}

TEST_F(SafariAXInspectorTest, EndsWhenItIsCancelledWhileItWaitsForTheInspectorWindow) {
    addPage(u"Start"_s);
    CancellationSource source;
    const auto task = attach(target(u"Start"_s, 0), source.token());
    clock.advance(1s);
    source.cancel();
    clock.settle();
    ASSERT_TRUE(task.isDone());
    EXPECT_TRUE(wasCancelled(task));
    EXPECT_EQ(inspector.managedInspectorWindow(), std::nullopt);
}

TEST_F(SafariAXInspectorTest, DoesNotTakeAWindowForItsOwnThatAnEarlierAttachHasOpened) {
    addPageThatOpens(u"Start"_s, u"start window"_s, 0ms);
    addPageThatOpens(u"Shop"_s, u"shop window"_s, 300ms);
    const auto first = attach(target(u"Start"_s, 0));
    const auto second = attach(target(u"Shop"_s, 1));
    clock.advance(240ms);
    ASSERT_TRUE(first.isDone());
    clock.advance(240ms);
    EXPECT_FALSE(second.isDone());
    clock.advance(400ms);
    ASSERT_TRUE(second.isDone());
    second.result();
    const auto managed = inspector.managedInspectorWindow();
    ASSERT_TRUE(managed);
    EXPECT_EQ(tree.elementOf(*managed).name(), u"shop window"_s);
}

} // namespace

} // namespace corvanta
