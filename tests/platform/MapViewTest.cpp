// SPDX-License-Identifier: MIT
#include "MapView.h"

#include "MapText.h"
#include "TaskWaiting.h"
#include "WebServer.h"
#include "WidgetMapSurface.h"

#include <QAccessible>
#include <QApplication>
#include <QBuffer>
#include <QLineEdit>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QStyle>
#include <QWheelEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;

constexpr Coordinate barcelona{41.3874, 2.1686};
constexpr MapFeatures all{true, true, true, true, true, true, true};
constexpr QSize size(430, 250);
constexpr QPointF middle(215, 125);

/// Two towns, one of them larger.
class TwoTowns final : public MapLabelSource {
public:
    [[nodiscard]] std::vector<MapLabel> labelsIn(const WorldArea&, double, int) const override {
        return {{MapLabel::Kind::city, u"Large"_s, Mercator::project({41.39, 2.17}), 100},
                {MapLabel::Kind::town, u"Hidden"_s, Mercator::project({41.3902, 2.1702}), 10},
                {MapLabel::Kind::town, u"Small"_s, Mercator::project({41.41, 2.14}), 10}};
    }
};

class Listener final : public MapSurfaceDelegate {
public:
    [[nodiscard]] std::optional<MapMarkerStyle> viewFor(const MapAnnotation&) override {
        return MapMarkerStyle{u"selected-location"_s, MapMarkerStyle::Tint::systemBlue, u"location.fill"_s,
                              u"Selected location"_s};
    }

    void handleClick(MapGestureState state, QPointF point) override {
        EXPECT_EQ(state, MapGestureState::ended);
        clicks.push_back(point);
    }

    std::vector<QPointF> clicks;
};

class MapViewTest : public ::testing::Test {
protected:
    MapViewTest()
        : m_map(BaseMap::open(QStringLiteral(CORVANTA_BASE_MAP)))
        , surface(MapSources{.baseMap = m_map.get(), .labels = &m_towns, .tiles = {}}, window) {
        window.resize(size);
        surface.setFeatures(all);
        surface.setDelegate(&listener);
        surface.setRegion({barcelona, {0.1, 0.1}}, MapMotion::immediate);
        surface.widget().setGeometry(QRect(QPoint(), size));
        window.show();
        QCoreApplication::processEvents();
    }

    ~MapViewTest() override { surface.setDelegate(nullptr); }

    [[nodiscard]] MapView& map() { return static_cast<MapView&>(surface.widget()); }

    void mouse(QEvent::Type type, QPointF point, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        const Qt::MouseButtons down = type == QEvent::MouseButtonRelease ? Qt::NoButton : button;
        QMouseEvent event(type, point, map().mapToGlobal(point), type == QEvent::MouseMove ? Qt::NoButton : button,
                          down, modifiers);
        QApplication::sendEvent(&map(), &event);
    }

    void click(QPointF point) {
        mouse(QEvent::MouseButtonPress, point);
        mouse(QEvent::MouseButtonRelease, point);
    }

    void drag(QPointF from, QPointF to, Qt::MouseButton button = Qt::LeftButton) {
        mouse(QEvent::MouseButtonPress, from, button);
        for (int part = 1; part <= 10; ++part)
            mouse(QEvent::MouseMove, from + (to - from) * part / 10, button);
        mouse(QEvent::MouseButtonRelease, to, button);
    }

    bool turnWheel(QPointF point, int angle, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWheelEvent event(point, map().mapToGlobal(point), {}, {0, angle}, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&map(), &event);
        return event.isAccepted();
    }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QKeyEvent event(QEvent::KeyPress, key, modifiers);
        QApplication::sendEvent(&map(), &event);
    }

    [[nodiscard]] bool rests() {
        return testing::waitUntil([this] { return map().camera() == map().destination(); });
    }

    const std::unique_ptr<BaseMap> m_map;
    TwoTowns m_towns;
    QWidget window;
    Listener listener;
    WidgetMapSurface surface;
};

TEST_F(MapViewTest, ShowsTheRegionThatWasAskedForBeforeItHadASize) {
    const MapRegion region = surface.region();
    EXPECT_NEAR(region.center.latitude, barcelona.latitude, 1e-9);
    EXPECT_NEAR(region.center.longitude, barcelona.longitude, 1e-9);
    EXPECT_GE(region.span.latitudeDelta, 0.1 - 1e-9);
    EXPECT_GE(region.span.longitudeDelta, 0.1 - 1e-9);
    EXPECT_LT(std::min(region.span.latitudeDelta, region.span.longitudeDelta), 0.101);
}

