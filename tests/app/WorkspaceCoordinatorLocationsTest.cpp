// SPDX-License-Identifier: MIT
#include "WorkspaceCoordinatorTest.h"

#include "locations/CoordinateFormatter.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using testing::FakeError;
using testing::PlaceSearchOperation;
using testing::SimulatorOperation;

constexpr Coordinate barcelona{41.3874, 2.1686};
constexpr Coordinate oslo{59.9139, 10.7522};

class WorkspaceCoordinatorLocationsTest : public WorkspaceCoordinatorTest {
protected:
    void SetUp() override { makeReady(); }

    void select(const Coordinate& coordinate, const QString& name) {
        coordinator->selectLocation(coordinate, name, false);
        forget();
    }

    [[nodiscard]] testing::WatchedTask<void> resolve(const QString& title) {
        return testing::WatchedTask(
            coordinator->resolveLocation({.title = title, .subtitle = u"Anywhere"_s, .source = nullptr}));
    }

    [[nodiscard]] testing::WatchedTask<void> setLocation() {
        return testing::WatchedTask(coordinator->setLocationOnSimulator());
    }

    [[nodiscard]] testing::WatchedTask<void> clearLocation() {
        return testing::WatchedTask(coordinator->clearLocationOnSimulator());
    }
};

TEST_F(WorkspaceCoordinatorLocationsTest, SelectsAPointStoresItAndShowsItsName) {
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    EXPECT_THAT(journal,
                ElementsAre("coordinate", "location name", "recenter true", "map selection", "status Barcelona"));
    EXPECT_EQ(coordinator->selectedCoordinate(), barcelona);
    EXPECT_EQ(coordinator->selectedCoordinateValue(), barcelona);
    EXPECT_EQ(coordinator->selectedLocationName(), u"Barcelona");
    EXPECT_EQ(storedProfile().coordinate, barcelona);
    EXPECT_EQ(storedProfile().locationName, u"Barcelona");
}

