// SPDX-License-Identifier: MIT
#pragma once

#include "MapSurface.h"
#include "map/MapCamera.h"
#include "map/WheelClaim.h"

#include <QElapsedTimer>
#include <QPointF>

#include <deque>
#include <optional>

class QKeyEvent;
class QMouseEvent;
class QNativeGestureEvent;
class QTouchEvent;
class QWheelEvent;

namespace corvanta {

/// A map, to who moves it by hand.
class MovableMap {
public:
    virtual ~MovableMap() = default;

    [[nodiscard]] virtual const MapFeatures& features() const = 0;
    [[nodiscard]] virtual MapViewport viewport() const = 0;
    [[nodiscard]] virtual const MapCamera& camera() const = 0;
    /// Where it is going to when it moves by itself, else where it is.
    [[nodiscard]] virtual const MapCamera& destination() const = 0;

    /// Is there at once and moves no more by itself.
    virtual void moveTo(const MapCamera& camera) = 0;
    /// Goes there as quickly as a hand would; at once for who wants no motion.
    virtual void approach(const MapCamera& camera) = 0;
    /// Goes on by itself, slower and slower; in pixels a second.
    virtual void glide(QPointF velocity) = 0;
    /// Stays where it is while it moves by itself.
    virtual void halt() = 0;
    virtual void pointAt(QPointF point) = 0;
    virtual void pointAtMiddle() = 0;
};

/// What keys, mouse, wheel and fingers do to a map.
///
/// Each of the functions that answer says whether the event was for the map.
class MapInput {
public:
    /// The map outlives this.
    explicit MapInput(MovableMap& map);

    void takeFocus(Qt::FocusReason reason);
    void loseFocus();

    /// Whether keys are what the map is moved by, so that it shows where they point.
    [[nodiscard]] bool isByKeys() const { return m_isByKeys; }

    /// Whether the map is being dragged along.
    [[nodiscard]] bool isDragging() const { return m_drag == Drag::moving; }

    [[nodiscard]] bool pressKey(const QKeyEvent& event);
    [[nodiscard]] bool press(const QMouseEvent& event);
    void movePointer(const QMouseEvent& event);
    void release(const QMouseEvent& event);
    void doubleClick(const QMouseEvent& event);
    void leave();
    [[nodiscard]] bool turnWheel(const QWheelEvent& event, bool hasFocus);
    [[nodiscard]] bool gesture(const QNativeGestureEvent& gesture);
    [[nodiscard]] bool touch(const QTouchEvent& touch);

    void cancelTouch() { m_touch.reset(); }

private:
    enum class Drag { none, pressed, moving, turning };

    struct Sample {
        qint64 time;
        QPointF point;
    };

    /// The camera and both fingers when they came down.
    struct Touch {
        MapCamera camera;
        QPointF middle;
        QPointF way;
    };

    void zoomBy(double levels, QPointF point);
    [[nodiscard]] QPointF velocityNow() const;

    MovableMap& m_map;
    bool m_isByKeys = false;
    Drag m_drag = Drag::none;
    QPointF m_pressPoint;
    QPointF m_lastPoint;
    std::deque<Sample> m_samples;
    QElapsedTimer m_clock;
    WheelClaim m_wheel;
    std::optional<Touch> m_touch;
};

} // namespace corvanta