TEST_F(MapViewTest, KeepsItsZoomWhereItIsGivenItsOwnSpan) {
    const double zoom = map().camera().zoom;
    for (const Coordinate& place : {Coordinate{65, 20}, Coordinate{-10, -70}, barcelona}) {
        surface.setRegion({place, surface.region().span}, MapMotion::immediate);
        EXPECT_EQ(map().camera().zoom, zoom);
        EXPECT_NEAR(surface.region().center.latitude, place.latitude, 1e-9);
    }
}

TEST_F(MapViewTest, FliesToARegionAndSaysAtOnceWhereItIsGoing) {
    surface.setRegion({{41.5, 2.4}, surface.region().span}, MapMotion::animated);
    EXPECT_NEAR(surface.region().center.latitude, 41.5, 1e-9);
    EXPECT_NE(map().camera(), map().destination());
    ASSERT_TRUE(rests());
    EXPECT_NEAR(surface.coordinateAt(middle).latitude, 41.5, 1e-9);
}

TEST_F(MapViewTest, KeepsZoomAndTurnWhenItIsSentElsewhereInFlight) {
    MapCamera turned = map().camera();
    turned.bearing = 30;
    map().setCamera(turned, MapMotion::immediate);
    const double zoom = map().camera().zoom;
    surface.setRegion({{-33, 151}, surface.region().span}, MapMotion::animated);
    QCoreApplication::processEvents();
    surface.setRegion({{51, 0}, surface.region().span}, MapMotion::animated);
    ASSERT_TRUE(rests());
    EXPECT_EQ(map().camera().zoom, zoom);
    EXPECT_EQ(map().camera().bearing, 30);
}

TEST_F(MapViewTest, TellsOfAClickOnce) {
    click({100, 40});
    EXPECT_THAT(listener.clicks, ElementsAre(QPointF(100, 40)));
}

TEST_F(MapViewTest, MovesWithTheDragAndTellsOfNoClick) {
    const Coordinate held = surface.coordinateAt({100, 100});
    drag({100, 100}, {180, 140});
    EXPECT_TRUE(listener.clicks.empty());
    // Afterwards it may glide on in the same direction.
    ASSERT_TRUE(rests());
    EXPECT_GE(map().projection().pointFor(held).x(), 180 - 1e-6);
    EXPECT_GE(map().projection().pointFor(held).y(), 140 - 1e-6);
}

TEST_F(MapViewTest, TakesAShakyClickForOne) {
    mouse(QEvent::MouseButtonPress, {100, 100});
    mouse(QEvent::MouseMove, {102, 101});
    mouse(QEvent::MouseButtonRelease, {102, 101});
    EXPECT_EQ(listener.clicks.size(), 1U);
}

TEST_F(MapViewTest, TurnsAndTiltsWithTheRightButton) {
    drag({200, 200}, {260, 100}, Qt::RightButton);
    EXPECT_LT(map().camera().bearing, -10);
    EXPECT_GT(map().camera().pitch, 10);
    EXPECT_TRUE(listener.clicks.empty());
    const auto* const compass = map().findChild<MapCompass*>();
    ASSERT_NE(compass, nullptr);
    EXPECT_TRUE(compass->isVisible());
}

TEST_F(MapViewTest, TurnsNorthAtThePressOfTheCompass) {
    auto* const compass = map().findChild<MapCompass*>();
    EXPECT_FALSE(compass->isVisible());
    MapCamera turned = map().camera();
    turned.bearing = 120;
    turned.pitch = 40;
    map().setCamera(turned, MapMotion::immediate);
    EXPECT_TRUE(compass->isVisible());
    EXPECT_EQ(compass->accessibleDescription(), u"Heading 120°");
    compass->click();
    ASSERT_TRUE(rests());
    EXPECT_EQ(map().camera().bearing, 0);
    EXPECT_EQ(map().camera().pitch, 0);
    EXPECT_TRUE(testing::waitUntil([&] { return !compass->isVisible(); }));
}

