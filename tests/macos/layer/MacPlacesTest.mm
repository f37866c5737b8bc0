// SPDX-License-Identifier: MIT
#include "MacLayerTest.h"
#include "MacMapSurface.h"
#include "MacPlaceSearch.h"
#include "NativeError.h"

#include <QWidget>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;

struct RecordingCompleterDelegate final : PlaceCompleterDelegate {
    void completerDidUpdateResults() override { ++updates; }

    void completerDidFailWithError(const QString& description) override { failures.append(description); }

    int updates = 0;
    QStringList failures;
};

class MacPlaces : public MacLayerTest {
protected:
    void SetUp() override {
        MacLayerTest::SetUp();
        completer = search.makeCompleter();
        completer->setDelegate(&delegate);
    }

    void TearDown() override {
        completer.reset();
        MacLayerTest::TearDown();
    }

    static void suggest() {
        [world().completer answer:@[
            [MKLocalSearchCompletion titled:@"Barcelona" with:@"Spain"],
            [MKLocalSearchCompletion titled:@"Barceloneta" with:@""],
        ]];
    }

    MacPlaceSearch search;
    RecordingCompleterDelegate delegate;
    std::unique_ptr<PlaceCompleter> completer;
};

TEST_F(MacPlaces, AsksForAddressesAndPointsOfInterest) {
    completer->setResultTypes(PlaceResultTypes::addressAndPointOfInterest);
    EXPECT_EQ(world().completer.resultTypes,
              MKLocalSearchCompleterResultTypeAddress | MKLocalSearchCompleterResultTypePointOfInterest);
}

TEST_F(MacPlaces, PassesOnWhatIsTypedAndWhatIsSuggested) {
    completer->setQueryFragment(u"barcelon"_s);
    EXPECT_EQ(textIn(world().completer.queryFragment), "barcelon");
    suggest();
    EXPECT_EQ(delegate.updates, 1);
    const std::vector<PlaceCompletion> results = completer->results();
    ASSERT_EQ(results.size(), 2U);
    EXPECT_EQ(results[0].title, u"Barcelona");
    EXPECT_EQ(results[0].subtitle, u"Spain");
    EXPECT_EQ(results[1].title, u"Barceloneta");
}

TEST_F(MacPlaces, PassesOnWhyNothingIsSuggested) {
    completer->setQueryFragment(u"barcelon"_s);
    [world().completer fail:makeError(u"The Internet connection appears to be offline."_s)];
    EXPECT_EQ(delegate.failures, QStringList{u"The Internet connection appears to be offline."_s});
}

TEST_F(MacPlaces, SaysNothingOnceTheTextIsEmpty) {
    completer->setQueryFragment(u"barcelon"_s);
    suggest();
    completer->setQueryFragment(QString());
    EXPECT_EQ(textIn(world().completer.queryFragment), "");
    suggest();
    [world().completer fail:makeError(u"late"_s)];
    EXPECT_EQ(delegate.updates, 1);
    EXPECT_TRUE(delegate.failures.isEmpty());
    EXPECT_TRUE(completer->results().empty());
}

TEST_F(MacPlaces, SaysNothingToADelegateThatHasGone) {
    completer->setQueryFragment(u"barcelon"_s);
    completer->setDelegate(nullptr);
    suggest();
    MKLocalSearchCompleter* const native = world().completer;
    completer.reset();
    [native answer:@[]];
    EXPECT_EQ(delegate.updates, 0);
}

TEST_F(MacPlaces, SaysNothingOnceItHasGone) {
    completer->setQueryFragment(u"barcelon"_s);
    MKLocalSearchCompleter* const native = world().completer;
    // Somebody calls who has taken the delegate before.
    id<MKLocalSearchCompleterDelegate> const told = native.delegate;
    completer.reset();
    EXPECT_EQ(native.delegate, nil);
    [told completerDidUpdateResults:native];
    [told completer:native didFailWithError:makeError(u"late"_s)];
    EXPECT_EQ(delegate.updates, 0);
    EXPECT_TRUE(delegate.failures.isEmpty());
}

