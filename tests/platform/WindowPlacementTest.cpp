// SPDX-License-Identifier: MIT
#include "AtspiAccessibilityClient.h"

#include "FixtureProcess.h"
#include "WindowManagerProcess.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;

const QString fixtureName = u"dev.corvanta.PlacementFixture"_s;

class WindowPlacement : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(waitUntil([this] { return client.requestTrust(); }));
    }

    std::optional<AccessibilityElement> windowTitled(const QString& title) {
        std::optional<AccessibilityElement> found;
        (void)waitUntil([&] {
            for (const AccessibilityElement& window : windowsOf(client, fixtureName)) {
                if (titleOf(client, window) == title && client.attribute(window, u"AXSize"))
                    found = window;
            }
            return found.has_value();
        });
        return found;
    }

    [[nodiscard]] PixelRect frameOf(const AccessibilityElement& window) {
        const auto position = client.attribute(window, u"AXPosition");
        const auto size = client.attribute(window, u"AXSize");
        if (!position || !size)
            return {};
        return {static_cast<int>(std::get<Point>(*position).x), static_cast<int>(std::get<Point>(*position).y),
                static_cast<int>(std::get<Size>(*size).width), static_cast<int>(std::get<Size>(*size).height)};
    }

    /// Waits until the window is within two pixels of that frame.
    [[nodiscard]] bool comesTo(const AccessibilityElement& window, const PixelRect& wanted) {
        const auto near = [](int left, int right) { return std::abs(left - right) <= 2; };
        return waitUntil([&] {
            const PixelRect frame = frameOf(window);
            return near(frame.x, wanted.x) && near(frame.y, wanted.y) && near(frame.width, wanted.width) &&
                   near(frame.height, wanted.height);
        });
    }

    bool place(const AccessibilityElement& window, const PixelRect& frame) {
        const Point position{static_cast<double>(frame.x), static_cast<double>(frame.y)};
        const Size size{static_cast<double>(frame.width), static_cast<double>(frame.height)};
        const bool moved = client.setAttribute(window, u"AXPosition", position);
        return client.setAttribute(window, u"AXSize", size) && moved;
    }

    void expectPlaceable(const AccessibilityElement& window, Point position, Size size) {
        EXPECT_TRUE(client.setAttribute(window, u"AXPosition", position));
        EXPECT_TRUE(client.setAttribute(window, u"AXSize", size));
        EXPECT_TRUE(comesTo(window, {static_cast<int>(position.x), static_cast<int>(position.y),
                                     static_cast<int>(size.width), static_cast<int>(size.height)}));
    }

    X11Windows windows;
    AtspiAccessibilityClient client{windows, [] { return Point(); }};
    FixtureProcess fixture{fixtureName};
};

TEST_F(WindowPlacement, PlacesAWindowWithTheWindowManagersDecorations) {
    const auto window = windowTitled(u"Fixture Window"_s);
    ASSERT_TRUE(window);
    expectPlaceable(*window, {200, 100}, {640, 480});
    expectPlaceable(*window, {0, 0}, {500, 900});
}

TEST_F(WindowPlacement, PlacesAWindowThatDrawsItsOwnFrame) {
    ASSERT_TRUE(fixture.command(u"headerbar Own Frame"_s));
    const auto window = windowTitled(u"Own Frame"_s);
    ASSERT_TRUE(window);
    expectPlaceable(*window, {300, 150}, {700, 500});
}

TEST_F(WindowPlacement, TellsWindowsOfTheSameTitleApart) {
    ASSERT_TRUE(fixture.command(u"window Twin"_s));
    ASSERT_TRUE(fixture.command(u"window Twin"_s));
    std::vector<AccessibilityElement> twins;
    ASSERT_TRUE(waitUntil([&] {
        twins = windowsOf(client, fixtureName);
        std::erase_if(twins, [&](const auto& window) { return titleOf(client, window) != u"Twin"; });
        return twins.size() == 2;
    }));
    expectPlaceable(twins[0], {10, 30}, {450, 350});
    expectPlaceable(twins[1], {600, 400}, {470, 370});
    EXPECT_EQ(std::get<Point>(*client.attribute(twins[0], u"AXPosition")).x, 10);
}