TEST_F(MapViewTest, KeepsTheKeyboardWhenItsCompassGoes) {
    QLineEdit next(&window);
    next.show();
    auto* const compass = map().findChild<MapCompass*>();
    MapCamera turned = map().camera();
    turned.bearing = 30;
    map().setCamera(turned, MapMotion::immediate);
    QApplication::setActiveWindow(&window);
    compass->setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(compass->hasFocus());
    compass->click();
    ASSERT_TRUE(testing::waitUntil([&] { return !compass->isVisible(); }));
    EXPECT_TRUE(map().hasFocus());
}

TEST_F(MapViewTest, ZoomsAboutThePointerByTheWheel) {
    const QPointF point(60, 50);
    const Coordinate held = surface.coordinateAt(point);
    const double zoom = map().camera().zoom;
    EXPECT_TRUE(turnWheel(point, 120, Qt::ControlModifier));
    ASSERT_TRUE(rests());
    EXPECT_NEAR(map().camera().zoom, zoom + 0.5, 1e-9);
    EXPECT_NEAR(surface.coordinateAt(point).latitude, held.latitude, 1e-9);
    EXPECT_NEAR(surface.coordinateAt(point).longitude, held.longitude, 1e-9);
}

TEST_F(MapViewTest, LeavesTheWheelToTheWindowUnlessItIsMeant) {
    map().clearFocus();
    const MapCamera before = map().camera();
    EXPECT_FALSE(turnWheel(middle, 120));
    EXPECT_EQ(map().destination(), before);
}

TEST_F(MapViewTest, LeavesTheWheelToTheWindowAgainAfterAClick) {
    QApplication::setActiveWindow(&window);
    map().setFocus(Qt::MouseFocusReason);
    ASSERT_TRUE(map().hasFocus());
    click(middle);
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(&map(), &leave);
    EXPECT_FALSE(turnWheel(middle, 120));
}

TEST_F(MapViewTest, TakesTheWheelOfWhoeverCameByKeyboard) {
    QApplication::setActiveWindow(&window);
    map().clearFocus();
    map().setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(map().hasFocus());
    EXPECT_TRUE(turnWheel(middle, 120));
}

TEST_F(MapViewTest, LeavesTheWheelToTheWindowThatMovesItBeneathThePointer) {
    map().clearFocus();
    const QPointF still = map().mapToGlobal(middle);
    for (const QPointF& point : {middle, middle + QPointF(0, 60)}) {
        QMouseEvent event(QEvent::MouseMove, point, still, Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QApplication::sendEvent(&map(), &event);
    }
    EXPECT_FALSE(turnWheel(middle, 120));
}

TEST_F(MapViewTest, TakesTheWheelOfAPointerThatWasMovedOnIt) {
    map().clearFocus();
    mouse(QEvent::MouseMove, {50, 50}, Qt::NoButton);
    mouse(QEvent::MouseMove, {80, 50}, Qt::NoButton);
    EXPECT_TRUE(turnWheel({80, 50}, 120));
}

TEST_F(MapViewTest, ZoomsInByADoubleClick) {
    const double zoom = map().camera().zoom;
    click({100, 40});
    mouse(QEvent::MouseButtonDblClick, {100, 40});
    mouse(QEvent::MouseButtonRelease, {100, 40});
    ASSERT_TRUE(rests());
    EXPECT_NEAR(map().camera().zoom, zoom + 1, 1e-9);
    EXPECT_EQ(listener.clicks.size(), 1U);
}

TEST_F(MapViewTest, PinchesAndTurnsByGestures) {
    const double zoom = map().camera().zoom;
    const auto* const device = QPointingDevice::primaryPointingDevice();
    QNativeGestureEvent pinch(Qt::ZoomNativeGesture, device, 2, middle, middle, map().mapToGlobal(middle), 1.0, {});
    QApplication::sendEvent(&map(), &pinch);
    EXPECT_NEAR(map().camera().zoom, zoom + 1, 1e-9);
    QNativeGestureEvent turn(Qt::RotateNativeGesture, device, 2, middle, middle, map().mapToGlobal(middle), 25, {});
    QApplication::sendEvent(&map(), &turn);
    EXPECT_NEAR(map().camera().bearing, -25, 1e-9);
}

TEST_F(MapViewTest, IsMovedByKeys) {
    const MapCamera before = map().camera();
    press(Qt::Key_Right);
    ASSERT_TRUE(rests());
    EXPECT_GT(map().camera().center.x, before.center.x);
    press(Qt::Key_Down);
    ASSERT_TRUE(rests());
    EXPECT_GT(map().camera().center.y, before.center.y);
    press(Qt::Key_Plus);
    ASSERT_TRUE(rests());
    EXPECT_NEAR(map().camera().zoom, before.zoom + 1, 1e-9);
    press(Qt::Key_Minus);
    ASSERT_TRUE(rests());
    EXPECT_NEAR(map().camera().zoom, before.zoom, 1e-9);
    press(Qt::Key_Left, Qt::ShiftModifier);
    ASSERT_TRUE(rests());
    EXPECT_NEAR(map().camera().bearing, -15, 1e-9);
    press(Qt::Key_Up, Qt::ShiftModifier);
    ASSERT_TRUE(rests());
    EXPECT_NEAR(map().camera().pitch, 10, 1e-9);
    press(Qt::Key_Home);
    ASSERT_TRUE(rests());
    EXPECT_EQ(map().camera().bearing, 0);
    EXPECT_EQ(map().camera().pitch, 0);
    press(Qt::Key_Return);
    EXPECT_THAT(listener.clicks, ElementsAre(middle));
}

TEST_F(MapViewTest, DoesOnlyWhatItsFeaturesAllow) {
    surface.setFeatures({});
    const MapCamera before = map().camera();
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Plus})
        press(key);
    press(Qt::Key_Left, Qt::ShiftModifier);
    press(Qt::Key_Up, Qt::ShiftModifier);
    drag({100, 100}, {180, 140});
    drag({100, 100}, {180, 140}, Qt::RightButton);
    EXPECT_FALSE(turnWheel(middle, 120, Qt::ControlModifier));
    ASSERT_TRUE(rests());
    EXPECT_EQ(map().camera(), before);
}

