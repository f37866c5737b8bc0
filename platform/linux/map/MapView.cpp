// SPDX-License-Identifier: MIT
#include "MapView.h"

#include "BaseMapPainter.h"
#include "MapAccessibility.h"
#include "MapText.h"
#include "map/MapScale.h"

#include <QAccessible>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLocale>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QTouchEvent>
#include <QUrl>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto frameTime = 16ms;
/// How long a map has to lie still before assistive technology hears of where it is.
constexpr auto restTime = 120ms;
constexpr double clickSlack = 4;
constexpr double clickTurn = 15;
constexpr double keyTilt = 10;
/// Of the map's width or height.
constexpr double keyWay = 0.25;
constexpr double wheelLevels = 0.5;
constexpr qint64 velocityTime = 90;
constexpr int mostTiles = 80;
constexpr double longestScale = 90;
constexpr MapFlight::Duration quick{0.22};

MapScale::Units unitsOf(const QLocale& locale) {
    return locale.measurementSystem() == QLocale::MetricSystem ? MapScale::Units::metric : MapScale::Units::imperial;
}

/// Draws a part of a picture, from 0 to 1, onto a part of the world. Of what reaches behind the camera, where it would
/// be turned inside out, only what lies before it.
void paintTile(QPainter& painter, const MapProjection& now, const QImage& image, const QRectF& source,
               const QRectF& place, int halvings = 5) {
    std::array<QPointF, 4> corners{place.topLeft(), place.topRight(), place.bottomRight(), place.bottomLeft()};
    for (QPointF& corner : corners)
        corner = now.groundUnwrapped({corner.x(), corner.y()});
    const auto isBefore = [&now](const QPointF& ground) { return now.isBeforeCamera(ground); };
    if (!std::ranges::all_of(corners, isBefore)) {
        if (halvings == 0 || std::ranges::none_of(corners, isBefore))
            return;
        for (const QPointF& half : {QPointF(0, 0), QPointF(0.5, 0), QPointF(0, 0.5), QPointF(0.5, 0.5)}) {
            const auto quarter = [&half](const QRectF& all) {
                return QRectF(all.x() + half.x() * all.width(), all.y() + half.y() * all.height(), all.width() / 2,
                              all.height() / 2);
            };
            paintTile(painter, now, image, quarter(source), quarter(place), halvings - 1);
        }
        return;
    }
    const QSizeF size = image.size();
    const QRectF pixels(source.x() * size.width(), source.y() * size.height(), source.width() * size.width(),
                        source.height() * size.height());
    QPolygonF shown;
    for (const QPointF& corner : corners)
        shown.append(now.shown(corner));
    QTransform transform;
    if (!QTransform::quadToQuad(
            QPolygonF{pixels.topLeft(), pixels.topRight(), pixels.bottomRight(), pixels.bottomLeft()}, shown,
            transform))
        return;
    painter.save();
    painter.setTransform(transform, true);
    painter.drawImage(pixels, image, pixels);
    painter.restore();
}

} // namespace

MapView::MapView(const MapSources& sources, QWidget* parent)
    : QWidget(parent)
    , m_sources(sources)
    , m_tiles(sources.tiles)
    , m_compass(new MapCompass(this))
    , m_attribution(new MapAttribution(this)) {
    makeMapsAccessible();
    setObjectName(u"map"_s);
    setAccessibleName(tr("Map"));
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_AcceptTouchEvents);
    m_labels.setSources(sources.baseMap, sources.labels);
    m_frames.setTimerType(Qt::PreciseTimer);
    m_frames.setInterval(frameTime);
    m_rest.setSingleShot(true);
    m_rest.setInterval(restTime);
    m_inputClock.start();
    connect(&m_frames, &QTimer::timeout, this, &MapView::step);
    connect(&m_rest, &QTimer::timeout, this, &MapView::settle);
    connect(&m_tiles, &MapTileStore::tileArrived, this, [this] {
        update();
        m_frames.start();
    });
    connect(m_compass, &QAbstractButton::clicked, this, [this] {
        MapCamera north = destination();
        north.bearing = 0;
        north.pitch = 0;
        setCamera(north, MapMotion::animated);
    });
    connect(m_attribution, &QAbstractButton::clicked, this, [this] {
        if (const QUrl url = m_tiles.options().attributionUrl(); !url.isEmpty())
            QDesktopServices::openUrl(url);
    });
    if (m_tiles.options().attributionUrl().isEmpty())
        m_attribution->unsetCursor();
    takePalette();
}