TEST_F(MacPlaces, FindsThePlacesOfASuggestion) {
    completer->setQueryFragment(u"barcelon"_s);
    suggest();
    const PlaceCompletion chosen = completer->results().front();
    completer.reset();
    const WatchedTask<std::vector<MapItem>> task(search.search(chosen));
    EXPECT_EQ(world().searchedTitle, "Barcelona");
    EXPECT_FALSE(task.isDone());
    answerSearch(
        @[
            [MKMapItem named:@"Barcelona" at:CLLocationCoordinate2DMake(41.3874, 2.1686)],
            [MKMapItem named:nil at:CLLocationCoordinate2DMake(1, 2)],
        ],
        nil);
    ASSERT_TRUE(waitUntil([&] { return task.isDone(); }));
    const std::vector<MapItem> items = task.result();
    ASSERT_EQ(items.size(), 2U);
    EXPECT_EQ(items[0].name, u"Barcelona");
    EXPECT_EQ(items[0].coordinate, (Coordinate{41.3874, 2.1686}));
    EXPECT_FALSE(items[1].name);
    EXPECT_EQ(items[1].coordinate, (Coordinate{1, 2}));
    EXPECT_EQ(world().searchedTitle, "Barcelona given up");
}

TEST_F(MacPlaces, FailsASearchWithTheSystemsOwnText) {
    completer->setQueryFragment(u"barcelon"_s);
    suggest();
    const WatchedTask<std::vector<MapItem>> task(search.search(completer->results().front()));
    answerSearch(nil, makeError(u"The operation couldn’t be completed."_s));
    ASSERT_TRUE(waitUntil([&] { return task.isDone(); }));
    EXPECT_THROW(task.result(), NativeError);
}

TEST_F(MacPlaces, FindsNothingForASuggestionOfSomebodyElse) {
    const WatchedTask<std::vector<MapItem>> task(search.search({u"Barcelona"_s, QString(), nullptr}));
    ASSERT_TRUE(task.isDone());
    EXPECT_TRUE(task.result().empty());
    EXPECT_EQ(world().searchedTitle, "");
}

struct RecordingMapDelegate final : MapSurfaceDelegate {
    [[nodiscard]] std::optional<MapMarkerStyle> viewFor(const MapAnnotation& annotation) override {
        asked.push_back(annotation);
        return annotation.kind == MapAnnotationKind::point ? style : std::nullopt;
    }

    void handleClick(MapGestureState state, QPointF point) override { clicks.emplace_back(state, point); }

    std::optional<MapMarkerStyle> style = MapMarkerStyle{u"selected-location"_s, MapMarkerStyle::Tint::systemBlue,
                                                         u"location.fill"_s, u"Selected location"_s};
    std::vector<MapAnnotation> asked;
    std::vector<std::pair<MapGestureState, QPointF>> clicks;
};

class MacMap : public MacLayerTest {
protected:
    void SetUp() override {
        MacLayerTest::SetUp();
        surface = makeMacMapSurface(window);
        surface->setDelegate(&delegate);
    }

    void TearDown() override {
        surface.reset();
        MacLayerTest::TearDown();
    }

    [[nodiscard]] MKAnnotationView* viewFor(id<MKAnnotation> annotation) {
        MKMapView* const map = world().map;
        return [map.delegate mapView:map viewForAnnotation:annotation];
    }

    QWidget window;
    RecordingMapDelegate delegate;
    std::unique_ptr<MapSurface> surface;
};

TEST_F(MacMap, StandsInTheWindowAndGrowsWithIt) {
    EXPECT_EQ(surface->widget().parentWidget(), &window);
    NSView* const host = embeddedView();
    ASSERT_EQ([host shownViews].count, 1U);
    MKMapView* const map = [host shownViews].firstObject;
    EXPECT_EQ(map, world().map);
    EXPECT_EQ(map.autoresizingMask, NSViewWidthSizable | NSViewHeightSizable);
    EXPECT_TRUE(host.flipped);
}