TEST_F(MapViewTest, StandsThePinOnItsPlace) {
    const auto annotation =
        std::make_shared<MapAnnotation>(MapAnnotation{MapAnnotationKind::point, u"Selected Location"_s, barcelona});
    surface.addAnnotation(annotation);
    auto* const pin = map().findChild<MapPin*>();
    ASSERT_NE(pin, nullptr);
    EXPECT_TRUE(pin->isVisible());
    EXPECT_EQ(pin->accessibleName(), u"Selected Location");
    EXPECT_EQ(pin->accessibleDescription(), u"Selected location, 41.3874, 2.1686");
    const auto tip = [pin] { return QPointF(pin->geometry().center().x() + 0.5, pin->geometry().bottom() - 1); };
    EXPECT_NEAR(tip().x(), middle.x(), 1.5);
    EXPECT_NEAR(tip().y(), middle.y(), 1.5);
    annotation->coordinate = surface.coordinateAt({300, 200});
    surface.annotationMoved(annotation);
    EXPECT_NEAR(tip().x(), 300, 1.5);
    EXPECT_NEAR(tip().y(), 200, 1.5);
    annotation->coordinate = {-40, 100};
    surface.annotationMoved(annotation);
    EXPECT_FALSE(pin->isVisible());
    surface.removeAnnotation(annotation);
    EXPECT_EQ(map().findChild<MapPin*>(), nullptr);
}

TEST_F(MapViewTest, LetsClicksThroughItsPin) {
    surface.addAnnotation(
        std::make_shared<MapAnnotation>(MapAnnotation{MapAnnotationKind::point, u"Selected Location"_s, barcelona}));
    EXPECT_TRUE(map().findChild<MapPin*>()->testAttribute(Qt::WA_TransparentForMouseEvents));
}

TEST_F(MapViewTest, TellsAssistiveTechnologyWhereItIs) {
    EXPECT_EQ(map().description(), u"41.3874, 2.1686");
    EXPECT_TRUE(testing::waitUntil([this] { return map().accessibleDescription() == u"41.3874, 2.1686"; }));
    surface.setRegion({{-33.8688, 151.2093}, surface.region().span}, MapMotion::immediate);
    EXPECT_TRUE(testing::waitUntil([this] { return map().accessibleDescription() == u"-33.8688, 151.2093"; }));
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(&map());
    ASSERT_NE(interface, nullptr);
    EXPECT_EQ(interface->text(QAccessible::Name), u"Map");
    EXPECT_EQ(interface->text(QAccessible::Description), u"-33.8688, 151.2093");
    EXPECT_EQ(interface->role(), QAccessible::Graphic);
    ASSERT_NE(interface->actionInterface(), nullptr);
    interface->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_THAT(listener.clicks, ElementsAre(middle));
}

