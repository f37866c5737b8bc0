// SPDX-License-Identifier: MIT
#include "AtspiAccessibilityClient.h"

#include "FixtureProcess.h"

#include <gtest/gtest.h>

#include <cmath>

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

    void expectPlaceable(const AccessibilityElement& window, Point position, Size size) {
        EXPECT_TRUE(client.setAttribute(window, u"AXPosition", position));
        EXPECT_TRUE(client.setAttribute(window, u"AXSize", size));
        const auto readPosition = client.attribute(window, u"AXPosition");
        const auto readSize = client.attribute(window, u"AXSize");
        ASSERT_TRUE(readPosition && readSize);
        EXPECT_NEAR(std::get<Point>(*readPosition).x, position.x, 2);
        EXPECT_NEAR(std::get<Point>(*readPosition).y, position.y, 2);
        EXPECT_NEAR(std::get<Size>(*readSize).width, size.width, 2);
        EXPECT_NEAR(std::get<Size>(*readSize).height, size.height, 2);
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
    ASSERT_TRUE(fixture.command(u"maximize"_s));
    ASSERT_TRUE(waitUntil([&] { return std::get<Size>(*client.attribute(*window, u"AXSize")).width > 1500; }));
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
