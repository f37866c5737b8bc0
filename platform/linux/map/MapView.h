// SPDX-License-Identifier: MIT
#pragma once

#include "MapControls.h"
#include "MapLabelPainter.h"
#include "MapPalette.h"
#include "MapSurface.h"
#include "MapTileStore.h"
#include "map/BaseMap.h"
#include "map/MapCamera.h"
#include "map/MapFlight.h"
#include "map/WheelClaim.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <deque>
#include <memory>
#include <optional>
#include <vector>

class QNativeGestureEvent;
class QTouchEvent;

namespace corvanta {

/// What all maps of the program share. Everything in it may be null and outlives the maps.
struct MapSources {
    const BaseMap* baseMap = nullptr;
    const MapLabelSource* labels = nullptr;
    MapTileOptions tiles;
};

/// A map to look at and to point on.
///
/// Dragging moves it, the wheel zooms about the pointer, a double click zooms in; dragging with the right button or
/// with Control turns and tilts it; two fingers do all of that at once. By keys: arrows move it, with Shift they turn
/// and tilt it, + and - zoom, Home turns it north, Return and Space point at its middle.
class MapView final : public QWidget {
    Q_OBJECT

public:
    explicit MapView(const MapSources& sources, QWidget* parent = nullptr);
    ~MapView() override;

    void setFeatures(const MapFeatures& features);

    /// Where the map is, or is going to when it moves by itself.
    [[nodiscard]] const MapCamera& destination() const;

    [[nodiscard]] const MapCamera& camera() const { return m_camera; }

    [[nodiscard]] MapProjection projection() const;

    void setCamera(const MapCamera& camera, MapMotion motion);

    [[nodiscard]] MapRegion region() const;
    /// See MapSurface::setRegion. Kept for later while the map has no size.
    void setRegion(const MapRegion& region, MapMotion motion);

    void addPin(std::shared_ptr<MapAnnotation> annotation, const MapMarkerStyle& style);
    void removePin(const MapAnnotation* annotation);
    void movePin(const MapAnnotation* annotation);

    /// As assistive technology and tests read it: the middle of the map, "41.3874, 2.1686".
    [[nodiscard]] QString description() const;

    /// The same as a click there.
    void pointAtMiddle();

    /// Draws a frame with everything but what lies on the map.
    void paintMap(QPainter& painter);

    [[nodiscard]] const MapLabelPainter& labels() const { return m_labels; }

    [[nodiscard]] MapTileStore& tiles() { return m_tiles; }

    [[nodiscard]] QSize sizeHint() const override { return {398, 250}; }

Q_SIGNALS:
    /// A press and its release in one place.
    void clicked(QPointF point);
    /// The map has come to rest somewhere else.
    void settled();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    enum class Drag { none, pressed, moving, turning };

    struct Pin {
        std::shared_ptr<MapAnnotation> annotation;
        MapPin* widget;
    };

    struct Sample {
        qint64 time;
        QPointF point;
    };

    [[nodiscard]] MapViewport viewport() const;
    [[nodiscard]] bool reducesMotion() const;
    void moveTo(const MapCamera& camera);
    void flyTo(const MapCamera& camera, std::optional<MapFlight::Duration> duration = std::nullopt);
    void glide(QPointF velocity);
    void halt();
    void step();
    void settle();
    void applyPendingRegion();
    void takePalette();
    void placePins();
    void placeControls();
    void zoomBy(double levels, QPointF point);
    [[nodiscard]] QPointF velocityNow() const;
    [[nodiscard]] bool handleGesture(const QNativeGestureEvent& gesture);
    [[nodiscard]] bool handleTouch(const QTouchEvent& touch);
    void paintTiles(QPainter& painter, const MapProjection& projection);
    void paintScale(QPainter& painter);
    void paintFocus(QPainter& painter);
    [[nodiscard]] bool isCoveredByTile(const WorldPoint& place) const;

    MapSources m_sources;
    MapFeatures m_features;
    MapCamera m_camera;
    MapPalette m_palette = MapPalette::light();
    MapLabelPainter m_labels;
    MapTileStore m_tiles;
    int m_tileZoom = 0;
    bool m_showsTiles = false;

    bool m_hasSize = false;
    std::optional<MapRegion> m_pendingRegion;
    std::optional<MapFlight> m_flight;
    std::optional<MapInertia> m_inertia;
    QPointF m_glided;
    QElapsedTimer m_motionClock;
    QTimer m_frames;
    QTimer m_rest;

    Drag m_drag = Drag::none;
    QPointF m_pressPoint;
    QPointF m_lastPoint;
    std::deque<Sample> m_samples;
    QElapsedTimer m_inputClock;
    WheelClaim m_wheel;
    /// The camera and both fingers when they came down.
    std::optional<MapCamera> m_touchCamera;
    QPointF m_touchMiddle;
    QPointF m_touchWay;

    bool m_showsCrosshair = false;
    std::vector<Pin> m_pins;
    MapCompass* m_compass;
    MapAttribution* m_attribution;
};

} // namespace corvanta