TEST_F(WindowPlacement, UndoesMaximisationAndIconification) {
    const auto window = windowTitled(u"Fixture Window"_s);
    ASSERT_TRUE(window);
    ASSERT_TRUE(waitUntil([&] {
        return fixture.command(u"maximize"_s) && std::get<Size>(*client.attribute(*window, u"AXSize")).width > 1500;
    }));
    expectPlaceable(*window, {120, 80}, {640, 480});
    ASSERT_TRUE(fixture.command(u"iconify"_s));
    ASSERT_TRUE(waitUntil([&] {
        const auto all = windows.windows();
        return std::ranges::any_of(all, [&](auto each) { return windows.isIconified(each); });
    }));
    expectPlaceable(*window, {220, 180}, {600, 400});
    const auto all = windows.windows();
    EXPECT_FALSE(std::ranges::any_of(all, [&](auto each) { return windows.isIconified(each); }));
}

TEST_F(WindowPlacement, UndoesTheMaximisationOfAWindowThatDrawsItsOwnFrame) {
    ASSERT_TRUE(fixture.command(u"headerbar Own Frame"_s));
    const auto window = windowTitled(u"Own Frame"_s);
    ASSERT_TRUE(window);
    // Again and again, as one that comes before the window manager knows the window is lost.
    ASSERT_TRUE(waitUntil([&] { return fixture.command(u"maximize latest"_s) && frameOf(*window).width > 1500; }));
    EXPECT_TRUE(place(*window, {120, 80, 640, 480}));
    // Its shadow comes back in its own time.
    EXPECT_TRUE(comesTo(*window, {120, 80, 640, 480})) << frameOf(*window).x << ' ' << frameOf(*window).y << ' '
                                                       << frameOf(*window).width << ' ' << frameOf(*window).height;
}

TEST_F(WindowPlacement, SaysThatAWindowRefusesASizeBelowItsOwnMinimum) {
    const auto window = windowTitled(u"Fixture Window"_s);
    ASSERT_TRUE(window);
    ASSERT_TRUE(fixture.command(u"minimum 500"_s));
    ASSERT_TRUE(waitUntil([&] { return frameOf(*window).height >= 500; }));
    EXPECT_TRUE(client.setAttribute(*window, u"AXPosition", Point{150, 90}));
    EXPECT_FALSE(client.setAttribute(*window, u"AXSize", Size{300, 300}));
    EXPECT_GE(frameOf(*window).width, 500);
    EXPECT_GE(frameOf(*window).height, 500);
    EXPECT_TRUE(client.setAttribute(*window, u"AXSize", Size{700, 650}));
    EXPECT_TRUE(comesTo(*window, {150, 90, 700, 650}));
}

TEST_F(WindowPlacement, CountsOnAWindowManagerThatDoesNotAnswerYet) {
    const auto window = windowTitled(u"Fixture Window"_s);
    ASSERT_TRUE(window);
    ASSERT_TRUE(place(*window, {100, 100, 500, 400}));
    {
        const StoppedWindowManager stopped;
        EXPECT_TRUE(place(*window, {700, 500, 300, 310}));
        EXPECT_TRUE(place(*window, {200, 150, 640, 480}));
    }
    EXPECT_TRUE(comesTo(*window, {200, 150, 640, 480}));
    // It has much to catch up with, and says no to who asks while it does.
    EXPECT_TRUE(waitUntil([&] { return place(*window, {220, 170, 600, 450}); }));
    // What was wanted before does not come back.
    pauseAsTheDriver();
    pauseAsTheDriver();
    pauseAsTheDriver();
    EXPECT_TRUE(comesTo(*window, {220, 170, 600, 450}));
}

TEST_F(WindowPlacement, CannotPlaceAWindowThatIsGone) {
    ASSERT_TRUE(windowTitled(u"Fixture Window"_s));
    const std::vector<X11Windows::Window> all = windows.windows();
    ASSERT_EQ(all.size(), 1U);
    fixture.kill();
    ASSERT_TRUE(waitUntil([&] { return windows.windows().empty(); }));
    PixelPlacement placement;
    placement.position = {10, 10};
    EXPECT_FALSE(windows.place(all.front(), placement));
}

TEST_F(WindowPlacement, ClosesAWindowByItsCloseButton) {
    const auto window = windowTitled(u"Fixture Window"_s);
    ASSERT_TRUE(window);
    const auto button = client.attribute(*window, u"AXCloseButton");
    ASSERT_TRUE(button && std::holds_alternative<AccessibilityElement>(*button));
    EXPECT_TRUE(client.performAction(std::get<AccessibilityElement>(*button), u"AXPress"));
    EXPECT_TRUE(waitUntil([&] { return fixture.reports().contains(u"closed Fixture Window"_s); }));
    EXPECT_TRUE(waitUntil([&] { return windowsOf(client, fixtureName).empty(); }));
    EXPECT_FALSE(client.attribute(*window, u"AXPosition"));
}

} // namespace
} // namespace corvanta