MapView::~MapView() = default;

void MapView::setFeatures(const MapFeatures& features) {
    m_features = features;
    placeControls();
    update();
}

MapViewport MapView::viewport() const {
    return {1.0 * width(), 1.0 * height()};
}

MapProjection MapView::projection() const {
    return {m_camera, viewport()};
}

const MapCamera& MapView::destination() const {
    return m_flight ? m_flight->destination() : m_camera;
}

bool MapView::reducesMotion() const {
    return style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, this) == 0;
}

void MapView::setCamera(const MapCamera& camera, MapMotion motion) {
    m_pendingRegion.reset();
    const MapCamera bounded = MapCameras::bounded(camera, viewport());
    if (motion == MapMotion::animated && isVisible() && !reducesMotion())
        flyTo(bounded);
    else
        moveTo(bounded);
}

MapRegion MapView::region() const {
    if (m_pendingRegion)
        return *m_pendingRegion;
    const MapCamera& camera = destination();
    return {Mercator::unproject(camera.center),
            {MapCameras::latitudeDelta(camera, viewport()), MapCameras::longitudeDelta(camera, viewport())}};
}

void MapView::setRegion(const MapRegion& region, MapMotion motion) {
    if (!m_hasSize) {
        m_pendingRegion = region;
        return;
    }
    const bool keepsZoom = !m_pendingRegion && region.span == this->region().span;
    m_pendingRegion.reset();
    MapCamera camera = destination();
    camera.center = Mercator::project(region.center);
    if (!keepsZoom) {
        camera.zoom =
            MapCameras::zoomShowing(region.center, region.span.latitudeDelta, region.span.longitudeDelta, viewport());
    }
    setCamera(camera, motion);
}

void MapView::applyPendingRegion() {
    if (const auto region = std::exchange(m_pendingRegion, std::nullopt))
        setRegion(*region, MapMotion::immediate);
}

void MapView::moveTo(const MapCamera& camera) {
    halt();
    m_camera = camera;
    placePins();
    placeControls();
    update();
    m_rest.start();
}

void MapView::flyTo(const MapCamera& camera, std::optional<MapFlight::Duration> duration) {
    m_inertia.reset();
    m_flight = duration ? MapFlight(m_camera, camera, viewport(), *duration) : MapFlight(m_camera, camera, viewport());
    m_motionClock.start();
    m_frames.start();
}

void MapView::glide(QPointF velocity) {
    const MapInertia inertia(velocity);
    if (reducesMotion() || inertia.duration().count() == 0)
        return;
    m_inertia = inertia;
    m_glided = {};
    m_motionClock.start();
    m_frames.start();
}

void MapView::halt() {
    m_flight.reset();
    m_inertia.reset();
}

void MapView::step() {
    const MapFlight::Duration elapsed(static_cast<double>(m_motionClock.nsecsElapsed()) / 1e9);
    if (m_flight) {
        m_camera = m_flight->at(elapsed);
        if (elapsed >= m_flight->duration())
            m_flight.reset();
    } else if (m_inertia) {
        const QPointF offset = m_inertia->offsetAt(elapsed);
        const QPointF middle(width() / 2.0, height() / 2.0);
        m_camera = MapCameras::dragged(m_camera, viewport(), middle, middle + offset - m_glided);
        m_glided = offset;
        if (elapsed >= m_inertia->duration())
            m_inertia.reset();
    } else if (!m_tiles.isFading()) {
        m_frames.stop();
    }
    placePins();
    placeControls();
    update();
    m_rest.start();
}

void MapView::settle() {
    if (m_flight || m_inertia) {
        m_rest.start();
        return;
    }
    const QString text = description();
    if (accessibleDescription() == text)
        return;
    setAccessibleDescription(text);
    Q_EMIT settled();
}

void MapView::pointAtMiddle() {
    Q_EMIT clicked({width() / 2.0, height() / 2.0});
}

