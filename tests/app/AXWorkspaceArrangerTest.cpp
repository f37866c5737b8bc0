// SPDX-License-Identifier: MIT
#include "layout/AXWorkspaceArranger.h"

#include "FakeAccessibilityTree.h"
#include "FakeControlWindow.h"
#include "FakeDesktop.h"
#include "layout/WorkspaceLayout.h"
#include "safari/WorkspaceAutomationError.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

void PrintTo(const Rect& rect, std::ostream* stream) {
    *stream << '(' << rect.x << ", " << rect.y << ", " << rect.width << ", " << rect.height << ')';
}

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr ColumnRatios ratios{.controls = 0.25, .simulator = 0.30, .inspector = 0.45};
/// The columns of the visible frame (0, 25, 1440, 875), eight points apart.
constexpr Rect controlsColumn{0, 25, 356, 875};
constexpr Rect simulatorColumn{364, 25, 427, 875};
constexpr Rect inspectorColumn{799, 25, 641, 875};

class AXWorkspaceArrangerTest : public ::testing::Test {
protected:
    using Element = testing::FakeAccessibilityTree::Element;

    AXWorkspaceArrangerTest() {
        tree.setApplication(u"com.apple.iphonesimulator"_s, simulator);
        desktop.allScreens = {primary};
        desktop.focusedScreen = primary;
        controlWindow->shownOn = primary;
        inspector.place({700, 100, 600, 500});
    }

    Element& addSimulatorWindow(const QString& title, const Rect& placement = {300, 50, 400, 800}) {
        auto& window = tree.add(title).place(placement);
        simulator.append(window, u"AXWindows"_s);
        return window;
    }

    void tile(const QString& deviceName = u"iPhone 16"_s) {
        arranger.tile(controlWindow, deviceName, inspector.handle(), ratios);
    }

    /// The element's frame in desktop coordinates.
    [[nodiscard]] Rect frameOf(const Element& element) const {
        const Rect placement = element.placement();
        const double height = desktop.allScreens.empty() ? 0 : desktop.allScreens.front().frame.maxY();
        return {placement.x, height - placement.maxY(), placement.width, placement.height};
    }

    template<typename Operation>
    static std::optional<WorkspaceAutomationError> errorOf(Operation operation) {
        try {
            operation();
        } catch (const WorkspaceAutomationError& error) {
            return error;
        }
        return std::nullopt;
    }

    const Screen primary{{0, 0, 1440, 925}, {0, 25, 1440, 875}};
    testing::VirtualClock clock;
    testing::CallLog log{clock};
    testing::FakeAccessibilityTree tree{clock};
    testing::FakeDesktop desktop{clock, log};
    Element& simulator = tree.add(u"Simulator"_s);
    Element& inspector = tree.add(u"Web Inspector"_s);
    std::shared_ptr<testing::FakeControlWindow> controlWindow = std::make_shared<testing::FakeControlWindow>();
    AXWorkspaceArranger arranger{tree, desktop};
};

TEST_F(AXWorkspaceArrangerTest, PutsTheThreeWindowsIntoTheirColumnsEightPointsApart) {
    auto& window = addSimulatorWindow(u"iPhone 16 – iOS 18.2"_s);
    tile();
    EXPECT_THAT(controlWindow->frames(), ElementsAre(controlsColumn));
    EXPECT_EQ(frameOf(window), simulatorColumn);
    EXPECT_EQ(frameOf(inspector), inspectorColumn);
}

TEST_F(AXWorkspaceArrangerTest, MovesTheControlWindowFirstThenTheSimulatorThenTheInspector) {
    addSimulatorWindow(u"iPhone 16"_s);
    controlWindow->log = &tree.log;
    tile();
    EXPECT_THAT(tree.log.calls(),
                ElementsAre("setFrame 0,25 356,875", "AXPosition 364,25 iPhone 16", "AXSize 427,875 iPhone 16",
                            "AXPosition 799,25 Web Inspector", "AXSize 641,875 Web Inspector"));
}

