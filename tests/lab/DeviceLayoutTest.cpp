// SPDX-License-Identifier: MIT
#include "DeviceLayout.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace corvanta::lab {

namespace {

struct Way {
    Orientation orientation;
    ViewportFit fit;
};

constexpr Way ways[] = {{Orientation::portrait, ViewportFit::automatic},
                        {Orientation::landscapeLeft, ViewportFit::automatic},
                        {Orientation::landscapeLeft, ViewportFit::cover}};

/// What the engine reports for a view of that size: quotients in sixty-fourths, rounded down, then cut to whole pixels.
int reported(int size, double zoom) {
    return static_cast<int>(std::floor(std::floor(float(size) / float(zoom) * 64) / 64));
}

/// The same for the width that layout and media queries see, where the engine adds a pixel before it scales down.
int reportedLayout(int size, double zoom) {
    return static_cast<int>((float(size) + (float(zoom) > 1 ? 1 : 0)) / float(zoom) + 0.01F);
}

std::vector<QSize> windowSizes() {
    std::vector<QSize> result;
    for (int width = 220; width <= 1700; width += 7) {
        for (const int height : {300, 411, 640, 777, 980, 1400, 2100}) {
            result.emplace_back(width, height);
        }
    }
    return result;
}

std::string describe(const DeviceType& type, QSize size) {
    return type.name.toStdString() + " in " + std::to_string(size.width()) + "x" + std::to_string(size.height());
}

TEST(DeviceLayout, GivesEveryModelExactlyItsViewportAtEverySize) {
    for (const QSize size : windowSizes()) {
        for (const DeviceType& type : deviceTypes()) {
            for (const auto& [orientation, fit] : ways) {
                const QSize viewport = ScreenFigures::of(type, orientation, fit).viewport;
                const DeviceLayout layout = DeviceLayout::fit(type, size, orientation, fit);
                EXPECT_EQ(reported(layout.page.width(), layout.zoom), viewport.width()) << describe(type, size);
                EXPECT_EQ(reportedLayout(layout.page.width(), layout.zoom), viewport.width()) << describe(type, size);
                EXPECT_EQ(reported(layout.page.height(), layout.zoom), viewport.height()) << describe(type, size);
            }
        }
    }
}

TEST(DeviceLayout, HasNoZoomAtFullSizeHoweverItIsHeld) {
    for (const DeviceType& type : deviceTypes()) {
        const int side = DeviceLayout::sideAtFullSize(type);
        for (const auto& [orientation, fit] : ways)
            EXPECT_EQ(DeviceLayout::fit(type, {side, side}, orientation, fit).zoom, 1) << type.name.toStdString();
    }
}

TEST(DeviceLayout, KeepsEverythingInsideTheWindow) {
    for (const QSize size : windowSizes()) {
        const QRectF area(QPointF(0, 0), QSizeF(size));
        for (const DeviceType& type : deviceTypes()) {
            for (const auto& [orientation, fit] : ways) {
                const DeviceLayout layout = DeviceLayout::fit(type, size, orientation, fit);
                const QRectF screen = layout.screen.adjusted(-1, -1, 1, 1);
                EXPECT_TRUE(area.contains(layout.body)) << describe(type, size);
                EXPECT_TRUE(layout.body.contains(layout.screen)) << describe(type, size);
                EXPECT_TRUE(screen.contains(QRectF(layout.page))) << describe(type, size);
                EXPECT_TRUE(screen.contains(QRectF(layout.bar))) << describe(type, size);
                EXPECT_TRUE(screen.contains(QRectF(layout.keyboard))) << describe(type, size);
                EXPECT_FALSE(layout.page.intersects(layout.bar)) << describe(type, size);
            }
        }
    }
}

TEST(Orientation, LeadsFromOneSideToTheOtherThroughUpright) {
    using enum Orientation;
    EXPECT_EQ(turnedLeft(portrait), landscapeLeft);
    EXPECT_EQ(turnedLeft(landscapeLeft), landscapeLeft);
    EXPECT_EQ(turnedLeft(landscapeRight), portrait);
    EXPECT_EQ(turnedRight(portrait), landscapeRight);
    EXPECT_EQ(turnedRight(landscapeRight), landscapeRight);
    EXPECT_EQ(turnedRight(landscapeLeft), portrait);
}

} // namespace

} // namespace corvanta::lab