QString MapView::description() const {
    return coordinateText(Mercator::unproject(m_camera.center));
}

// ------------------------------------------------------------------------------------------------------------- pins

void MapView::addPin(std::shared_ptr<MapAnnotation> annotation, const MapMarkerStyle& style) {
    auto* const widget = new MapPin(*annotation, style, this);
    widget->setPalette(m_palette);
    m_pins.push_back({std::move(annotation), widget});
    placePins();
    update();
}

void MapView::removePin(const MapAnnotation* annotation) {
    std::erase_if(m_pins, [annotation](const Pin& pin) {
        const bool isIt = pin.annotation.get() == annotation;
        if (isIt)
            delete pin.widget;
        return isIt;
    });
    update();
}

void MapView::movePin(const MapAnnotation*) {
    placePins();
    update();
}

void MapView::placePins() {
    const MapProjection now = projection();
    for (const Pin& pin : m_pins) {
        const QPointF ground = now.ground(Mercator::project(pin.annotation->coordinate));
        if (now.isBeforeCamera(ground))
            pin.widget->standAt(now.shown(ground));
        else
            pin.widget->hide();
        pin.widget->describe(pin.annotation->coordinate);
    }
}

void MapView::placeControls() {
    m_compass->show(m_features.showsCompass ? m_camera.bearing : 0, m_features.showsCompass ? m_camera.pitch : 0,
                    m_palette);
    m_compass->move(width() - m_compass->width() - 8, 8);
    m_attribution->show(m_showsTiles ? m_tiles.options().attribution() : QString(), m_palette);
    m_attribution->move(width() - m_attribution->width() - 4, height() - m_attribution->height() - 4);
}

// --------------------------------------------------------------------------------------------------------- painting

void MapView::takePalette() {
    m_palette = MapPalette::forPalette(QGuiApplication::palette());
    m_labels.setLook(m_palette, font());
    m_tiles.setDark(m_palette.isDark);
    for (const Pin& pin : m_pins)
        pin.widget->setPalette(m_palette);
    placeControls();
    update();
}

void MapView::paintTiles(QPainter& painter, const MapProjection& now) {
    if (!m_tiles.isActive())
        return;
    m_tileZoom = MapTiles::zoomFor(m_camera, devicePixelRatioF(), m_tiles.options().highestZoom);
    const auto shown = MapTiles::visible(now, m_tileZoom, mostTiles);
    std::vector<MapTile> wanted;
    bool isAnyShown = false;
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (const ShownMapTile& one : shown) {
        if (std::ranges::find(wanted, one.tile) == wanted.end())
            wanted.push_back(one.tile);
        QRectF part(0, 0, 1, 1);
        MapTileStore::Picture picture = m_tiles.picture(one.tile);
        // Until it is there, or quite opaque, an earlier zoom's picture of the same land stands in.
        const auto draw = [&](const MapTileStore::Picture& drawn, const QRectF& source) {
            painter.setOpacity(drawn.opacity);
            paintTile(painter, now, *drawn.image, source,
                      {QPointF(MapTiles::corner(one).x, MapTiles::corner(one).y),
                       QSizeF(std::exp2(-one.tile.zoom), std::exp2(-one.tile.zoom))});
            painter.setOpacity(1);
            isAnyShown = true;
        };
        if (picture.image == nullptr || picture.opacity < 1) {
            for (int levels = 1; levels <= 4 && levels <= one.tile.zoom; ++levels) {
                const MapTile parent = MapTiles::ancestor(one.tile, levels);
                const MapTileStore::Picture stand = m_tiles.picture(parent);
                if (stand.image == nullptr)
                    continue;
                const double side = std::exp2(-levels);
                draw(stand, {(one.tile.column - (parent.column << levels)) * side,
                             (one.tile.row - (parent.row << levels)) * side, side, side});
                break;
            }
        }
        if (picture.image != nullptr)
            draw(picture, part);
    }
    // Whatever a flight passes over would be out of sight again before it came.
    if (m_flight || m_inertia || !isVisible())
        m_tiles.pause();
    else
        m_tiles.show(wanted);
    if (m_tiles.isFading() && !m_frames.isActive())
        m_frames.start();
    if (std::exchange(m_showsTiles, isAnyShown) != isAnyShown)
        QMetaObject::invokeMethod(this, &MapView::placeControls, Qt::QueuedConnection);
}

