// SPDX-License-Identifier: MIT
#include "SafariAXInspectorTest.h"

#include "FakeError.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(SafariAXInspectorTest, LeavesARunningSafariAlone) {
    desktop.running.insert(safariIdentifier);
    const testing::WatchedTask task(inspector.ensureSafariRunning());
    EXPECT_TRUE(task.isDone());
    task.result();
    EXPECT_THAT(desktopLog.calls(), IsEmpty());
}

TEST_F(SafariAXInspectorTest, LaunchesSafariByItsPathAndWaitsUntilItRuns) {
    desktop.paths[safariIdentifier] = u"/Applications/Safari.app"_s;
    desktop.script.delay(testing::DesktopOperation::openApplication, 2s);
    const testing::WatchedTask task(inspector.ensureSafariRunning());
    EXPECT_THAT(desktopLog.calls(), ElementsAre("openApplication /Applications/Safari.app"));
    clock.advance(1999ms);
    EXPECT_FALSE(task.isDone());
    clock.advance(1ms);
    EXPECT_TRUE(task.isDone());
    task.result();
    EXPECT_TRUE(desktop.isRunning(safariIdentifier));
}

TEST_F(SafariAXInspectorTest, TellsWhySafariCouldNotLaunch) {
    desktop.script.fail(testing::DesktopOperation::openApplication,
                        testing::FakeError(u"The application is damaged."_s, u"Install it again."_s));
    EXPECT_EQ(errorOf(testing::WatchedTask(inspector.ensureSafariRunning())),
              WorkspaceAutomationError::safariCouldNotLaunch(u"The application is damaged."_s));
}

TEST_F(SafariAXInspectorTest, FindsTheDevelopMenuWithoutRegardToCase) {
    EXPECT_TRUE(inspector.developerFeaturesAvailable());
    develop.title(u"DEVELOP"_s);
    EXPECT_TRUE(inspector.developerFeaturesAvailable());
    develop.title(u""_s).description(u"Develop"_s);
    EXPECT_TRUE(inspector.developerFeaturesAvailable());
    EXPECT_THAT(tree.log.calls(), IsEmpty());
}

TEST_F(SafariAXInspectorTest, ComparesTheWholeLabelWithDevelop) {
    for (const QString& label : {u"Developer"_s, u"My Develop"_s, u"Dévelop"_s, u""_s}) {
        develop.title(label);
        EXPECT_FALSE(inspector.developerFeaturesAvailable()) << label.toStdString();
    }
}

TEST_F(SafariAXInspectorTest, HasNoDeveloperFeaturesWhereTheMenuBarCannotBeRead) {
    safari.unset(u"AXMenuBar"_s);
    EXPECT_FALSE(inspector.developerFeaturesAvailable());
    tree.quitApplication(safariIdentifier);
    EXPECT_FALSE(inspector.developerFeaturesAvailable());
}

