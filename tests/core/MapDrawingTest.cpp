// SPDX-License-Identifier: MIT
// The small pieces of arithmetic that the map is drawn with.
#include "map/MapLabels.h"
#include "map/MapScale.h"
#include "map/MapShapes.h"
#include "map/MapTiles.h"
#include "map/WheelClaim.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr MapViewport viewport{430, 250};

MapCamera camera(double latitude, double longitude, double zoom, double bearing = 0, double pitch = 0) {
    return {Mercator::project({latitude, longitude}), zoom, bearing, pitch};
}

TEST(MapScale, IsTheLongestRoundDistanceThatFits) {
    for (int zoom = 0; zoom <= 20; ++zoom) {
        for (const auto units : {MapScale::Units::metric, MapScale::Units::imperial}) {
            const MapScale scale = MapScale::forCamera(camera(41.4, 2.2, zoom), 90, units);
            EXPECT_LE(scale.length, 90.0001);
            EXPECT_GT(scale.length, 90 / 2.6);
            EXPECT_FALSE(scale.text.isEmpty());
        }
    }
}

TEST(MapScale, NamesItsDistance) {
    // At the equator a pixel of zoom 0 is 156543 metres wide.
    EXPECT_EQ(MapScale::forCamera(camera(0, 0, 0), 90, MapScale::Units::metric).text, u"10000 km");
    EXPECT_EQ(MapScale::forCamera(camera(0, 0, 10), 90, MapScale::Units::metric).text, u"10 km");
    EXPECT_EQ(MapScale::forCamera(camera(0, 0, 16), 90, MapScale::Units::metric).text, u"200 m");
    EXPECT_EQ(MapScale::forCamera(camera(0, 0, 16), 90, MapScale::Units::imperial).text, u"500 ft");
    EXPECT_EQ(MapScale::forCamera(camera(0, 0, 10), 90, MapScale::Units::imperial).text, u"5 mi");
}

TEST(MapScale, ShowsLessGroundTowardsThePoles) {
    EXPECT_NEAR(metresPerPixel(camera(60, 0, 5)) / metresPerPixel(camera(0, 0, 5)), 0.5, 1e-6);
}

TEST(MapTiles, CoverAllThatIsSeenAndNothingElse) {
    const MapProjection projection(camera(41.4, 2.2, 11, 33, 45), viewport);
    const auto shown = MapTiles::visible(projection, 11, 100);
    std::set<MapTile> tiles;
    for (const ShownMapTile& one : shown)
        EXPECT_TRUE(tiles.insert(one.tile).second);
    for (double x = 0; x <= 430; x += 10) {
        for (double y = 0; y <= 250; y += 10) {
            const WorldPoint place = projection.placeAt({x, y});
            const MapTile tile{11, static_cast<int>(place.x * 2048), static_cast<int>(place.y * 2048)};
            EXPECT_TRUE(tiles.contains(tile)) << x << ", " << y;
        }
    }
    EXPECT_LT(shown.size(), 40U);
}

TEST(MapTiles, GoOnBeyondTheDateLine) {
    const MapProjection projection(camera(0, 179.99, 3), viewport);
    std::set<int> columns;
    for (const ShownMapTile& one : MapTiles::visible(projection, 3, 100)) {
        columns.insert(one.tile.column);
        const double x = projection.shown(projection.groundUnwrapped(MapTiles::corner(one))).x();
        EXPECT_GT(x, -256);
        EXPECT_LT(x, 430);
    }
    EXPECT_THAT(columns, ::testing::IsSupersetOf({0, 7}));
}

TEST(MapTiles, AreLimitedToTheNearestOnes) {
    const MapProjection projection(camera(41.4, 2.2, 11, 0, 60), viewport);
    const auto all = MapTiles::visible(projection, 13, 10000);
    const auto few = MapTiles::visible(projection, 13, 5);
    ASSERT_EQ(few.size(), 5U);
    EXPECT_TRUE(std::equal(few.begin(), few.end(), all.begin()));
}

TEST(MapTiles, LieWithinTheirAncestors) {
    EXPECT_EQ(MapTiles::ancestor({12, 2072, 1530}, 2), (MapTile{10, 518, 382}));
    EXPECT_EQ(MapTiles::zoomFor(camera(0, 0, 11.44), 1, 19), 11);
    EXPECT_EQ(MapTiles::zoomFor(camera(0, 0, 11.44), 2, 19), 12);
    EXPECT_EQ(MapTiles::zoomFor(camera(0, 0, 20), 2, 19), 19);
}

