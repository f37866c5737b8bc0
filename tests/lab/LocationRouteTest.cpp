// SPDX-License-Identifier: MIT
#include "LocationRoute.h"

#include <gtest/gtest.h>

#include <cmath>

namespace corvanta::lab {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

TEST(Coordinate, ReadsAPairOfDegrees) {
    EXPECT_EQ(Coordinate::parse(u"37.3349,-122.009"_s), (Coordinate{37.3349, -122.009}));
    EXPECT_EQ(Coordinate::parse(u"0,0"_s), (Coordinate{0, 0}));
    EXPECT_EQ(Coordinate::parse(u"-90,180"_s), (Coordinate{-90, 180}));
}

TEST(Coordinate, RefusesWhatIsNoPlace) {
    for (const QString& text : {u""_s, u"1"_s, u"1,"_s, u"1,2,3"_s, u"a,b"_s, u"nan,0"_s, u"inf,0"_s, u"0,nan"_s,
                                u"90.1,0"_s, u"0,-180.1"_s}) {
        EXPECT_EQ(Coordinate::parse(text), std::nullopt) << text.toStdString();
    }
}

TEST(Coordinate, MeasuresTheGreatCircle) {
    // A degree of the equator, and the way between two airports, in metres.
    EXPECT_NEAR(distance({0, 0}, {0, 1}), 111195, 1);
    EXPECT_NEAR(distance({51.4700, -0.4543}, {40.6413, -73.7781}), 5540000, 15000);
    EXPECT_EQ(distance({1, 2}, {1, 2}), 0);
}

TEST(Coordinate, KnowsTheDirection) {
    EXPECT_NEAR(heading({0, 0}, {1, 0}), 0, 1e-9);
    EXPECT_NEAR(heading({0, 0}, {0, 1}), 90, 1e-9);
    EXPECT_NEAR(heading({0, 0}, {-1, 0}), 180, 1e-9);
    EXPECT_NEAR(heading({0, 0}, {0, -1}), 270, 1e-9);
}

/// One degree to the east, then one to the north, at a degree of the equator in ten seconds.
LocationRoute corner() {
    return {.waypoints = {{0, 0}, {0, 1}, {1, 1}}, .speed = distance({0, 0}, {0, 1}) / 10};
}

TEST(LocationRoute, GoesFromPlaceToPlaceAtItsSpeed) {
    const LocationRoute route = corner();
    EXPECT_NEAR(route.at(0s).position.longitude, 0, 1e-9);
    EXPECT_NEAR(route.at(5s).position.longitude, 0.5, 1e-6);
    EXPECT_NEAR(route.at(5s).heading, 90, 1e-6);
    EXPECT_NEAR(route.at(15s).position.latitude, 0.5, 1e-6);
    EXPECT_NEAR(route.at(15s).position.longitude, 1, 1e-6);
    EXPECT_NEAR(route.at(15s).heading, 0, 1e-6);
    EXPECT_FALSE(route.at(15s).isLast);
}

TEST(LocationRoute, StaysAtItsEnd) {
    const LocationRoute::Point end = corner().at(1h);
    EXPECT_EQ(end.position, (Coordinate{1, 1}));
    EXPECT_TRUE(end.isLast);
}

TEST(LocationRoute, BeginsAnewWhenItRepeats) {
    LocationRoute route = corner();
    route.repeats = true;
    const auto once = std::chrono::milliseconds(std::llround(route.length() / route.speed * 1000));
    EXPECT_FALSE(route.at(once + 5s).isLast);
    EXPECT_NEAR(route.at(once + 5s).position.longitude, 0.5, 1e-3);
}

TEST(LocationRoute, OfOnePlaceTwiceIsAtItsEnd) {
    const LocationRoute route{.waypoints = {{3, 4}, {3, 4}}};
    EXPECT_TRUE(route.at(0s).isLast);
    EXPECT_EQ(route.at(0s).position, (Coordinate{3, 4}));
}

TEST(LocationScenarios, AreFoundByName) {
    for (const QString& name : locationScenarios()) {
        const auto route = locationScenario(name.toUpper());
        ASSERT_TRUE(route) << name.toStdString();
        EXPECT_GE(route->waypoints.size(), 2U);
        EXPECT_GT(route->speed, 0);
        EXPECT_TRUE(route->repeats);
    }
    EXPECT_EQ(locationScenario(u"Moon Walk"_s), std::nullopt);
}

} // namespace

} // namespace corvanta::lab
