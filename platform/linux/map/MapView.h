// SPDX-License-Identifier: MIT
#pragma once

#include "MapControls.h"
#include "MapInput.h"
#include "MapLabelPainter.h"
#include "MapPalette.h"
#include "MapSurface.h"
#include "MapTilePainter.h"
#include "MapTileStore.h"
#include "map/BaseMap.h"
#include "map/MapCamera.h"
#include "map/MapFlight.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>

#include <memory>
#include <optional>
#include <vector>

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
class MapView final : public QWidget, private MovableMap {
    Q_OBJECT

public:
    explicit MapView(const MapSources& sources, QWidget* parent = nullptr);
    ~MapView() override;

    void setFeatures(const MapFeatures& features);

    /// Where the map is, or is going to when it moves by itself.
    [[nodiscard]] const MapCamera& destination() const override;

    [[nodiscard]] const MapCamera& camera() const override { return m_camera; }

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
    void pointAtMiddle() override;

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
    struct Pin {
        std::shared_ptr<MapAnnotation> annotation;
        MapPin* widget;
    };

    [[nodiscard]] const MapFeatures& features() const override { return m_features; }

    [[nodiscard]] MapViewport viewport() const override;
    void moveTo(const MapCamera& camera) override;
    void approach(const MapCamera& camera) override;
    void glide(QPointF velocity) override;
    void halt() override;
    void pointAt(QPointF point) override;

    [[nodiscard]] bool reducesMotion() const;
    void flyTo(const MapCamera& camera, std::optional<MapFlight::Duration> duration = std::nullopt);
    void step();
    void settle();
    void applyPendingRegion();
    void takePalette();
    void placePins();
    void placeControls();
    void paintTiles(QPainter& painter, const MapProjection& projection);

    MapSources m_sources;
    MapFeatures m_features;
    MapCamera m_camera;
    MapPalette m_palette = MapPalette::light();
    MapLabelPainter m_labels;
    MapTileStore m_tiles;
    MapTilePainter m_tilePainter;

    bool m_hasSize = false;
    std::optional<MapRegion> m_pendingRegion;
    std::optional<MapFlight> m_flight;
    std::optional<MapInertia> m_inertia;
    QPointF m_glided;
    QElapsedTimer m_motionClock;
    QTimer m_frames;
    QTimer m_rest;

    MapInput m_input;
    std::vector<Pin> m_pins;
    MapCompass* m_compass;
    MapAttribution* m_attribution;
};

} // namespace corvanta
