// SPDX-License-Identifier: MIT
#include "locations/LocationMapView.h"

#include "FakeMapSurface.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <vector>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Coordinate barcelona{41.403626, 2.174356};
constexpr Coordinate office{37.33182, -122.03118};

class LocationMapViewTest : public ::testing::Test {
protected:
    LocationMapViewTest() {
        view.selectedCoordinate = [this] { return selected; };
        view.onCoordinateSelected = [this](Coordinate point) { picked.push_back(point); };
        coordinator.parent = view;
        LocationMapView::makeMap(map, coordinator);
    }

    ~LocationMapViewTest() override { map.setDelegate(nullptr); }

    /// Another selection, as the workspace makes it.
    void select(const std::optional<Coordinate>& coordinate, bool recenter) {
        selected = coordinate;
        view.selectionID = QUuid::createUuid();
        view.recenterOnSelection = recenter;
        update();
    }

    void update() { view.updateMap(map, coordinator); }

    /// Where the map was sent to after it was made.
    [[nodiscard]] std::vector<testing::FakeMapSurface::RegionChange> moves() const {
        return {map.regionChanges.begin() + 1, map.regionChanges.end()};
    }

    testing::FakeMapSurface map;
    std::optional<Coordinate> selected;
    std::vector<Coordinate> picked;
    LocationMapView view;
    LocationMapView::Coordinator coordinator{map, view};
};

TEST_F(LocationMapViewTest, MakesTheMapAroundAFixedPlace) {
    EXPECT_THAT(map.regionChanges, ElementsAre(testing::FakeMapSurface::RegionChange{{{41.3874, 2.1686}, {0.1, 0.1}},
                                                                                     MapMotion::immediate}));
    EXPECT_EQ(map.features, (MapFeatures{true, true, true, true, true, true, true}));
    EXPECT_EQ(map.delegate, &coordinator);
    EXPECT_FALSE(coordinator.lastSelectionID);
    EXPECT_FALSE(coordinator.annotation);
}

TEST_F(LocationMapViewTest, MovesToAStoredLocationKeepingTheZoom) {
    map.shown.span = {0.03, 0.05};
    select(office, true);
    EXPECT_THAT(moves(),
                ElementsAre(testing::FakeMapSurface::RegionChange{{office, {0.03, 0.05}}, MapMotion::animated}));
}

TEST_F(LocationMapViewTest, DropsThePinWithoutMovingTheMapOnAClick) {
    map.click({10, 20});
    ASSERT_EQ(picked.size(), 1U);
    EXPECT_EQ(picked.front(), map.coordinateAt({10, 20}));
    select(picked.front(), false);
    ASSERT_EQ(map.annotations.size(), 1U);
    EXPECT_EQ(map.annotations.front()->coordinate, picked.front());
    EXPECT_THAT(moves(), IsEmpty());
}

TEST_F(LocationMapViewTest, ActsOnClicksThatHaveEndedAlone) {
    for (const auto state : {MapGestureState::possible, MapGestureState::began, MapGestureState::changed,
                             MapGestureState::cancelled, MapGestureState::failed})
        map.click({1, 2}, state);
    EXPECT_THAT(picked, IsEmpty());
    map.click({1, 2}, MapGestureState::ended);
    EXPECT_EQ(picked.size(), 1U);
}

TEST_F(LocationMapViewTest, NeitherRecentresNorAddsThePinAgainForTheSameSelection) {
    select(barcelona, true);
    map.setRegion({{0, 0}, {1, 1}}, MapMotion::immediate);
    const auto before = map.regionChanges.size();
    update();
    update();
    EXPECT_EQ(map.regionChanges.size(), before);
    EXPECT_EQ(map.additions, 1);
    EXPECT_EQ(map.annotations.size(), 1U);
}

TEST_F(LocationMapViewTest, FollowsTheCoordinateOfTheSameSelection) {
    select(barcelona, false);
    selected = office;
    update();
    EXPECT_EQ(map.annotations.front()->coordinate, office);
    EXPECT_EQ(map.moves, 2);
}

TEST_F(LocationMapViewTest, RemovesThePinWithTheSelectionAndMakesANewOneLater) {
    select(barcelona, true);
    const auto first = coordinator.annotation;
    select(std::nullopt, true);
    EXPECT_THAT(map.annotations, IsEmpty());
    EXPECT_FALSE(coordinator.annotation);
    EXPECT_FALSE(coordinator.lastSelectionID);
    select(office, true);
    ASSERT_EQ(map.annotations.size(), 1U);
    EXPECT_NE(map.annotations.front(), first);
    EXPECT_EQ(map.annotations.front()->title, u"Selected Location");
    EXPECT_EQ(map.annotations.front()->kind, MapAnnotationKind::point);
    EXPECT_EQ(moves().size(), 2U);
}

TEST_F(LocationMapViewTest, TakesUpASelectionAgainAfterNothingWasSelected) {
    select(barcelona, true);
    const QUuid same = view.selectionID;
    selected.reset();
    update();
    selected = barcelona;
    view.selectionID = same;
    update();
    EXPECT_EQ(moves().size(), 2U);
}

TEST_F(LocationMapViewTest, DoesNothingWithoutAPinAndWithoutASelection) {
    update();
    EXPECT_EQ(map.additions, 0);
    EXPECT_THAT(moves(), IsEmpty());
}

TEST_F(LocationMapViewTest, TellsWhoeverTheViewNamesNow) {
    std::vector<Coordinate> others;
    view.onCoordinateSelected = [&others](Coordinate point) { others.push_back(point); };
    update();
    map.click({3, 4});
    EXPECT_THAT(picked, IsEmpty());
    EXPECT_EQ(others.size(), 1U);
}

TEST_F(LocationMapViewTest, MayBeUpdatedByWhomItTells) {
    // Too large to be kept within the function itself, and gone when it is let go of.
    struct Heard {
        std::array<double, 16> room{};
        std::vector<Coordinate>* points;
    };

    bool livedOn = false;
    view.onCoordinateSelected = [this, &livedOn, held = std::make_shared<int>(2),
                                 heard = Heard{.points = &picked}](Coordinate point) {
        const std::weak_ptr<int> mine = held;
        bool& isAlive = livedOn;
        view.onCoordinateSelected = [](Coordinate) {};
        update();
        isAlive = !mine.expired();
        if (isAlive)
            heard.points->push_back(point);
    };
    update();
    map.click({3, 4});
    EXPECT_TRUE(livedOn);
    EXPECT_EQ(picked.size(), 1U);
}

TEST_F(LocationMapViewTest, MarksTheSelectedLocationInBlue) {
    select(barcelona, false);
    const MapMarkerStyle expected{u"selected-location"_s, MapMarkerStyle::Tint::systemBlue, u"location.fill"_s,
                                  u"Selected location"_s};
    EXPECT_THAT(map.styles, ElementsAre(expected));
}

TEST_F(LocationMapViewTest, LeavesOtherAnnotationsToThePlatform) {
    EXPECT_EQ(coordinator.viewFor({MapAnnotationKind::userLocation, u"Me"_s, barcelona}), std::nullopt);
}

} // namespace

} // namespace corvanta