TEST_F(SafariAXInspectorTest, ListsThePagesOfTheDevice) {
    addPage(u"Start"_s);
    addPage(u" Shop \n"_s);
    const auto task = snapshot();
    clock.advance(240ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(task.result(), ElementsAre(SafariTarget{u"0.0|Start"_s, u"Start"_s, {0, 0}},
                                           SafariTarget{u"0.1| Shop \n"_s, u"Shop"_s, {0, 1}}));
}

TEST_F(SafariAXInspectorTest, PausesAfterEachPressAndClosesTheMenuAfterReading) {
    addPage(u"Start"_s);
    const auto task = snapshot();
    EXPECT_THAT(tree.log.calls(), ElementsAre("AXPress Develop"));
    clock.advance(119ms);
    EXPECT_THAT(tree.log.calls(), ElementsAre("AXPress Develop"));
    clock.advance(1ms);
    EXPECT_THAT(tree.log.calls(), ElementsAre("AXPress Develop", "AXPress iPhone 16"));
    clock.advance(119ms);
    EXPECT_FALSE(task.isDone());
    EXPECT_EQ(deviceMenu.reads(u"AXChildren"_s), 0);
    clock.advance(1ms);
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(tree.log.timedCalls(),
                ElementsAre("0 AXPress Develop", "120 AXPress iPhone 16", "240 AXCancel Develop"));
    EXPECT_THAT(clock.requestedSleeps(), ElementsAre(120ms, 120ms));
}

TEST_F(SafariAXInspectorTest, SucceedsWithAnEmptyListAndClosesTheMenu) {
    const auto task = snapshot();
    clock.advance(240ms);
    EXPECT_THAT(task.result(), IsEmpty());
    EXPECT_EQ(tree.log.calls().back(), "AXCancel Develop");
}

TEST_F(SafariAXInspectorTest, TakesADisabledItemOutAndOneWithoutAReadableStateIn) {
    addPage(u"Off"_s).enabled(false);
    addPage(u"On"_s).enabled(true);
    addPage(u"Zero"_s).set(u"AXEnabled"_s, 0.0);
    addPage(u"One"_s).set(u"AXEnabled"_s, 1.0);
    addPage(u"Text"_s).set(u"AXEnabled"_s, u"no"_s);
    const auto task = snapshot();
    clock.advance(240ms);
    EXPECT_THAT(task.result(), ElementsAre(target(u"On"_s, 1), target(u"One"_s, 3), target(u"Text"_s, 4)));
}

TEST_F(SafariAXInspectorTest, NamesUntitledItemsByTheirDescription) {
    addPage(u""_s).description(u"Start"_s);
    const auto task = snapshot();
    clock.advance(240ms);
    EXPECT_THAT(task.result(), ElementsAre(target(u"Start"_s, 0)));
}

TEST_F(SafariAXInspectorTest, ReadsTheMenuToAnyDepth) {
    auto* parent = &addPage(u"Group"_s);
    for (int level = 0; level < 12; ++level) {
        auto& next = tree.add(u"Level"_s);
        parent->append(next);
        parent = &next;
    }
    const auto task = snapshot();
    clock.advance(240ms);
    ASSERT_EQ(task.result().size(), 1U);
    EXPECT_EQ(task.result().front().id, u"0.0.0.0.0.0.0.0.0.0.0.0.0.0|Level"_s);
}

TEST_F(SafariAXInspectorTest, SeesAMenuThatIsFilledOnlyWhenItOpens) {
    device.whenPerformed(u"AXPress"_s, [this] { tree.after(100ms, [this] { addPage(u"Late"_s); }); });
    const auto task = snapshot();
    clock.advance(240ms);
    EXPECT_THAT(task.result(), ElementsAre(target(u"Late"_s, 0)));
}

TEST_F(SafariAXInspectorTest, TakesTheFirstItemThatContainsTheDeviceNameInAnyCase) {
    device.title(u"IPHONE 16 Pro"_s);
    addPage(u"Start"_s);
    auto& exact = tree.add(u"iPhone 16"_s);
    developMenu.append(exact);
    const auto task = snapshot();
    clock.advance(240ms);
    EXPECT_THAT(task.result(), ElementsAre(target(u"Start"_s, 0)));
}

TEST_F(SafariAXInspectorTest, LooksForTheDeviceFiveLevelsDeep) {
    tree.remove(device);
    auto& first = tree.addUntitled(u"1"_s);
    auto& second = tree.addUntitled(u"2"_s);
    auto& third = tree.addUntitled(u"3"_s);
    auto& fifth = tree.add(u"iPhone 16"_s);
    developMenu.append(first);
    first.append(second);
    second.append(third);
    third.append(fifth);
    const auto found = snapshot();
    clock.advance(240ms);
    EXPECT_EQ(found.error(), nullptr);

    auto& tooDeep = tree.addUntitled(u"4"_s);
    tree.remove(fifth);
    third.append(tooDeep);
    tooDeep.append(tree.add(u"iPhone 16"_s));
    const auto missed = snapshot();
    clock.advance(240ms);
    EXPECT_EQ(errorOf(missed), WorkspaceAutomationError::simulatorMenuUnavailable(u"iPhone 16"_s));
}

TEST_F(SafariAXInspectorTest, RefusesToOpenTheMenuWithoutThePermissionAndWithoutAsking) {
    tree.trusted = false;
    EXPECT_EQ(errorOf(snapshot()), WorkspaceAutomationError::accessibilityPermissionMissing());
    EXPECT_EQ(tree.trustRequests, 0);
    EXPECT_THAT(tree.log.calls(), IsEmpty());
}

TEST_F(SafariAXInspectorTest, MissesTheDevelopMenuOfASafariThatDoesNotRun) {
    tree.quitApplication(safariIdentifier);
    EXPECT_EQ(errorOf(snapshot()), WorkspaceAutomationError::developMenuUnavailable());
}

TEST_F(SafariAXInspectorTest, MissesTheDevelopMenuWithoutAMenuBar) {
    safari.unset(u"AXMenuBar"_s);
    EXPECT_EQ(errorOf(snapshot()), WorkspaceAutomationError::developMenuUnavailable());
}

TEST_F(SafariAXInspectorTest, MissesTheDeveloperFeaturesWithoutADevelopMenu) {
    tree.remove(develop);
    EXPECT_FALSE(inspector.developerFeaturesAvailable());
    EXPECT_EQ(errorOf(snapshot()), WorkspaceAutomationError::safariDeveloperFeaturesMissing());
    EXPECT_THAT(tree.log.calls(), IsEmpty());
}

TEST_F(SafariAXInspectorTest, ClosesTheMenuAndNamesADeviceThatIsNotListed) {
    tree.remove(device);
    const auto task = snapshot();
    clock.advance(120ms);
    EXPECT_EQ(errorOf(task), WorkspaceAutomationError::simulatorMenuUnavailable(u"iPhone 16"_s));
    EXPECT_THAT(tree.log.timedCalls(), ElementsAre("0 AXPress Develop", "120 AXCancel Develop"));
}

TEST_F(SafariAXInspectorTest, GoesOnWhenAMenuRefusesThePressThatOpensIt) {
    addPage(u"Start"_s);
    develop.refuse(u"AXPress"_s);
    device.refuse(u"AXPress"_s);
    const auto task = snapshot();
    clock.advance(240ms);
    EXPECT_THAT(task.result(), ElementsAre(target(u"Start"_s, 0)));
}

TEST_F(SafariAXInspectorTest, FindsNothingInASafariThatQuitsWhileItsMenuIsOpen) {
    addPage(u"Start"_s);
    const auto task = snapshot();
    tree.remove(develop);
    tree.remove(device);
    tree.quitApplication(safariIdentifier);
    clock.advance(240ms);
    EXPECT_EQ(errorOf(task), WorkspaceAutomationError::simulatorMenuUnavailable(u"iPhone 16"_s));
}

TEST_F(SafariAXInspectorTest, PassesTheTurnOnAfterAFailure) {
    addPage(u"Start"_s);
    tree.trusted = false;
    const auto first = snapshot();
    tree.trusted = true;
    const auto second = snapshot();
    clock.advance(240ms);
    EXPECT_NE(first.error(), nullptr);
    EXPECT_EQ(second.result().size(), 1U);
}

TEST_F(SafariAXInspectorTest, EndsAndClosesTheMenuWhenItIsCancelledAfterTheFirstPress) {
    CancellationSource source;
    const auto task = snapshot(source.token());
    clock.advance(50ms);
    source.cancel();
    clock.settle();
    ASSERT_TRUE(task.isDone());
    EXPECT_TRUE(wasCancelled(task));
    EXPECT_THAT(tree.log.timedCalls(), ElementsAre("0 AXPress Develop", "50 AXCancel Develop"));
}

TEST_F(SafariAXInspectorTest, EndsAndClosesTheMenuWhenItIsCancelledAfterTheSecondPress) {
    CancellationSource source;
    const auto task = snapshot(source.token());
    clock.advance(150ms);
    source.cancel();
    clock.settle();
    ASSERT_TRUE(task.isDone());
    EXPECT_TRUE(wasCancelled(task));
    EXPECT_THAT(tree.log.timedCalls(),
                ElementsAre("0 AXPress Develop", "120 AXPress iPhone 16", "150 AXCancel Develop"));
}

TEST_F(SafariAXInspectorTest, PressesNothingWhenItIsCancelledBeforeItsTurn) {
    CancellationSource source;
    const auto first = snapshot();
    const auto second = snapshot(source.token());
    source.cancel();
    clock.advance(240ms);
    ASSERT_TRUE(second.isDone());
    EXPECT_TRUE(wasCancelled(second));
    EXPECT_EQ(tree.log.count("AXPress"), 2);
}

} // namespace

} // namespace corvanta
