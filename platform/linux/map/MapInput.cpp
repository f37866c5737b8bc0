// SPDX-License-Identifier: MIT
#include "MapInput.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QTouchEvent>
#include <QWheelEvent>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>
#include <utility>

namespace corvanta {

namespace {

constexpr double clickSlack = 4;
constexpr double keyTurn = 15;
constexpr double keyTilt = 10;
/// Of the map's width or height.
constexpr double keyWay = 0.25;
constexpr double wheelLevels = 0.5;
/// The last milliseconds of a drag, which say how fast the map was let go.
constexpr qint64 velocityTime = 90;

} // namespace

MapInput::MapInput(MovableMap& map)
    : m_map(map) {
    m_clock.start();
}

void MapInput::takeFocus(Qt::FocusReason reason) {
    m_isByKeys = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason || reason == Qt::ShortcutFocusReason;
}

void MapInput::loseFocus() {
    m_isByKeys = false;
}

void MapInput::zoomBy(double levels, QPointF point) {
    if (m_map.features().isZoomEnabled) {
        m_map.moveTo(MapCameras::zoomed(m_map.camera(), m_map.viewport(), point, m_map.camera().zoom + levels));
    }
}

bool MapInput::pressKey(const QKeyEvent& event) {
    if (event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier))
        return false;
    const MapFeatures& features = m_map.features();
    const MapViewport viewport = m_map.viewport();
    const QPointF middle(viewport.width / 2, viewport.height / 2);
    const bool isShifted = event.modifiers().testFlag(Qt::ShiftModifier);
    MapCamera wanted = m_map.destination();
    const auto pan = [&](double right, double down) {
        if (features.isScrollEnabled) {
            const QPointF way(right * viewport.width, down * viewport.height);
            wanted = MapCameras::dragged(wanted, viewport, middle, middle - way * keyWay);
        }
    };
    const auto turn = [&](double degrees, double tilt) {
        if (features.isRotateEnabled)
            wanted.bearing += degrees;
        if (features.isPitchEnabled)
            wanted.pitch += tilt;
    };
    const auto zoom = [&](double levels) {
        if (features.isZoomEnabled)
            wanted.zoom += levels;
    };
    switch (event.key()) {
    case Qt::Key_Left:
        isShifted ? turn(-keyTurn, 0) : pan(-1, 0);
        break;
    case Qt::Key_Right:
        isShifted ? turn(keyTurn, 0) : pan(1, 0);
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
        if (!event.isAutoRepeat())
            m_map.pointAtMiddle();
        return true;
    default:
        return false;
    }
    m_isByKeys = true;
    m_map.approach(MapCameras::bounded(wanted, viewport));
    return true;
}

bool MapInput::press(const QMouseEvent& event) {
    if (event.button() != Qt::LeftButton && event.button() != Qt::RightButton)
        return false;
    m_wheel.pressed();
    m_isByKeys = false;
    m_map.halt();
    const bool turns = event.button() == Qt::RightButton || event.modifiers().testFlag(Qt::ControlModifier);
    m_drag = turns ? Drag::turning : Drag::pressed;
    m_pressPoint = m_lastPoint = event.position();
    m_samples = {{m_clock.elapsed(), m_pressPoint}};
    return true;
}

void MapInput::movePointer(const QMouseEvent& event) {
    const MapFeatures& features = m_map.features();
    const MapViewport viewport = m_map.viewport();
    const QPointF point = event.position();
    m_wheel.pointerMoved(event.globalPosition());
    const QPointF way = point - m_pressPoint;
    if (m_drag == Drag::pressed && std::hypot(way.x(), way.y()) >= clickSlack)
        m_drag = Drag::moving;
    if (m_drag == Drag::moving && features.isScrollEnabled) {
        m_map.moveTo(MapCameras::dragged(m_map.camera(), viewport, m_lastPoint, point));
        m_samples.push_back({m_clock.elapsed(), point});
        while (m_samples.size() > 2 && m_samples.front().time < m_samples.back().time - velocityTime)
            m_samples.pop_front();
    } else if (m_drag == Drag::turning) {
        const QPointF step = point - m_lastPoint;
        MapCamera turned = m_map.camera();
        if (features.isRotateEnabled)
            turned.bearing -= step.x() * 180 / std::max(1.0, viewport.width);
        if (features.isPitchEnabled)
            turned.pitch -= step.y() * 90 / std::max(1.0, viewport.height);
        m_map.moveTo(MapCameras::bounded(turned, viewport));
    }
    m_lastPoint = point;
}