TEST(MapShapes, CutARingAtARectangle) {
    const MapVertices ring{{{-10, -10}, false}, {{10, -10}, false}, {{10, 10}, false}, {{-10, 10}, false}};
    const MapVertices cut = MapShapes::clippedRing(ring, QRectF(0, 0, 100, 100));
    double left = 1e9;
    double right = -1e9;
    for (const MapVertex& vertex : cut) {
        left = std::min(left, vertex.at.x());
        right = std::max(right, vertex.at.x());
    }
    EXPECT_EQ(left, 0);
    EXPECT_EQ(right, 10);
    EXPECT_TRUE(MapShapes::clippedRing(ring, QRectF(50, 50, 10, 10)).empty());
    EXPECT_EQ(MapShapes::clippedRing(ring, QRectF(-50, -50, 100, 100)), ring);
    EXPECT_TRUE(MapShapes::clippedRing({}, QRectF(0, 0, 1, 1)).empty());
}

TEST(MapShapes, CutALineIntoItsParts) {
    const MapVertices line{{{-10, 5}, false}, {{20, 5}, false}, {{20, 50}, false}, {{5, 50}, false}, {{5, -10}, false}};
    const auto parts = MapShapes::clippedLine(line, QRectF(0, 0, 10, 10));
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[0].front().at, QPointF(0, 5));
    EXPECT_EQ(parts[0].back().at, QPointF(10, 5));
    EXPECT_EQ(parts[1].front().at, QPointF(5, 10));
    EXPECT_EQ(parts[1].back().at, QPointF(5, 0));
    EXPECT_TRUE(MapShapes::clippedLine({}, QRectF(0, 0, 1, 1)).empty());
}

TEST(MapShapes, RoundOffCornersThatAreNotFixed) {
    const MapVertices ring{{{0, 0}, true}, {{10, 0}, false}, {{10, 10}, true}};
    const MapVertices round = MapShapes::smoothedRing(ring, 1);
    ASSERT_EQ(round.size(), 4U);
    EXPECT_EQ(round[0].at, QPointF(0, 0));
    EXPECT_EQ(round[1].at, QPointF(7.5, 0));
    EXPECT_EQ(round[2].at, QPointF(10, 2.5));
    EXPECT_EQ(round[3].at, QPointF(10, 10));
    const MapVertices line = MapShapes::smoothedLine({{{0, 0}, false}, {{5, 5}, false}, {{10, 0}, false}}, 2);
    EXPECT_EQ(line.front().at, QPointF(0, 0));
    EXPECT_EQ(line.back().at, QPointF(10, 0));
}

TEST(LabelLayout, LeavesOutWhatWouldOverlap) {
    LabelLayout layout(QRectF(0, 0, 100, 100));
    EXPECT_TRUE(layout.place({10, 10, 30, 10}));
    EXPECT_FALSE(layout.place({20, 15, 30, 10}));
    EXPECT_TRUE(layout.place({50, 10, 30, 10}));
    EXPECT_FALSE(layout.place({90, 90, 30, 10}));
    layout.reserve({0, 50, 100, 50});
    EXPECT_FALSE(layout.place({10, 60, 10, 10}));
}

TEST(WheelClaim, LetsWhoeverScrollsTheWindowGoOn) {
    WheelClaim wheel;
    wheel.pointerMoved({10, 10});
    EXPECT_FALSE(wheel.takes(0ms, false, false));
    EXPECT_FALSE(wheel.takes(100ms, false, false));
    // Also when the hand shakes on the way.
    wheel.pointerMoved({80, 80});
    EXPECT_FALSE(wheel.takes(200ms, false, false));
    EXPECT_TRUE(wheel.takes(1000ms, false, false));
}

TEST(WheelClaim, ZoomsForWhoeverHasMovedThePointerOnTheMap) {
    WheelClaim wheel;
    wheel.pointerMoved({10, 10});
    wheel.pointerMoved({10, 20});
    EXPECT_TRUE(wheel.takes(0ms, false, false));
    wheel.pointerLeft();
    EXPECT_FALSE(wheel.takes(2000ms, false, false));
}

TEST(WheelClaim, ZoomsWithControlOrTheKeyboardOrAfterAPress) {
    EXPECT_TRUE(WheelClaim().takes(0ms, true, false));
    EXPECT_TRUE(WheelClaim().takes(0ms, false, true));
    WheelClaim pressed;
    pressed.pressed();
    EXPECT_TRUE(pressed.takes(0ms, false, false));
}

} // namespace

} // namespace corvanta
