// SPDX-License-Identifier: MIT
#include "map/MapCamera.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <random>
#include <string>

namespace corvanta {

namespace {

constexpr MapViewport viewport{430, 250};
constexpr Coordinate barcelona{41.3874, 2.1686};

struct View {
    std::string name;
    double zoom;
    double bearing;
    double pitch;
};

void PrintTo(const View& view, std::ostream* out) {
    *out << view.name;
}

MapCamera camera(const Coordinate& center, double zoom, double bearing = 0, double pitch = 0) {
    return {Mercator::project(center), zoom, bearing, pitch};
}

class MapProjectionView : public ::testing::TestWithParam<View> {};

TEST_P(MapProjectionView, BringsEachPointBackFromItsPlace) {
    std::mt19937 random(1569);
    std::uniform_real_distribution<double> latitude(-80, 80);
    std::uniform_real_distribution<double> longitude(-180, 180);
    std::uniform_real_distribution<double> right(0, viewport.width);
    std::uniform_real_distribution<double> down(0, viewport.height);
    for (int round = 0; round < 200; ++round) {
        const View& view = GetParam();
        const MapProjection projection(
            camera({latitude(random), longitude(random)}, view.zoom, view.bearing, view.pitch), viewport);
        const QPointF point(right(random), down(random));
        const QPointF back = projection.shown(projection.groundUnwrapped(projection.placeAt(point)));
        ASSERT_NEAR(back.x(), point.x(), 1e-4);
        ASSERT_NEAR(back.y(), point.y(), 1e-4);
    }
}

TEST_P(MapProjectionView, BringsEachPlaceBackFromItsPoint) {
    std::mt19937 random(2008);
    std::uniform_real_distribution<double> latitude(-84, 84);
    std::uniform_real_distribution<double> longitude(-180, 180);
    std::uniform_real_distribution<double> away(-0.4, 0.4);
    for (int round = 0; round < 200; ++round) {
        const View& view = GetParam();
        const Coordinate center{latitude(random), longitude(random)};
        const MapProjection projection(camera(center, view.zoom, view.bearing, view.pitch), viewport);
        // Somewhere in sight, in as many degrees as the view has.
        const WorldPoint middle = Mercator::project(center);
        const double side = std::min(viewport.width / projection.scale(), 1.0);
        const Coordinate place =
            Mercator::unproject({middle.x + away(random) * side, middle.y + away(random) * side * 0.5});
        const QPointF ground = projection.ground(Mercator::project(place));
        if (!projection.isBeforeCamera(ground))
            continue;
        const Coordinate back = projection.coordinateAt(projection.pointFor(place));
        ASSERT_NEAR(back.latitude, place.latitude, 1e-6);
        ASSERT_NEAR(std::remainder(back.longitude - place.longitude, 360.0), 0, 1e-6);
    }
}

TEST_P(MapProjectionView, SeesNoHorizon) {
    const View& view = GetParam();
    const MapProjection projection(camera(barcelona, view.zoom, view.bearing, view.pitch), viewport);
    for (const QPointF& corner : projection.groundCorners())
        EXPECT_TRUE(projection.isBeforeCamera(corner));
}

INSTANTIATE_TEST_SUITE_P(Views, MapProjectionView,
                         ::testing::Values(View{"World", 1, 0, 0}, View{"WorldTurned", 1, 77, 0},
                                           View{"CountryTilted", 6, 0, 35}, View{"City", 11.4, 0, 0},
                                           View{"CityTurnedAndTilted", 11.4, -135, 60}, View{"Street", 17, 0, 0},
                                           View{"StreetTurned", 17, 12, 0}, View{"StreetTilted", 17, 0, 60},
                                           View{"StreetTurnedAndTilted", 17.3, 179, 45}, View{"Nearest", 20, -90, 60}),
                         [](const auto& info) { return info.param.name; });

TEST(MapProjection, PutsTheCentreInTheMiddle) {
    const MapProjection projection(camera(barcelona, 11, 30, 40), viewport);
    const QPointF point = projection.pointFor(barcelona);
    EXPECT_NEAR(point.x(), 215, 1e-6);
    EXPECT_NEAR(point.y(), 125, 1e-6);
}

TEST(MapProjection, HasTheBearingAtTheTop) {
    const MapProjection projection(camera(barcelona, 11, 90), viewport);
    const QPointF east = projection.pointFor({barcelona.latitude, barcelona.longitude + 0.02});
    EXPECT_NEAR(east.x(), 215, 1e-6);
    EXPECT_LT(east.y(), 125);
}

TEST(MapProjection, ShowsWhatIsFurtherAwaySmallerWhenTilted) {
    const MapProjection projection(camera(barcelona, 11, 0, 50), viewport);
    const double above = 125 - projection.shown({0, -100}).y();
    const double below = projection.shown({0, 100}).y() - 125;
    EXPECT_LT(above, below);
}

TEST(MapProjection, ShowsAPinBeyondTheDateLineNextToTheView) {
    const MapProjection projection(camera({0, -179.99}, 12), viewport);
    const QPointF pin = projection.pointFor({0, 179.99});
    const double pixelsPerDegree = projection.scale() / 360;
    EXPECT_NEAR(pin.x(), 215 - 0.02 * pixelsPerDegree, 1e-6);
    EXPECT_GT(pin.x(), 0);
    EXPECT_NEAR(pin.y(), 125, 1e-6);
}

TEST(MapProjection, TellsPlacesBeyondTheDateLineByTheirOwnLongitude) {
    const MapProjection projection(camera({0, 179.99}, 12), viewport);
    const double pixelsPerDegree = projection.scale() / 360;
    const Coordinate beyond = projection.coordinateAt({215 + 0.02 * pixelsPerDegree, 125});
    EXPECT_NEAR(beyond.longitude, -179.99, 1e-9);
}

TEST(MapProjection, ShowsThePolesAtTheEdgesOfTheWorld) {
    const MapProjection projection(camera({0, 0}, 0), {256, 256});
    for (const double pole : {90.0, -90.0}) {
        const QPointF point = projection.pointFor({pole, 0});
        EXPECT_NEAR(point.x(), 128, 1e-6);
        EXPECT_NEAR(point.y(), pole > 0 ? 0 : 256, 1e-6);
    }
    EXPECT_NEAR(projection.coordinateAt({128, -50}).latitude, Mercator::highestLatitude, 1e-9);
    EXPECT_NEAR(projection.coordinateAt({128, 306}).latitude, -Mercator::highestLatitude, 1e-9);
}

TEST(Mercator, TakesWhatIsNoPlaceOnEarth) {
    const WorldPoint far = Mercator::project({123.4, 725});
    EXPECT_NEAR(far.x, 0.5 + 5.0 / 360, 1e-12);
    EXPECT_NEAR(far.y, 0, 1e-9);
    const WorldPoint nowhere = Mercator::project({std::nan(""), std::nan("")});
    EXPECT_NEAR(nowhere.x, 0.5, 1e-12);
    EXPECT_NEAR(nowhere.y, 0.5, 1e-12);
}

TEST(Mercator, GoesTheShorterWayRoundTheEarth) {
    EXPECT_NEAR(Mercator::eastwards(0.99, 0.01), 0.02, 1e-12);
    EXPECT_NEAR(Mercator::eastwards(0.01, 0.99), -0.02, 1e-12);
    EXPECT_LT(Mercator::wrapped(-1e-18), 1);
}

TEST(MapCameras, ZoomAboutAPoint) {
    const MapCamera before = camera(barcelona, 11, 20, 30);
    const QPointF point(100, 40);
    const Coordinate place = MapProjection(before, viewport).coordinateAt(point);
    const MapCamera after = MapCameras::zoomed(before, viewport, point, 13.5);
    EXPECT_EQ(after.zoom, 13.5);
    const Coordinate now = MapProjection(after, viewport).coordinateAt(point);
    EXPECT_NEAR(now.latitude, place.latitude, 1e-9);
    EXPECT_NEAR(now.longitude, place.longitude, 1e-9);
}

TEST(MapCameras, TurnAboutAPoint) {
    const MapCamera before = camera(barcelona, 11, 20, 30);
    const QPointF point(300, 200);
    const Coordinate place = MapProjection(before, viewport).coordinateAt(point);
    const MapCamera after = MapCameras::turned(before, viewport, point, -60);
    EXPECT_EQ(after.bearing, -60);
    const Coordinate now = MapProjection(after, viewport).coordinateAt(point);
    EXPECT_NEAR(now.latitude, place.latitude, 1e-9);
    EXPECT_NEAR(now.longitude, place.longitude, 1e-9);
}

TEST(MapCameras, DragAPlaceAlong) {
    const MapCamera before = camera(barcelona, 11, 70, 20);
    const Coordinate place = MapProjection(before, viewport).coordinateAt({100, 100});
    const MapCamera after = MapCameras::dragged(before, viewport, {100, 100}, {160, 130});
    const Coordinate now = MapProjection(after, viewport).coordinateAt({160, 130});
    EXPECT_NEAR(now.latitude, place.latitude, 1e-9);
    EXPECT_NEAR(now.longitude, place.longitude, 1e-9);
}

TEST(MapCameras, StayWithinTheWorld) {
    const MapCamera north = MapCameras::bounded({{0.5, -3}, 4, 0, 0}, viewport);
    const Coordinate top = MapProjection(north, viewport).coordinateAt({215, 0});
    EXPECT_NEAR(top.latitude, Mercator::highestLatitude, 1e-9);
    EXPECT_EQ(MapCameras::bounded({{0.5, 0.5}, 99, 0, 99}, viewport).zoom, MapCameras::highestZoom);
    EXPECT_EQ(MapCameras::bounded({{0.5, 0.5}, 9, 0, 99}, viewport).pitch, MapCameras::highestPitch);
    EXPECT_EQ(MapCameras::bounded({{0.5, 0.5}, -5, 0, 0}, {400, 1024}).zoom, 2);
    EXPECT_NEAR(MapCameras::bounded({{3.25, 0.5}, 3, 540, 0}, viewport).center.x, 0.25, 1e-12);
    EXPECT_EQ(MapCameras::bounded({{0.5, 0.5}, 3, 540, 0}, viewport).bearing, 180);
}

TEST(MapCameras, ShowAtLeastTheDegreesAskedFor) {
    for (const double latitude : {0.0, 41.3874, -60.0, 80.0}) {
        const Coordinate center{latitude, 2.1686};
        const double zoom = MapCameras::zoomShowing(center, 0.1, 0.1, viewport);
        const MapCamera shown = camera(center, zoom);
        EXPECT_GE(MapCameras::latitudeDelta(shown, viewport), 0.1 - 1e-6);
        EXPECT_GE(MapCameras::longitudeDelta(shown, viewport), 0.1 - 1e-6);
        const bool isTight =
            MapCameras::latitudeDelta(shown, viewport) < 0.101 || MapCameras::longitudeDelta(shown, viewport) < 0.101;
        EXPECT_TRUE(isTight) << latitude;
    }
}

TEST(MapCameras, TakeAnySpan) {
    EXPECT_EQ(MapCameras::zoomShowing(barcelona, 0, 0, viewport), MapCameras::highestZoom);
    EXPECT_EQ(MapCameras::zoomShowing(barcelona, 1e9, 1e9, viewport), MapCameras::lowestZoom(viewport));
    EXPECT_EQ(MapCameras::zoomShowing(barcelona, std::nan(""), 1, {0, 0}), 0);
}

TEST(MapProjection, CutsLinesOffBeforeTheCamera) {
    for (const double bearing : {0.0, 77.0, 180.0}) {
        const MapProjection projection({Mercator::project({41.4, 2.2}), 14, bearing, 60}, viewport);
        const QLineF line(QPointF(-30, -50), QPointF(40, 2000));
        ASSERT_FALSE(projection.isBeforeCamera(line.p2()));
        // As it would be shown: behind the camera, what is below comes to lie above.
        ASSERT_LT(projection.shown(line.p2()).y(), 0);
        const QLineF cut = projection.beforeCamera(line);
        EXPECT_EQ(cut.p1(), line.p1());
        EXPECT_TRUE(projection.isBeforeCamera(cut.p2()));
        EXPECT_GT(projection.shown(cut.p2()).y(), viewport.height);
        EXPECT_NEAR(std::remainder(line.angleTo(cut), 360.0), 0, 1e-6);
        const QLineF back = projection.beforeCamera({line.p2(), line.p1()});
        EXPECT_EQ(back.p1(), cut.p2());
        EXPECT_EQ(back.p2(), line.p1());
        EXPECT_TRUE(projection.beforeCamera({{0, 2000}, {50, 3000}}).isNull());
        const QLineF whole({0, 0}, {20, 90});
        EXPECT_EQ(projection.beforeCamera(whole), whole);
    }
}

} // namespace

} // namespace corvanta
