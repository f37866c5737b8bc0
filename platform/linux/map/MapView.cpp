// SPDX-License-Identifier: MIT
#include "MapView.h"

#include "BaseMapPainter.h"
#include "MapAccessibility.h"
#include "MapMarks.h"
#include "MapText.h"

#include <QAccessible>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QNativeGestureEvent>
#include <QPainter>
#include <QStyle>
#include <QTouchEvent>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto frameTime = 16ms;
/// How long a map has to lie still before assistive technology hears of where it is.
constexpr auto restTime = 120ms;
constexpr MapFlight::Duration quick{0.22};

} // namespace

MapView::MapView(const MapSources& sources, QWidget* parent)
    : QWidget(parent)
    , m_sources(sources)
    , m_tiles(sources.tiles)
    , m_tilePainter(m_tiles)
    , m_input(*this)
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
    m_flight.reset();
    m_inertia.reset();
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
    if (m_flight || m_inertia)
        moveTo(m_camera);
}

void MapView::approach(const MapCamera& camera) {
    if (reducesMotion())
        moveTo(camera);
    else
        flyTo(camera, quick);
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

void MapView::pointAt(QPointF point) {
    Q_EMIT clicked(point);
}

void MapView::pointAtMiddle() {
    pointAt({width() / 2.0, height() / 2.0});
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
    m_attribution->show(m_tilePainter.isShowing() ? m_tiles.options().attribution() : QString(), m_palette);
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
    const bool wasShowing = m_tilePainter.isShowing();
    const std::vector<MapTile> seen = m_tilePainter.paint(painter, now, m_camera, devicePixelRatioF());
    // Whatever a flight passes over would be out of sight again before it came.
    if (m_flight || m_inertia || !isVisible())
        m_tiles.pause();
    else
        m_tiles.show(seen);
    if (m_tiles.isFading() && !m_frames.isActive())
        m_frames.start();
    if (m_tilePainter.isShowing() != wasShowing)
        QMetaObject::invokeMethod(this, &MapView::placeControls, Qt::QueuedConnection);
}

void MapView::paintMap(QPainter& painter) {
    const MapProjection now = projection();
    paintBaseMap(painter, m_sources.baseMap, now, m_palette);
    paintTiles(painter, now);
    std::vector<QRectF> reserved;
    reserved.reserve(m_pins.size() + 2);
    for (const Pin& pin : m_pins)
        reserved.push_back(MapPin::roomAround(now.pointFor(pin.annotation->coordinate)));
    if (m_compass->isVisibleTo(this))
        reserved.push_back(m_compass->geometry());
    if (m_features.showsScale)
        reserved.push_back(roomOfMapScale(rect().toRectF()));
    m_labels.paint(painter, now, reserved, [this](const WorldPoint& place) { return m_tilePainter.covers(place); });
    if (m_features.showsScale)
        paintMapScale(painter, rect().toRectF(), m_camera, m_palette, font(), locale());
}

void MapView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintMap(painter);
    if (m_input.isByKeys())
        paintMapCrosshair(painter, rect().toRectF(), m_palette);
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
    m_input.takeFocus(event->reason());
    update();
}

void MapView::focusOutEvent(QFocusEvent*) {
    m_input.loseFocus();
    update();
}

void MapView::keyPressEvent(QKeyEvent* event) {
    if (!m_input.pressKey(*event))
        QWidget::keyPressEvent(event);
}

void MapView::mousePressEvent(QMouseEvent* event) {
    if (!m_input.press(*event))
        QWidget::mousePressEvent(event);
}

void MapView::mouseMoveEvent(QMouseEvent* event) {
    m_input.movePointer(*event);
    if (m_input.isDragging())
        setCursor(Qt::ClosedHandCursor);
}

void MapView::mouseReleaseEvent(QMouseEvent* event) {
    unsetCursor();
    m_input.release(*event);
}

void MapView::mouseDoubleClickEvent(QMouseEvent* event) {
    m_input.doubleClick(*event);
}

void MapView::wheelEvent(QWheelEvent* event) {
    event->setAccepted(m_input.turnWheel(*event, hasFocus()));
}

void MapView::leaveEvent(QEvent*) {
    m_input.leave();
}

void MapView::contextMenuEvent(QContextMenuEvent* event) {
    // The right button turns the map.
    event->accept();
}

bool MapView::event(QEvent* event) {
    switch (event->type()) {
    case QEvent::NativeGesture:
        if (m_input.gesture(static_cast<QNativeGestureEvent&>(*event)))
            return true;
        break;
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        if (m_input.touch(static_cast<QTouchEvent&>(*event)))
            return true;
        break;
    case QEvent::TouchCancel:
        m_input.cancelTouch();
        break;
    default:
        break;
    }
    return QWidget::event(event);
}

} // namespace corvanta