TEST_F(MapViewTest, NamesWhatThereIsRoomFor) {
    window.grab();
    EXPECT_THAT(map().labels().shownNames(), ElementsAre(u"Large"_s, u"Small"_s));
}

TEST_F(MapViewTest, ShowsLandAndWaterWithoutANetwork) {
    const QImage image = window.grab().toImage();
    const MapPalette palette = MapPalette::forPalette(QGuiApplication::palette());
    EXPECT_EQ(image.pixelColor(QPoint(3, 120)), palette.land);
    EXPECT_EQ(image.pixelColor(QPoint(426, 120)), palette.water);
}

TEST_F(MapViewTest, ShowsAPlainMapWithoutItsData) {
    QWidget other;
    MapView plain(MapSources{}, &other);
    plain.setFeatures(all);
    plain.resize(size);
    const QImage image = plain.grab().toImage();
    EXPECT_EQ(image.pixelColor(QPoint(200, 30)), MapPalette::forPalette(QGuiApplication::palette()).land);
}

TEST_F(MapViewTest, KeepsItsMiddleWhenItsSizeChanges) {
    map().resize(600, 250);
    EXPECT_NEAR(surface.coordinateAt({300, 125}).latitude, barcelona.latitude, 1e-9);
    EXPECT_NEAR(surface.coordinateAt({300, 125}).longitude, barcelona.longitude, 1e-9);
}

/// A map whose tiles come from a server of this test.
class TiledMapViewTest : public ::testing::Test {
protected:
    TiledMapViewTest() { make(10min); }

    void make(std::chrono::milliseconds pause) {
        delete map;
        MapSources sources;
        sources.tiles.urlTemplate = server.url(u"/{z}/{x}/{y}.png"_s);
        sources.tiles.userAgent = u"Corvanta/1.2 (test)"_s;
        sources.tiles.attributionText = u"© Somebody"_s;
        sources.tiles.firstPause = pause;
        sources.tiles.longestPause = pause;
        map = new MapView(sources, &window);
        map->setFeatures(all);
        map->resize(size);
        window.resize(size);
        map->setCamera({Mercator::project(barcelona), 9, 0, 0}, MapMotion::immediate);
    }

    /// Where the map is, or will be after its flight.
    [[nodiscard]] std::vector<ShownMapTile> tilesInSight() const {
        const int zoom = MapTiles::zoomFor(map->destination(), map->devicePixelRatioF(), 19);
        return MapTiles::visible({map->destination(), {1.0 * map->width(), 1.0 * map->height()}}, zoom, 80);
    }

    /// Another colour than its neighbours have.
    [[nodiscard]] static QColor colourOf(const MapTile& tile) {
        return QColor::fromHsv((tile.column * 77 + tile.row * 131) % 360, 200, 220);
    }

    void serve(const MapTile& tile) {
        QImage image(256, 256, QImage::Format_RGB32);
        image.fill(colourOf(tile));
        testing::WebAnswer answer;
        answer.headers = "Content-Type: image/png\r\n";
        QBuffer buffer(&answer.body);
        buffer.open(QIODevice::WriteOnly);
        image.save(&buffer, "PNG");
        server.answer(u"/%1/%2/%3.png"_s.arg(tile.zoom).arg(tile.column).arg(tile.row), answer);
    }

    /// Every tile in sight is there.
    [[nodiscard]] bool isFilled() const {
        return testing::waitUntil([this] {
            return std::ranges::all_of(tilesInSight(), [this](const ShownMapTile& one) {
                return map->tiles().picture(one.tile).image != nullptr;
            });
        });
    }

    testing::WebServer server{testing::WebServer::Scheme::http};
    QWidget window;
    MapView* map = nullptr;
};

TEST_F(TiledMapViewTest, AsksForNothingThatItOnlyFliesOver) {
    for (const ShownMapTile& one : tilesInSight())
        serve(one.tile);
    window.show();
    ASSERT_TRUE(isFilled());
    const auto before = server.requests().size();
    map->setCamera({Mercator::project({48.85, 2.35}), 9, 0, 0}, MapMotion::animated);
    ASSERT_NE(map->camera(), map->destination());
    for (const ShownMapTile& one : tilesInSight())
        serve(one.tile);
    int frames = 0;
    ASSERT_TRUE(testing::waitUntil([&] {
        map->grab();
        ++frames;
        if (map->camera() != map->destination())
            EXPECT_EQ(server.requests().size(), before);
        return map->camera() == map->destination();
    }));
    EXPECT_GT(frames, 5);
    EXPECT_TRUE(isFilled());
}