TEST_F(AXWorkspaceArrangerTest, PutsTheControlWindowBackFirst) {
    addSimulatorWindow(u"iPhone 16"_s);
    tile();
    controlWindow->log = &tree.log;
    tree.log.clear();
    arranger.restore();
    EXPECT_THAT(tree.log.calls(),
                ElementsAre("setFrame 10,20 430,860", "AXPosition 300,50 iPhone 16", "AXSize 400,800 iPhone 16",
                            "AXPosition 700,100 Web Inspector", "AXSize 600,500 Web Inspector"));
}

TEST_F(AXWorkspaceArrangerTest, RefusesWithoutThePermissionBeforeAnythingElse) {
    tree.trusted = false;
    EXPECT_EQ(errorOf([&] { arranger.tile(controlWindow, u"iPhone 16"_s, std::nullopt, ratios); }),
              WorkspaceAutomationError::accessibilityPermissionMissing());
    EXPECT_EQ(simulator.reads(u"AXWindows"_s), 0);
}

TEST_F(AXWorkspaceArrangerTest, NamesTheDeviceWhenTheSimulatorDoesNotRun) {
    tree.quitApplication(u"com.apple.iphonesimulator"_s);
    EXPECT_EQ(errorOf([&] { tile(); }), WorkspaceAutomationError::simulatorWindowUnavailable(u"iPhone 16"_s));
}

TEST_F(AXWorkspaceArrangerTest, NamesTheDeviceWhenTheSimulatorHasNoWindow) {
    EXPECT_EQ(errorOf([&] { tile(); }), WorkspaceAutomationError::simulatorWindowUnavailable(u"iPhone 16"_s));
}

TEST_F(AXWorkspaceArrangerTest, MissesTheSimulatorWindowBeforeTheInspector) {
    EXPECT_EQ(errorOf([&] { arranger.tile(controlWindow, u"iPhone 16"_s, std::nullopt, ratios); }),
              WorkspaceAutomationError::simulatorWindowUnavailable(u"iPhone 16"_s));
}

TEST_F(AXWorkspaceArrangerTest, RefusesWithoutAnInspectorWindow) {
    addSimulatorWindow(u"iPhone 16"_s);
    EXPECT_EQ(errorOf([&] { arranger.tile(controlWindow, u"iPhone 16"_s, std::nullopt, ratios); }),
              WorkspaceAutomationError::inspectorWindowUnavailable());
}

TEST_F(AXWorkspaceArrangerTest, HasSavedAndMovedNothingWhenItRefuses) {
    addSimulatorWindow(u"iPhone 16"_s);
    EXPECT_TRUE(errorOf([&] { arranger.tile(controlWindow, u"iPhone 16"_s, std::nullopt, ratios); }));
    arranger.restore();
    EXPECT_THAT(tree.log.calls(), IsEmpty());
    EXPECT_THAT(controlWindow->frames(), IsEmpty());
}

TEST_F(AXWorkspaceArrangerTest, ChoosesTheSecondSimulatorWindowWhenThatOneNamesTheDevice) {
    auto& other = addSimulatorWindow(u"iPad Air – iPadOS 18.2"_s, {0, 0, 500, 700});
    auto& selected = addSimulatorWindow(u"IPHONE 16 – iOS 18.2"_s);
    tile();
    EXPECT_EQ(frameOf(selected), simulatorColumn);
    EXPECT_EQ(other.placement(), (Rect{0, 0, 500, 700}));
}

TEST_F(AXWorkspaceArrangerTest, RecognisesTheDeviceInTheDescriptionOfAWindowWithoutATitle) {
    addSimulatorWindow(u"iPad Air"_s);
    auto& selected = addSimulatorWindow(u""_s).description(u"iPhone 16"_s);
    tile();
    EXPECT_EQ(frameOf(selected), simulatorColumn);
}

TEST_F(AXWorkspaceArrangerTest, ChoosesTheFirstOfTwoWindowsThatNameTheDevice) {
    auto& first = addSimulatorWindow(u"iPhone 16 Pro"_s);
    auto& second = addSimulatorWindow(u"iPhone 16"_s, {0, 0, 500, 700});
    tile();
    EXPECT_EQ(frameOf(first), simulatorColumn);
    EXPECT_EQ(second.placement(), (Rect{0, 0, 500, 700}));
}

