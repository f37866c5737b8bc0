// SPDX-License-Identifier: MIT
#include "safari/SafariAXInspector.h"

#include "FakeAccessibilityTree.h"
#include "FakeDesktop.h"
#include "FakeError.h"
#include "Printing.h"
#include "TaskWaiting.h"
#include "safari/WorkspaceAutomationError.h"
#include "support/CancelledError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

void PrintTo(const SafariTarget& target, std::ostream* stream) {
    *stream << target.id.toStdString();
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const QString safariIdentifier = u"com.apple.Safari"_s;

/// A Safari with a menu bar, a Develop menu, and one device in it.
class SafariAXInspectorTest : public ::testing::Test {
protected:
    using Element = testing::FakeAccessibilityTree::Element;

    SafariAXInspectorTest() {
        tree.setApplication(safariIdentifier, safari);
        safari.set(u"AXMenuBar"_s, &menuBar).set(u"AXWindows"_s, Element::Elements{});
        menuBar.append(tree.add(u"Safari"_s)).append(tree.add(u"File"_s)).append(develop);
        develop.append(developMenu);
        device.append(deviceMenu);
        developMenu.append(tree.add(u"User Agent"_s)).append(device);
    }

    ~SafariAXInspectorTest() override {
        while (clock.step()) {
        }
    }

    Element& addPage(const QString& title) {
        auto& page = tree.add(title);
        deviceMenu.append(page);
        return page;
    }

    Element& addInspectorWindow(const QString& name) {
        auto& window = tree.add(name).description(u"Web Inspector"_s).title(u"Web Inspector — "_s + name);
        safari.append(window, u"AXWindows"_s);
        return window;
    }

    /// A page whose press opens an inspector window after a while.
    Element& addPageThatOpens(const QString& title, const QString& windowName, Clock::Duration after) {
        auto& page = addPage(title);
        page.whenPerformed(u"AXPress"_s, [this, windowName, after] {
            tree.after(after, [this, windowName] { addInspectorWindow(windowName); });
        });
        return page;
    }

    [[nodiscard]] static SafariTarget target(const QString& title, int index) {
        return {u"0.%1|%2"_s.arg(index).arg(title), title, {0, index}};
    }

    [[nodiscard]] testing::WatchedTask<std::vector<SafariTarget>> snapshot(CancellationToken token = {}) {
        return testing::WatchedTask(inspector.snapshotTargets(u"iPhone 16"_s, token));
    }

    [[nodiscard]] testing::WatchedTask<void> attach(const SafariTarget& target, CancellationToken token = {}) {
        return testing::WatchedTask(inspector.attach(target, u"iPhone 16"_s, token));
    }

    template<typename Value>
    static std::optional<WorkspaceAutomationError> errorOf(const testing::WatchedTask<Value>& task) {
        try {
            (void)task.result();
        } catch (const WorkspaceAutomationError& error) {
            return error;
        }
        return std::nullopt;
    }

    template<typename Value>
    static bool wasCancelled(const testing::WatchedTask<Value>& task) {
        try {
            (void)task.result();
        } catch (const CancelledError&) {
            return true;
        }
        return false;
    }

    testing::VirtualClock clock;
    testing::CallLog desktopLog{clock};
    testing::FakeAccessibilityTree tree{clock};
    testing::FakeDesktop desktop{clock, desktopLog};
    Element& safari = tree.add(u"Safari application"_s);
    Element& menuBar = tree.addUntitled(u"menu bar"_s);
    Element& develop = tree.add(u"Develop"_s);
    Element& developMenu = tree.addUntitled(u"Develop submenu"_s);
    Element& device = tree.add(u"iPhone 16"_s);
    Element& deviceMenu = tree.addUntitled(u"device submenu"_s);
    SafariAXInspector inspector{tree, desktop, clock};
};

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