TEST_F(MacMap, GoesWithItsSurfaceOrWithItsWindow) {
    surface.reset();
    EXPECT_TRUE(window.findChildren<QWidget*>().isEmpty());
    EXPECT_EQ(embeddedView(), nil);
    auto other = std::make_unique<QWidget>();
    surface = makeMacMapSurface(*other);
    other.reset();
    surface.reset();
    EXPECT_EQ(embeddedView(), nil);
}

TEST_F(MacMap, HasTheFeaturesThatItIsGiven) {
    MKMapView* const map = world().map;
    surface->setFeatures({true, true, true, true, true, true, true});
    EXPECT_TRUE(map.showsCompass && map.showsScale && map.zoomEnabled && map.scrollEnabled && map.pitchEnabled &&
                map.rotateEnabled);
    EXPECT_EQ(map.pointOfInterestFilter, MKPointOfInterestFilter.filterIncludingAllCategories);
    const auto given = [map] {
        return std::vector<bool>{map.showsCompass,  map.showsScale,   map.zoomEnabled,
                                 map.scrollEnabled, map.pitchEnabled, map.rotateEnabled};
    };
    // One at a time, so that none stands for another.
    surface->setFeatures({.showsCompass = true});
    EXPECT_EQ(given(), (std::vector<bool>{true, false, false, false, false, false}));
    EXPECT_EQ(map.pointOfInterestFilter, MKPointOfInterestFilter.filterExcludingAllCategories);
    surface->setFeatures({.showsScale = true});
    EXPECT_EQ(given(), (std::vector<bool>{false, true, false, false, false, false}));
    surface->setFeatures({.isZoomEnabled = true});
    EXPECT_EQ(given(), (std::vector<bool>{false, false, true, false, false, false}));
    surface->setFeatures({.isScrollEnabled = true});
    EXPECT_EQ(given(), (std::vector<bool>{false, false, false, true, false, false}));
    surface->setFeatures({.isPitchEnabled = true});
    EXPECT_EQ(given(), (std::vector<bool>{false, false, false, false, true, false}));
    surface->setFeatures({.isRotateEnabled = true});
    EXPECT_EQ(given(), (std::vector<bool>{false, false, false, false, false, true}));
}

TEST_F(MacMap, ShowsARegion) {
    const MapRegion region{{41.3874, 2.1686}, {0.1, 0.2}};
    surface->setRegion(region, MapMotion::immediate);
    EXPECT_FALSE(world().wasRegionAnimated);
    EXPECT_EQ(world().map.region.center.latitude, 41.3874);
    EXPECT_EQ(world().map.region.span.longitudeDelta, 0.2);
    EXPECT_EQ(surface->region(), region);
    surface->setRegion(region, MapMotion::animated);
    EXPECT_TRUE(world().wasRegionAnimated);
}

TEST_F(MacMap, TellsOfClicksFromTheTopLeftCorner) {
    click(world().map, NSMakePoint(7, 9), NSGestureRecognizerStateEnded);
    ASSERT_EQ(delegate.clicks.size(), 1U);
    EXPECT_EQ(delegate.clicks[0], std::pair(MapGestureState::ended, QPointF(7, 241)));
    EXPECT_EQ(surface->coordinateAt({7, 241}), (Coordinate{9, 7}));
    NSClickGestureRecognizer* const recogniser = [world().map recognisers].firstObject;
    EXPECT_EQ(recogniser.numberOfClicksRequired, 1);
}

TEST_F(MacMap, TellsEveryStateOfAClick) {
    const std::vector<std::pair<NSGestureRecognizerState, MapGestureState>> states{
        {NSGestureRecognizerStatePossible, MapGestureState::possible},
        {NSGestureRecognizerStateBegan, MapGestureState::began},
        {NSGestureRecognizerStateChanged, MapGestureState::changed},
        {NSGestureRecognizerStateEnded, MapGestureState::ended},
        {NSGestureRecognizerStateCancelled, MapGestureState::cancelled},
        {NSGestureRecognizerStateFailed, MapGestureState::failed}};
    for (const auto& [native, expected] : states) {
        click(world().map, NSMakePoint(0, 0), native);
        EXPECT_EQ(delegate.clicks.back().first, expected);
    }
}