TEST_F(AXWorkspaceArrangerTest, FallsBackToTheFirstSimulatorWindow) {
    auto& only = addSimulatorWindow(u"Simulator"_s);
    tile();
    EXPECT_EQ(frameOf(only), simulatorColumn);
}

TEST_F(AXWorkspaceArrangerTest, UsesTheScreenThatShowsTheControlWindow) {
    const Screen second{{1440, 0, 1600, 1000}, {1440, 0, 1600, 960}};
    desktop.allScreens = {primary, second};
    controlWindow->shownOn = second;
    addSimulatorWindow(u"iPhone 16"_s);
    tile();
    EXPECT_THAT(controlWindow->frames(), ElementsAre(WorkspaceLayout::frames(second.visibleFrame, ratios, 8).controls));
}

TEST_F(AXWorkspaceArrangerTest, UsesTheMainScreenWhenTheControlWindowIsOnNone) {
    const Screen second{{1440, 0, 1600, 1000}, {1440, 0, 1600, 960}};
    desktop.allScreens = {primary, second};
    desktop.focusedScreen = second;
    controlWindow->shownOn.reset();
    addSimulatorWindow(u"iPhone 16"_s);
    tile();
    EXPECT_THAT(controlWindow->frames(), ElementsAre(WorkspaceLayout::frames(second.visibleFrame, ratios, 8).controls));
}

TEST_F(AXWorkspaceArrangerTest, UsesTheFirstScreenWhenThereIsNoMainScreen) {
    desktop.focusedScreen.reset();
    controlWindow->shownOn.reset();
    addSimulatorWindow(u"iPhone 16"_s);
    tile();
    EXPECT_THAT(controlWindow->frames(), ElementsAre(controlsColumn));
}

TEST_F(AXWorkspaceArrangerTest, FlipsAtThePrimaryScreenAlsoForWindowsOnAnother) {
    const Screen second{{1440, 0, 1600, 1000}, {1440, 0, 1600, 960}};
    desktop.allScreens = {primary, second};
    controlWindow->shownOn = second;
    auto& window = addSimulatorWindow(u"iPhone 16"_s);
    tile();
    EXPECT_EQ(window.placement().y, 925 - 960);
}

TEST_F(AXWorkspaceArrangerTest, LeavesAWindowThatRefusesWhereItIsAndMovesTheOther) {
    auto& window = addSimulatorWindow(u"iPhone 16"_s);
    window.refuse(u"AXPosition"_s).refuse(u"AXSize"_s);
    tile();
    EXPECT_EQ(window.placement(), (Rect{300, 50, 400, 800}));
    EXPECT_EQ(frameOf(inspector), inspectorColumn);
}

TEST_F(AXWorkspaceArrangerTest, PutsEveryWindowBack) {
    auto& window = addSimulatorWindow(u"iPhone 16"_s);
    tile();
    tree.log.clear();
    arranger.restore();
    EXPECT_THAT(controlWindow->frames(), ElementsAre(controlsColumn, Rect{10, 20, 430, 860}));
    EXPECT_EQ(window.placement(), (Rect{300, 50, 400, 800}));
    EXPECT_EQ(inspector.placement(), (Rect{700, 100, 600, 500}));
    EXPECT_THAT(tree.log.calls(), ElementsAre("AXPosition 300,50 iPhone 16", "AXSize 400,800 iPhone 16",
                                              "AXPosition 700,100 Web Inspector", "AXSize 600,500 Web Inspector"));
}

TEST_F(AXWorkspaceArrangerTest, ReturnsToTheFramesFromBeforeTheVeryFirstTiling) {
    auto& window = addSimulatorWindow(u"iPhone 16"_s);
    tile();
    controlWindow->setFrame({1, 2, 3, 4});
    window.place({5, 6, 7, 8});
    tile();
    arranger.restore();
    EXPECT_EQ(controlWindow->frame(), (Rect{10, 20, 430, 860}));
    EXPECT_EQ(window.placement(), (Rect{300, 50, 400, 800}));
    EXPECT_EQ(inspector.placement(), (Rect{700, 100, 600, 500}));
}