TEST_F(WorkspaceCoordinatorLocationsTest, LeavesTheDeviceAloneWhenAPointIsSelected) {
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    EXPECT_THAT(log.calls(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorLocationsTest, ClearsTheRecoveryLineWhenAPointIsSelected) {
    simulator.script.fail(SimulatorOperation::clearLocation, FakeError(u"No."_s, u"Try again."_s));
    const auto task = clearLocation();
    ASSERT_EQ(recovery(), "Try again.");
    coordinator->selectLocation(barcelona, u"Barcelona"_s, false);
    EXPECT_EQ(recovery(), "none");
}

TEST_F(WorkspaceCoordinatorLocationsTest, RenewsTheMapSelectionAlsoForTheSamePoint) {
    select(barcelona, u"Barcelona"_s);
    const QUuid first = coordinator->mapSelectionID();
    EXPECT_FALSE(first.isNull());
    coordinator->selectLocation(barcelona, u"Barcelona"_s, false);
    EXPECT_NE(coordinator->mapSelectionID(), first);
    EXPECT_THAT(journal, ElementsAre("map selection"));
}

TEST_F(WorkspaceCoordinatorLocationsTest, SelectsTheFirstFoundPlaceAndRecentersTheMap) {
    placeSearch.found = {{.name = u"Oslo, Norway"_s, .coordinate = oslo}, {.name = u"B"_s, .coordinate = barcelona}};
    const auto task = resolve(u"Oslo"_s);
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(log.calls(), ElementsAre("search Oslo"));
    EXPECT_EQ(coordinator->selectedCoordinate(), oslo);
    EXPECT_EQ(coordinator->selectedLocationName(), u"Oslo, Norway");
    EXPECT_TRUE(coordinator->recenterMapOnSelection());
    EXPECT_THAT(published("locating"), ElementsAre("locating true", "locating false"));
}

TEST_F(WorkspaceCoordinatorLocationsTest, SelectsAPlaceWithoutANameUnderTheSuggestionsTitle) {
    placeSearch.found = {{.name = std::nullopt, .coordinate = oslo}};
    const auto task = resolve(u"Oslo"_s);
    EXPECT_EQ(coordinator->selectedLocationName(), u"Oslo");
    EXPECT_TRUE(coordinator->recenterMapOnSelection());
}

TEST_F(WorkspaceCoordinatorLocationsTest, TakesAnEmptyNameForAName) {
    placeSearch.found = {{.name = QString(u""_s), .coordinate = oslo}};
    const auto task = resolve(u"Oslo"_s);
    EXPECT_EQ(coordinator->selectedLocationName(), u"");
}

TEST_F(WorkspaceCoordinatorLocationsTest, SaysThatNothingMatches) {
    select(barcelona, u"Barcelona"_s);
    const auto task = resolve(u"Nowhere"_s);
    EXPECT_THAT(journal, ElementsAre("locating true", "status No matching location", "locating false"));
    EXPECT_EQ(coordinator->selectedCoordinate(), barcelona);
}

TEST_F(WorkspaceCoordinatorLocationsTest, ShowsWhyASearchFailed) {
    placeSearch.script.fail(PlaceSearchOperation::search, FakeError(u"Offline."_s, u"Connect."_s));
    const auto task = resolve(u"Oslo"_s);
    EXPECT_THAT(journal, ElementsAre("locating true", "status Offline.", "recovery Connect.", "locating false"));
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
}

TEST_F(WorkspaceCoordinatorLocationsTest, SavesNoFavoriteWithoutAPoint) {
    coordinator->saveFavorite();
    EXPECT_THAT(journal, IsEmpty());
    EXPECT_THAT(locationRepository.loadFavorites(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorLocationsTest, SavesAFavoriteUnderTheTrimmedName) {
    select(barcelona, u" Home \n"_s);
    coordinator->saveFavorite();
    EXPECT_THAT(journal, ElementsAre("favorites 1", "status Saved favorite"));
    ASSERT_EQ(locationRepository.loadFavorites(), coordinator->favorites());
    EXPECT_EQ(coordinator->favorites().front().name, u"Home");
    EXPECT_EQ(coordinator->favorites().front().coordinate, barcelona);
}

TEST_F(WorkspaceCoordinatorLocationsTest, SavesAFavoriteWithABlankNameUnderTheCoordinatePair) {
    select(barcelona, u" \n\t"_s);
    coordinator->saveFavorite();
    EXPECT_EQ(coordinator->favorites().front().name, u"41.3874,2.1686");
}

TEST_F(WorkspaceCoordinatorLocationsTest, DeletesTheFavoriteWithThatIdentityAlone) {
    select(barcelona, u"Barcelona"_s);
    coordinator->saveFavorite();
    select(oslo, u"Oslo"_s);
    coordinator->saveFavorite();
    forget();
    coordinator->deleteFavorite(coordinator->favorites().front().id);
    EXPECT_THAT(journal, ElementsAre("favorites 1", "status Deleted favorite"));
    ASSERT_EQ(coordinator->favorites().size(), 1U);
    EXPECT_EQ(coordinator->favorites().front().name, u"Barcelona");
    EXPECT_EQ(locationRepository.loadFavorites(), coordinator->favorites());
}

TEST_F(WorkspaceCoordinatorLocationsTest, ShowsTheStoredFavoritesAfterADeletionThatFindsNothing) {
    select(barcelona, u"Barcelona"_s);
    coordinator->saveFavorite();
    forget();
    coordinator->deleteFavorite(QUuid());
    EXPECT_THAT(journal, ElementsAre("status Deleted favorite"));
    EXPECT_EQ(coordinator->favorites().size(), 1U);
}

TEST_F(WorkspaceCoordinatorLocationsTest, LeavesTheSelectionAndThePhaseWhenAFavoriteIsDeleted) {
    select(barcelona, u"Barcelona"_s);
    coordinator->saveFavorite();
    coordinator->deleteFavorite(coordinator->favorites().front().id);
    EXPECT_EQ(coordinator->selectedCoordinate(), barcelona);
    EXPECT_EQ(coordinator->selectedLocationName(), u"Barcelona");
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
}

TEST_F(WorkspaceCoordinatorLocationsTest, PutsTheNewestFavoriteFirst) {
    select(barcelona, u"Barcelona"_s);
    coordinator->saveFavorite();
    select(oslo, u"Oslo"_s);
    coordinator->saveFavorite();
    ASSERT_EQ(coordinator->favorites().size(), 2U);
    EXPECT_EQ(coordinator->favorites().front().name, u"Oslo");
}

TEST_F(WorkspaceCoordinatorLocationsTest, SetsNothingWithoutADeviceOrAPoint) {
    const auto withoutPoint = setLocation();
    EXPECT_THAT(log.calls(), IsEmpty());
    select(barcelona, u"Barcelona"_s);
    coordinator->setSelectedDeviceID(std::nullopt);
    forget();
    const auto withoutDevice = setLocation();
    EXPECT_TRUE(withoutPoint.isDone() && withoutDevice.isDone());
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(WorkspaceCoordinatorLocationsTest, SetsTheLocationAndRecordsItFirstAmongTheRecents) {
    locationRepository.recordRecent(u"Oslo"_s, oslo);
    select(barcelona, u"Barcelona"_s);
    const auto task = setLocation();
    EXPECT_THAT(log.calls(), ElementsAre("setLocation A 41.3874,2.1686"));
    EXPECT_THAT(journal,
                ElementsAre("locating true", "recents 2", "status Set location on iPhone 16", "locating false"));
    ASSERT_EQ(coordinator->recents().size(), 2U);
    EXPECT_EQ(coordinator->recents().front().name, u"Barcelona");
    EXPECT_EQ(coordinator->recents(), locationRepository.loadRecents());
}

TEST_F(WorkspaceCoordinatorLocationsTest, RecordsWhatWasSentWhateverIsSelectedMeanwhile) {
    select(barcelona, u"Barcelona"_s);
    simulator.script.delay(SimulatorOperation::setLocation, 1s);
    const auto task = setLocation();
    coordinator->selectLocation(oslo, u"Oslo"_s, false);
    clock.advance(1s);
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(coordinator->recents().front().name, u"Barcelona");
    EXPECT_EQ(coordinator->recents().front().coordinate, barcelona);
}

TEST_F(WorkspaceCoordinatorLocationsTest, ShowsWhyALocationCouldNotBeSetAndKeepsThePhase) {
    makeRunning();
    select(barcelona, u"Barcelona"_s);
    simulator.script.fail(SimulatorOperation::setLocation, FakeError(u"Not booted."_s));
    const auto task = setLocation();
    EXPECT_THAT(journal, ElementsAre("locating true", "status Not booted.", "locating false"));
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::running);
    EXPECT_THAT(coordinator->recents(), IsEmpty());
    EXPECT_EQ(coordinator->selectedCoordinate(), barcelona);
}

TEST_F(WorkspaceCoordinatorLocationsTest, ClearsNothingWithoutADevice) {
    coordinator->setSelectedDeviceID(std::nullopt);
    forget();
    const auto task = clearLocation();
    EXPECT_TRUE(task.isDone());
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_THAT(journal, IsEmpty());
}

TEST_F(WorkspaceCoordinatorLocationsTest, ClearsTheLocationAndStoresTheNameThatIsStillShown) {
    select(barcelona, u"Barcelona"_s);
    const QUuid before = coordinator->mapSelectionID();
    const auto task = clearLocation();
    EXPECT_THAT(log.calls(), ElementsAre("clearLocation A"));
    EXPECT_THAT(journal, ElementsAre("locating true", "coordinate", "map selection",
                                     "status Cleared location on iPhone 16", "locating false"));
    EXPECT_EQ(coordinator->selectedCoordinate(), std::nullopt);
    EXPECT_EQ(coordinator->selectedCoordinateValue(), std::nullopt);
    EXPECT_EQ(coordinator->selectedLocationName(), u"Barcelona");
    EXPECT_NE(coordinator->mapSelectionID(), before);
    EXPECT_EQ(storedProfile().coordinate, std::nullopt);
    EXPECT_EQ(storedProfile().locationName, u"Barcelona");
}

TEST_F(WorkspaceCoordinatorLocationsTest, ClearsALocationAlsoWhenNoPointIsSelected) {
    const auto task = clearLocation();
    EXPECT_EQ(status(), "Cleared location on iPhone 16");
    EXPECT_EQ(storedProfile().coordinate, std::nullopt);
}

TEST_F(WorkspaceCoordinatorLocationsTest, RestoresNoLocationAtAStartAfterItWasCleared) {
    select(barcelona, u"Barcelona"_s);
    const auto task = clearLocation();
    makeRunning();
    EXPECT_EQ(log.count("setLocation"), 0);
}

TEST_F(WorkspaceCoordinatorLocationsTest, KeepsTheSelectionWhenALocationCouldNotBeCleared) {
    select(barcelona, u"Barcelona"_s);
    simulator.script.fail(SimulatorOperation::clearLocation, FakeError(u"Not booted."_s, u"Boot it."_s));
    const auto task = clearLocation();
    EXPECT_THAT(journal, ElementsAre("locating true", "status Not booted.", "recovery Boot it.", "locating false"));
    EXPECT_EQ(coordinator->selectedCoordinate(), barcelona);
    EXPECT_EQ(storedProfile().coordinate, barcelona);
}

TEST_F(WorkspaceCoordinatorLocationsTest, WorksForAsLongAsAnyActionRuns) {
    select(barcelona, u"Barcelona"_s);
    simulator.script.delay(SimulatorOperation::setLocation, 2s);
    placeSearch.script.delay(PlaceSearchOperation::search, 1s);
    const auto setting = setLocation();
    const auto search = resolve(u"Oslo"_s);
    clock.advance(1s);
    ASSERT_TRUE(search.isDone());
    EXPECT_TRUE(coordinator->isLocationWorking());
    clock.advance(1s);
    ASSERT_TRUE(setting.isDone());
    EXPECT_THAT(published("locating"), ElementsAre("locating true", "locating false"));
}

TEST_F(WorkspaceCoordinatorLocationsTest, EndsInSilenceWhenTheCoordinatorGoes) {
    select(barcelona, u"Barcelona"_s);
    simulator.script.delay(SimulatorOperation::setLocation, 1s);
    simulator.script.delay(SimulatorOperation::clearLocation, 1s);
    placeSearch.script.delay(PlaceSearchOperation::search, 1s);
    placeSearch.found = {{.name = std::nullopt, .coordinate = oslo}};
    const auto setting = setLocation();
    const auto clearing = clearLocation();
    const auto search = resolve(u"Oslo"_s);
    coordinator.reset();
    clock.advance(1s);
    EXPECT_TRUE(setting.isDone() && clearing.isDone() && search.isDone());
    EXPECT_EQ(storedProfile().coordinate, barcelona);
    EXPECT_THAT(locationRepository.loadRecents(), IsEmpty());
}

TEST_F(WorkspaceCoordinatorLocationsTest, KeepsThePointButStoresNothingThatIsNotANumber) {
    select(barcelona, u"Barcelona"_s);
    coordinator->selectLocation({std::numeric_limits<double>::quiet_NaN(), 0}, u"Nowhere"_s, false);
    EXPECT_EQ(status(), "Nowhere");
    EXPECT_EQ(storedProfile().coordinate, barcelona);
    EXPECT_EQ(storedProfile().locationName, u"Barcelona");
}

} // namespace

} // namespace corvanta