TEST_F(MacMap, SaysNothingWithoutADelegate) {
    surface->setDelegate(nullptr);
    click(world().map, NSMakePoint(7, 9), NSGestureRecognizerStateEnded);
    EXPECT_EQ(viewFor([[MKPointAnnotation alloc] init]), nil);
    EXPECT_TRUE(delegate.clicks.empty());
    EXPECT_TRUE(delegate.asked.empty());
}

TEST_F(MacMap, ShowsMovesAndRemovesAPin) {
    const auto pin = std::make_shared<MapAnnotation>(
        MapAnnotation{MapAnnotationKind::point, u"Selected Location"_s, {41.3874, 2.1686}});
    surface->addAnnotation(pin);
    ASSERT_EQ(world().shownPins.size(), 1U);
    MKPointAnnotation* const shown = world().shownPins.front();
    EXPECT_EQ(textIn(shown.title), "Selected Location");
    EXPECT_EQ(shown.coordinate.latitude, 41.3874);
    EXPECT_EQ(shown.coordinate.longitude, 2.1686);
    pin->coordinate = {1, 2};
    surface->annotationMoved(pin);
    EXPECT_EQ(shown.coordinate.latitude, 1);
    surface->annotationMoved(std::make_shared<MapAnnotation>());
    surface->removeAnnotation(pin);
    EXPECT_TRUE(world().shownPins.empty());
    surface->removeAnnotation(pin);
}

TEST_F(MacMap, MarksAPinAsItsDelegateWantsIt) {
    const auto pin = std::make_shared<MapAnnotation>(MapAnnotation{MapAnnotationKind::point, u"Pin"_s, {1, 2}});
    surface->addAnnotation(pin);
    id<MKAnnotation> const shown = world().shownPins.front();
    MKAnnotationView* const view = viewFor(shown);
    ASSERT_TRUE([view isKindOfClass:[MKMarkerAnnotationView class]]);
    auto* const marker = static_cast<MKMarkerAnnotationView*>(view);
    EXPECT_EQ(marker.annotation, shown);
    EXPECT_EQ(world().lastReuseIdentifier, "selected-location");
    EXPECT_EQ(marker.markerTintColor, NSColor.systemBlueColor);
    EXPECT_EQ(marker.glyphImage.hash, std::hash<std::string>()("location.fill|Selected location"));
    ASSERT_EQ(delegate.asked.size(), 1U);
    EXPECT_EQ(delegate.asked[0].title, u"Pin");
}

TEST_F(MacMap, ReusesAViewForTheNextPin) {
    MKAnnotationView* const kept = [[MKMarkerAnnotationView alloc] initWithAnnotation:nil reuseIdentifier:@"x"];
    world().reusable["selected-location"] = kept;
    const auto pin = std::make_shared<MapAnnotation>();
    surface->addAnnotation(pin);
    EXPECT_EQ(viewFor(world().shownPins.front()), kept);
    EXPECT_EQ(kept.annotation, world().shownPins.front());
}

TEST_F(MacMap, LeavesTheHostsOwnPositionToTheMap) {
    MKPointAnnotation* const own = [[MKPointAnnotation alloc] init];
    own.coordinate = CLLocationCoordinate2DMake(3, 4);
    EXPECT_EQ(viewFor(own), nil);
    ASSERT_EQ(delegate.asked.size(), 1U);
    EXPECT_EQ(delegate.asked[0].kind, MapAnnotationKind::userLocation);
    EXPECT_EQ(delegate.asked[0].coordinate, (Coordinate{3, 4}));
}

} // namespace
} // namespace corvanta