QPointF MapInput::velocityNow() const {
    if (m_samples.size() < 2)
        return {};
    const auto time = static_cast<double>(m_samples.back().time - m_samples.front().time);
    // Who holds the map still before letting go does not throw it.
    const bool isStale = m_clock.elapsed() - m_samples.back().time > velocityTime / 2;
    return isStale || time <= 0 ? QPointF() : (m_samples.back().point - m_samples.front().point) / time * 1000;
}

void MapInput::release(const QMouseEvent& event) {
    const Drag drag = std::exchange(m_drag, Drag::none);
    const MapViewport viewport = m_map.viewport();
    if (drag == Drag::moving && m_map.features().isScrollEnabled)
        m_map.glide(velocityNow());
    else if (drag == Drag::pressed && event.button() == Qt::LeftButton &&
             QRectF(0, 0, viewport.width, viewport.height).contains(event.position()))
        m_map.pointAt(event.position());
}

void MapInput::doubleClick(const QMouseEvent& event) {
    if (event.button() != Qt::LeftButton || !m_map.features().isZoomEnabled)
        return;
    const double levels = event.modifiers().testFlag(Qt::ShiftModifier) ? -1 : 1;
    m_map.approach(
        MapCameras::zoomed(m_map.camera(), m_map.viewport(), event.position(), m_map.camera().zoom + levels));
}

void MapInput::leave() {
    m_wheel.pointerLeft();
}

bool MapInput::turnWheel(const QWheelEvent& event, bool hasFocus) {
    const bool isModified = event.modifiers() & (Qt::ControlModifier | Qt::MetaModifier);
    const std::chrono::milliseconds now(m_clock.elapsed());
    // A click leaves the focus here, long after the pointer has gone elsewhere; the keyboard is what counts.
    if (!m_map.features().isZoomEnabled || !m_wheel.takes(now, isModified, hasFocus && m_isByKeys))
        return false;
    const double turns = event.angleDelta().y() / 120.0;
    const MapCamera wanted = MapCameras::zoomed(m_map.camera(), m_map.viewport(), event.position(),
                                                m_map.destination().zoom + turns * wheelLevels);
    // Fine wheels and touchpads are smooth by themselves.
    if (std::abs(turns) < 0.5)
        m_map.moveTo(wanted);
    else
        m_map.approach(wanted);
    return true;
}

bool MapInput::gesture(const QNativeGestureEvent& gesture) {
    switch (gesture.gestureType()) {
    case Qt::ZoomNativeGesture:
        zoomBy(std::log2(std::max(0.1, 1 + gesture.value())), gesture.position());
        return true;
    case Qt::RotateNativeGesture:
        if (m_map.features().isRotateEnabled) {
            m_map.moveTo(MapCameras::turned(m_map.camera(), m_map.viewport(), gesture.position(),
                                            m_map.camera().bearing - gesture.value()));
        }
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

bool MapInput::touch(const QTouchEvent& touch) {
    if (touch.points().size() != 2) {
        m_touch.reset();
        // One finger is what the system makes a mouse of.
        return touch.points().size() > 2;
    }
    const QPointF first = touch.points()[0].position();
    const QPointF second = touch.points()[1].position();
    const QPointF middle = (first + second) / 2;
    const QPointF way = second - first;
    if (!m_touch || touch.touchPointStates().testFlag(QEventPoint::Pressed)) {
        m_drag = Drag::none;
        m_touch = Touch{m_map.camera(), middle, way};
        return true;
    }
    const MapFeatures& features = m_map.features();
    const MapViewport viewport = m_map.viewport();
    const double before = std::hypot(m_touch->way.x(), m_touch->way.y());
    const double after = std::hypot(way.x(), way.y());
    MapCamera camera = m_touch->camera;
    if (features.isScrollEnabled)
        camera = MapCameras::dragged(camera, viewport, m_touch->middle, middle);
    if (features.isZoomEnabled && before > 1 && after > 1)
        camera = MapCameras::zoomed(camera, viewport, middle, camera.zoom + std::log2(after / before));
    if (features.isRotateEnabled) {
        const double turn = std::atan2(way.y(), way.x()) - std::atan2(m_touch->way.y(), m_touch->way.x());
        camera = MapCameras::turned(camera, viewport, middle, camera.bearing - turn * 180 / std::numbers::pi);
    }
    m_map.moveTo(camera);
    return true;
}

} // namespace corvanta