bool MapView::isCoveredByTile(const WorldPoint& place) const {
    if (!m_showsTiles)
        return false;
    const double across = std::exp2(m_tileZoom);
    const MapTile tile{m_tileZoom, static_cast<int>(Mercator::wrapped(place.x) * across),
                       static_cast<int>(place.y * across)};
    if (m_tiles.picture(tile).image != nullptr)
        return true;
    for (int levels = 1; levels <= 4 && levels <= tile.zoom; ++levels) {
        if (m_tiles.picture(MapTiles::ancestor(tile, levels)).image != nullptr)
            return true;
    }
    return false;
}

void MapView::paintMap(QPainter& painter) {
    const MapProjection now = projection();
    paintBaseMap(painter, m_sources.baseMap, now, m_palette);
    paintTiles(painter, now);
    std::vector<QRectF> reserved;
    for (const Pin& pin : m_pins)
        reserved.push_back(MapPin::roomAround(now.pointFor(pin.annotation->coordinate)));
    if (m_compass->isVisibleTo(this))
        reserved.push_back(m_compass->geometry());
    if (m_features.showsScale)
        reserved.emplace_back(0, height() - 26, longestScale + 60, 26);
    m_labels.paint(painter, now, reserved, [this](const WorldPoint& place) { return isCoveredByTile(place); });
    if (m_features.showsScale)
        paintScale(painter);
}

void MapView::paintScale(QPainter& painter) {
    const MapScale scale = MapScale::forCamera(m_camera, longestScale, unitsOf(locale()));
    const double left = 12;
    const double bottom = height() - 10;
    QPainterPath bar;
    bar.moveTo(left, bottom - 5);
    bar.lineTo(left, bottom);
    bar.lineTo(left + scale.length, bottom);
    bar.lineTo(left + scale.length, bottom - 5);
    QFont small = font();
    small.setPixelSize(11);
    QPainterPath text;
    text.addText(left + scale.length + 7, bottom + 1, small, scale.text);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor halo = m_palette.halo;
    halo.setAlpha(210);
    painter.strokePath(bar, QPen(halo, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.strokePath(text, QPen(halo, 3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.strokePath(bar, QPen(m_palette.text, 1.5));
    painter.fillPath(text, m_palette.text);
}

void MapView::paintFocus(QPainter& painter) {
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_showsCrosshair) {
        const QPointF middle(width() / 2.0, height() / 2.0);
        QPainterPath cross;
        for (const QPointF& way : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
            cross.moveTo(middle + way * 4);
            cross.lineTo(middle + way * 12);
        }
        painter.strokePath(cross, QPen(m_palette.halo, 4, Qt::SolidLine, Qt::RoundCap));
        painter.strokePath(cross, QPen(m_palette.accent, 2, Qt::SolidLine, Qt::RoundCap));
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(m_palette.accent, 2));
        painter.drawRoundedRect(rect().toRectF().adjusted(1.5, 1.5, -1.5, -1.5), 5, 5);
    }
}

void MapView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintMap(painter);
    paintFocus(painter);
}

// ------------------------------------------------------------------------------------------------------------ input

void MapView::resizeEvent(QResizeEvent*) {
    m_hasSize = !size().isEmpty();
    if (!m_hasSize)
        return;
    if (m_pendingRegion)
        applyPendingRegion();
    else
        moveTo(MapCameras::bounded(destination(), viewport()));
    placeControls();
}

void MapView::hideEvent(QHideEvent*) {
    m_tiles.pause();
}

void MapView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    const bool isLook = event->type() == QEvent::PaletteChange || event->type() == QEvent::ApplicationPaletteChange ||
                        event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange;
    if (isLook)
        takePalette();
}

void MapView::focusInEvent(QFocusEvent* event) {
    m_showsCrosshair = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason ||
                       event->reason() == Qt::ShortcutFocusReason;
    update();
}

void MapView::focusOutEvent(QFocusEvent*) {
    m_showsCrosshair = false;
    update();
}