TEST_F(AXWorkspaceArrangerTest, SavesAnInspectorThatComesLaterAsWell) {
    addSimulatorWindow(u"iPhone 16"_s);
    tile();
    auto& later = tree.add(u"Second Inspector"_s).place({60, 70, 80, 90});
    arranger.tile(controlWindow, u"iPhone 16"_s, later.handle(), ratios);
    tree.log.clear();
    arranger.restore();
    EXPECT_EQ(later.placement(), (Rect{60, 70, 80, 90}));
    EXPECT_EQ(inspector.placement(), (Rect{700, 100, 600, 500}));
    EXPECT_THAT(tree.log.calls(), ElementsAre("AXPosition 300,50 iPhone 16", "AXSize 400,800 iPhone 16",
                                              "AXPosition 700,100 Web Inspector", "AXSize 600,500 Web Inspector",
                                              "AXPosition 60,70 Second Inspector", "AXSize 80,90 Second Inspector"));
}

TEST_F(AXWorkspaceArrangerTest, StartsAfreshAfterRestoring) {
    auto& window = addSimulatorWindow(u"iPhone 16"_s);
    tile();
    arranger.restore();
    window.place({5, 6, 7, 8});
    controlWindow->setFrame({1, 2, 3, 4});
    tile();
    arranger.restore();
    EXPECT_EQ(window.placement(), (Rect{5, 6, 7, 8}));
    EXPECT_EQ(controlWindow->frame(), (Rect{1, 2, 3, 4}));
}

TEST_F(AXWorkspaceArrangerTest, RestoresNothingTheSecondTime) {
    addSimulatorWindow(u"iPhone 16"_s);
    tile();
    arranger.restore();
    tree.log.clear();
    arranger.restore();
    EXPECT_THAT(tree.log.calls(), IsEmpty());
    EXPECT_EQ(controlWindow->frames().size(), 2U);
}

TEST_F(AXWorkspaceArrangerTest, RestoresNothingBeforeTheFirstTiling) {
    arranger.restore();
    EXPECT_THAT(tree.log.calls(), IsEmpty());
    EXPECT_THAT(controlWindow->frames(), IsEmpty());
}

TEST_F(AXWorkspaceArrangerTest, MovesOnlyTheForeignWindowsBackOnceTheControlWindowIsClosed) {
    auto& window = addSimulatorWindow(u"iPhone 16"_s);
    tile();
    controlWindow.reset();
    arranger.restore();
    EXPECT_EQ(window.placement(), (Rect{300, 50, 400, 800}));
    EXPECT_EQ(inspector.placement(), (Rect{700, 100, 600, 500}));
}

TEST_F(AXWorkspaceArrangerTest, NeverKeepsTheControlWindowAlive) {
    addSimulatorWindow(u"iPhone 16"_s);
    tile();
    const std::weak_ptr<testing::FakeControlWindow> observer = controlWindow;
    controlWindow.reset();
    EXPECT_TRUE(observer.expired());
}

TEST_F(AXWorkspaceArrangerTest, SkipsAWindowThatHasGoneWhenItRestores) {
    auto& window = addSimulatorWindow(u"iPhone 16"_s);
    tile();
    tree.remove(window);
    arranger.restore();
    EXPECT_EQ(inspector.placement(), (Rect{700, 100, 600, 500}));
    EXPECT_EQ(controlWindow->frame(), (Rect{10, 20, 430, 860}));
}

TEST_F(AXWorkspaceArrangerTest, TilesAWindowWhoseFrameCannotBeReadAndLeavesItThereWhenItRestores) {
    auto& window = addSimulatorWindow(u"iPhone 16"_s);
    window.unset(u"AXSize"_s);
    tile();
    EXPECT_EQ(frameOf(window), simulatorColumn);
    arranger.restore();
    EXPECT_EQ(frameOf(window), simulatorColumn);
}

} // namespace

} // namespace corvanta
