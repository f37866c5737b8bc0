// SPDX-License-Identifier: MIT
#include "map/MapFlight.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

namespace corvanta {

namespace {

constexpr MapViewport viewport{430, 250};

MapCamera camera(double latitude, double longitude, double zoom, double bearing = 0) {
    return {Mercator::project({latitude, longitude}), zoom, bearing, 0};
}

double pixelsBetween(const MapCamera& first, const MapCamera& second) {
    const QPointF way = MapProjection(first, viewport).ground(second.center);
    return std::hypot(way.x(), way.y());
}

TEST(MapFlight, BeginsAndEndsWhereItShould) {
    const MapCamera from = camera(41, 2, 11);
    const MapCamera to = camera(-33.9, 151.2, 12, 40);
    const MapFlight flight(from, to, viewport);
    EXPECT_EQ(flight.at(MapFlight::Duration(0)), from);
    EXPECT_EQ(flight.at(flight.duration()), to);
    EXPECT_EQ(flight.at(MapFlight::Duration(99)), to);
    EXPECT_GT(flight.duration().count(), 0.2);
    EXPECT_LE(flight.duration().count(), 1.6);
}

TEST(MapFlight, RisesOverLongDistances) {
    const MapCamera from = camera(41, 2, 11);
    const MapCamera to = camera(-33.9, 151.2, 11);
    const MapFlight flight(from, to, viewport);
    EXPECT_LT(flight.at(flight.duration() / 2).zoom, 6);
}

TEST(MapFlight, StaysLowOverShortDistances) {
    const MapCamera from = camera(41, 2, 11);
    const MapCamera to = camera(41.01, 2.01, 11);
    const MapFlight flight(from, to, viewport);
    for (int part = 0; part <= 10; ++part)
        EXPECT_GT(flight.at(flight.duration() * part / 10).zoom, 10.7);
}

TEST(MapFlight, NeverJumps) {
    const MapCamera from = camera(41, 2, 11);
    for (const MapCamera& to : {camera(41.2, 2.4, 14), camera(48, -170, 3), camera(41, 2, 18, 170)}) {
        const MapFlight flight(from, to, viewport);
        constexpr int frames = 200;
        MapCamera last = from;
        for (int frame = 1; frame <= frames; ++frame) {
            const MapCamera now = flight.at(flight.duration() * frame / frames);
            EXPECT_LT(pixelsBetween(last, now), viewport.width / 8) << frame;
            EXPECT_LT(std::abs(last.zoom - now.zoom), 0.4) << frame;
            last = now;
        }
    }
}

TEST(MapFlight, TakesTheShorterWayOverTheDateLine) {
    const MapFlight flight(camera(0, 179, 6), camera(0, -179, 6), viewport);
    for (int part = 0; part <= 10; ++part) {
        const double x = flight.at(flight.duration() * part / 10).center.x;
        EXPECT_TRUE(x > 0.99 || x < 0.01) << x;
    }
}

TEST(MapFlight, TurnsTheShorterWayRound) {
    const MapFlight flight(camera(0, 0, 6, 170), camera(0, 0, 6, -170), viewport);
    EXPECT_GT(std::abs(flight.at(flight.duration() / 2).bearing), 169);
}

TEST(MapInertia, RunsOutSlowly) {
    const MapInertia inertia({600, 0});
    const auto end = inertia.duration();
    ASSERT_GT(end.count(), 0.3);
    double last = 0;
    double lastStep = 1e9;
    for (int part = 1; part <= 20; ++part) {
        const double way = inertia.offsetAt(end * part / 20).x();
        EXPECT_GT(way, last);
        EXPECT_LT(way - last, lastStep);
        lastStep = way - last;
        last = way;
    }
    EXPECT_LT(last, 600);
}

TEST(MapInertia, DoesNotMoveWhatWasPutDownGently) {
    EXPECT_EQ(MapInertia({2, 3}).duration().count(), 0);
    EXPECT_EQ(MapInertia({std::nan(""), 0}).duration().count(), 0);
}

TEST(MapInertia, DoesNotThrowTheMapOutOfSight) {
    EXPECT_LT(MapInertia({1e7, 0}).offsetAt(MapInertia::Duration(10)).x(), 1500);
}

} // namespace

} // namespace corvanta