void MapView::zoomBy(double levels, QPointF point) {
    if (m_features.isZoomEnabled)
        moveTo(MapCameras::zoomed(m_camera, viewport(), point, m_camera.zoom + levels));
}

void MapView::keyPressEvent(QKeyEvent* event) {
    const QPointF middle(width() / 2.0, height() / 2.0);
    const bool isShifted = event->modifiers().testFlag(Qt::ShiftModifier);
    const bool isPlain = !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    MapCamera wanted = destination();
    const auto pan = [&](double right, double down) {
        if (m_features.isScrollEnabled) {
            wanted = MapCameras::dragged(wanted, viewport(), middle,
                                         middle - QPointF(right * width(), down * height()) * keyWay);
        }
    };
    const auto turn = [&](double degrees, double tilt) {
        if (m_features.isRotateEnabled)
            wanted.bearing += degrees;
        if (m_features.isPitchEnabled)
            wanted.pitch += tilt;
    };
    const auto zoom = [&](double levels) {
        if (m_features.isZoomEnabled)
            wanted.zoom += levels;
    };
    if (!isPlain) {
        QWidget::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Left:
        isShifted ? turn(-clickTurn, 0) : pan(-1, 0);
        break;
    case Qt::Key_Right:
        isShifted ? turn(clickTurn, 0) : pan(1, 0);
        break;
    case Qt::Key_Up:
        isShifted ? turn(0, keyTilt) : pan(0, -1);
        break;
    case Qt::Key_Down:
        isShifted ? turn(0, -keyTilt) : pan(0, 1);
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoom(1);
        break;
    case Qt::Key_Minus:
    case Qt::Key_Underscore:
        zoom(-1);
        break;
    case Qt::Key_Home:
        wanted.bearing = 0;
        wanted.pitch = 0;
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (!event->isAutoRepeat())
            pointAtMiddle();
        return;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    m_showsCrosshair = true;
    wanted = MapCameras::bounded(wanted, viewport());
    if (reducesMotion())
        moveTo(wanted);
    else
        flyTo(wanted, quick);
}

void MapView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton && event->button() != Qt::RightButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_wheel.pressed();
    m_showsCrosshair = false;
    if (m_flight || m_inertia)
        moveTo(m_camera);
    const bool turns = event->button() == Qt::RightButton || event->modifiers().testFlag(Qt::ControlModifier);
    m_drag = turns ? Drag::turning : Drag::pressed;
    m_pressPoint = m_lastPoint = event->position();
    m_samples = {{m_inputClock.elapsed(), m_pressPoint}};
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
    const QPointF point = event->position();
    m_wheel.pointerMoved(event->globalPosition());
    const QPointF way = point - m_pressPoint;
    if (m_drag == Drag::pressed && std::hypot(way.x(), way.y()) >= clickSlack) {
        m_drag = Drag::moving;
        setCursor(Qt::ClosedHandCursor);
    }
    if (m_drag == Drag::moving && m_features.isScrollEnabled) {
        moveTo(MapCameras::dragged(m_camera, viewport(), m_lastPoint, point));
        m_samples.push_back({m_inputClock.elapsed(), point});
        while (m_samples.size() > 2 && m_samples.front().time < m_samples.back().time - velocityTime)
            m_samples.pop_front();
    } else if (m_drag == Drag::turning) {
        const QPointF step = point - m_lastPoint;
        MapCamera turned = m_camera;
        if (m_features.isRotateEnabled)
            turned.bearing -= step.x() * 180 / std::max(1, width());
        if (m_features.isPitchEnabled)
            turned.pitch -= step.y() * 90 / std::max(1, height());
        moveTo(MapCameras::bounded(turned, viewport()));
    }
    m_lastPoint = point;
}