TEST_F(TiledMapViewTest, ShowsTiltedTilesInTheirPlaces) {
    map->setFeatures({});
    map->tiles().setFades(false);
    window.show();
    const WorldPoint around = Mercator::project(barcelona);
    const double tileWidth = std::exp2(-9);
    int cornersBehind = 0;
    for (const double bearing : {180.0, 45.0, 0.0}) {
        for (int tenth = 0; tenth < 10; ++tenth) {
            const double part = tenth / 10.0;
            map->setCamera({{around.x + 0.3 * part * tileWidth, around.y + part * tileWidth}, 9.45, bearing, 60},
                           MapMotion::immediate);
            for (const ShownMapTile& one : tilesInSight())
                serve(one.tile);
            ASSERT_TRUE(isFilled());
            const QImage image = map->grab().toImage();
            int compared = 0;
            int wrong = 0;
            for (int y = 9; y < size.height(); y += 10) {
                for (int x = 10; x < (y < 220 ? 420 : 250); x += 10) {
                    const WorldPoint place = map->projection().placeAt(QPointF(x + 0.5, y + 0.5));
                    const double column = place.x / tileWidth;
                    const double row = place.y / tileWidth;
                    const auto isInside = [](double value) { return std::abs(value - std::round(value)) > 0.03; };
                    if (!isInside(column) || !isInside(row))
                        continue;
                    ++compared;
                    wrong += image.pixel(x, y) != colourOf({9, static_cast<int>(column), static_cast<int>(row)}).rgb();
                }
            }
            EXPECT_GT(compared, 200);
            if (std::ranges::any_of(tilesInSight(), [this](const ShownMapTile& one) {
                    const MapProjection now = map->projection();
                    return !now.isBeforeCamera(now.groundUnwrapped(MapTiles::corner(one)));
                }))
                ++cornersBehind;
            EXPECT_EQ(wrong, 0) << "of " << compared << ", turned by " << bearing << ", at " << part;
        }
    }
    EXPECT_GT(cornersBehind, 0);
}

TEST_F(TiledMapViewTest, SaysWhoseDataItShowsFromTheFirstTileOn) {
    auto* const attribution = map->findChild<MapAttribution*>();
    ASSERT_NE(attribution, nullptr);
    window.show();
    ASSERT_TRUE(testing::waitUntil([this] { return server.requests().size() >= 2; }));
    EXPECT_FALSE(attribution->isVisible());
    make(30ms);
    map->show();
    const MapTile first = tilesInSight().front().tile;
    serve(first);
    auto* const shown = map->findChild<MapAttribution*>();
    ASSERT_TRUE(testing::waitUntil([&] { return shown->isVisible(); }));
    EXPECT_NE(map->tiles().picture(first).image, nullptr);
    EXPECT_EQ(shown->text(), u"© Somebody");
    EXPECT_TRUE(map->rect().contains(shown->geometry()));
}

TEST_F(TiledMapViewTest, AsksForNothingWhileNobodySeesIt) {
    map->grab();
    EXPECT_FALSE(testing::waitUntil([this] { return !server.requests().isEmpty(); }, 200ms));
}

TEST_F(TiledMapViewTest, DoesNotTryAgainWhileNobodySeesIt) {
    make(30ms);
    window.show();
    ASSERT_TRUE(testing::waitUntil([this] { return server.requests().size() >= 4; }));
    window.hide();
    // What was on its way may still come.
    const auto before = server.requests().size() + 2;
    EXPECT_FALSE(testing::waitUntil([&] { return server.requests().size() > before; }, 300ms));
    for (const ShownMapTile& one : tilesInSight())
        serve(one.tile);
    window.show();
    EXPECT_TRUE(isFilled());
}

TEST(WidgetMapSurface, MayOutliveItsWidget) {
    auto window = std::make_unique<QWidget>();
    WidgetMapSurface surface(MapSources{}, *window);
    window.reset();
}

TEST(MapText, WritesCoordinatesShort) {
    EXPECT_EQ(coordinateText({41.3874, 2.1686}), u"41.3874, 2.1686");
    EXPECT_EQ(coordinateText({-0.00001, 12}), u"0, 12");
    EXPECT_EQ(coordinateText({37.331820, -122.0311800001}), u"37.3318, -122.0312");
}

} // namespace

} // namespace corvanta