QPointF MapView::velocityNow() const {
    if (m_samples.size() < 2)
        return {};
    const auto time = static_cast<double>(m_samples.back().time - m_samples.front().time);
    // Who holds the map still before letting go does not throw it.
    const bool isStale = m_inputClock.elapsed() - m_samples.back().time > velocityTime / 2;
    return isStale || time <= 0 ? QPointF() : (m_samples.back().point - m_samples.front().point) / time * 1000;
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
    const Drag drag = std::exchange(m_drag, Drag::none);
    unsetCursor();
    if (drag == Drag::moving && m_features.isScrollEnabled)
        glide(velocityNow());
    else if (drag == Drag::pressed && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        Q_EMIT clicked(event->position());
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_features.isZoomEnabled)
        return;
    const double levels = event->modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1;
    const MapCamera wanted = MapCameras::zoomed(m_camera, viewport(), event->position(), m_camera.zoom + levels);
    if (reducesMotion())
        moveTo(wanted);
    else
        flyTo(wanted, quick);
}

void MapView::wheelEvent(QWheelEvent* event) {
    const bool isModified = event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier);
    const std::chrono::milliseconds now(m_inputClock.elapsed());
    // A click leaves the focus here, long after the pointer has gone elsewhere; the keyboard is what counts.
    const bool hasKeyboard = hasFocus() && m_showsCrosshair;
    if (!m_features.isZoomEnabled || !m_wheel.takes(now, isModified, hasKeyboard)) {
        event->ignore();
        return;
    }
    const double turns = event->angleDelta().y() / 120.0;
    const MapCamera wanted =
        MapCameras::zoomed(m_camera, viewport(), event->position(), destination().zoom + turns * wheelLevels);
    // Fine wheels and touchpads are smooth by themselves.
    if (reducesMotion() || std::abs(turns) < 0.5)
        moveTo(wanted);
    else
        flyTo(wanted, quick);
    event->accept();
}

void MapView::leaveEvent(QEvent*) {
    m_wheel.pointerLeft();
}

void MapView::contextMenuEvent(QContextMenuEvent* event) {
    // The right button turns the map.
    event->accept();
}

bool MapView::handleGesture(const QNativeGestureEvent& gesture) {
    switch (gesture.gestureType()) {
    case Qt::ZoomNativeGesture:
        zoomBy(std::log2(std::max(0.1, 1 + gesture.value())), gesture.position());
        return true;
    case Qt::RotateNativeGesture:
        if (m_features.isRotateEnabled)
            moveTo(MapCameras::turned(m_camera, viewport(), gesture.position(), m_camera.bearing - gesture.value()));
        return true;
    case Qt::SmartZoomNativeGesture:
        zoomBy(1, gesture.position());
        return true;
    case Qt::BeginNativeGesture:
    case Qt::EndNativeGesture:
        return true;
    default:
        return false;
    }
}

bool MapView::handleTouch(const QTouchEvent& touch) {
    if (touch.points().size() != 2) {
        m_touchCamera.reset();
        // One finger is what the system makes a mouse of.
        return touch.points().size() > 2;
    }
    const QPointF first = touch.points()[0].position();
    const QPointF second = touch.points()[1].position();
    const QPointF middle = (first + second) / 2;
    const QPointF way = second - first;
    if (!m_touchCamera || touch.touchPointStates().testFlag(QEventPoint::Pressed)) {
        m_drag = Drag::none;
        m_touchCamera = m_camera;
        m_touchMiddle = middle;
        m_touchWay = way;
        return true;
    }
    const double before = std::hypot(m_touchWay.x(), m_touchWay.y());
    const double after = std::hypot(way.x(), way.y());
    MapCamera camera = *m_touchCamera;
    if (m_features.isScrollEnabled)
        camera = MapCameras::dragged(camera, viewport(), m_touchMiddle, middle);
    if (m_features.isZoomEnabled && before > 1 && after > 1)
        camera = MapCameras::zoomed(camera, viewport(), middle, camera.zoom + std::log2(after / before));
    if (m_features.isRotateEnabled) {
        const double turn = std::atan2(way.y(), way.x()) - std::atan2(m_touchWay.y(), m_touchWay.x());
        camera = MapCameras::turned(camera, viewport(), middle, camera.bearing - turn * 180 / std::numbers::pi);
    }
    moveTo(camera);
    return true;
}

bool MapView::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::NativeGesture:
        if (handleGesture(static_cast<QNativeGestureEvent&>(*event)))
            return true;
        break;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        if (handleTouch(static_cast<QTouchEvent&>(*event)))
            return true;
        break;
    case QEvent::TouchCancel:
        m_touchCamera.reset();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

} // namespace corvanta
