// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"
#include "map/Mercator.h"

#include <QLineF>
#include <QPointF>

#include <array>

namespace corvanta {

/// The size of what a map is shown in, in device-independent pixels.
struct MapViewport {
    double width = 0;
    double height = 0;

    bool operator==(const MapViewport&) const = default;
};

/// From where the earth is looked at.
struct MapCamera {
    WorldPoint center;
    /// The whole world is 256 · 2^zoom pixels wide.
    double zoom = 0;
    /// The direction at the top of the map, in degrees clockwise from north, from -180 to 180.
    double bearing = 0;
    /// The tilt in degrees, from 0, which is straight from above, to `MapCameras::highestPitch`.
    double pitch = 0;

    bool operator==(const MapCamera&) const = default;
};

/// The way between points of the viewport and places, for one camera.
class MapProjection {
public:
    MapProjection(const MapCamera& camera, const MapViewport& viewport);

    /// Pixels to the right of and below the centre on the ground, turned with the map but not tilted. Uses that one of
    /// the places around the earth that is nearest to the centre.
    [[nodiscard]] QPointF ground(const WorldPoint& place) const;
    /// The same without looking for the nearest one.
    [[nodiscard]] QPointF groundUnwrapped(const WorldPoint& place) const;
    [[nodiscard]] WorldPoint fromGround(QPointF ground) const;

    /// Where a point of the ground is shown. Meant for what lies before the camera, see `isBeforeCamera`.
    [[nodiscard]] QPointF shown(QPointF ground) const;
    [[nodiscard]] QPointF groundAt(QPointF point) const;
    [[nodiscard]] bool isBeforeCamera(QPointF ground) const;
    /// The part of a line on the ground that lies before the camera; null when there is none.
    [[nodiscard]] QLineF beforeCamera(const QLineF& ground) const;

    [[nodiscard]] QPointF pointFor(const Coordinate& coordinate) const;
    [[nodiscard]] Coordinate coordinateAt(QPointF point) const;
    /// x is not brought between 0 and 1, so that it is near the camera's.
    [[nodiscard]] WorldPoint placeAt(QPointF point) const;

    /// What of the ground is seen: top left, top right, bottom right, bottom left.
    [[nodiscard]] std::array<QPointF, 4> groundCorners() const;

    /// The width of the world in pixels.
    [[nodiscard]] double scale() const { return m_scale; }

    [[nodiscard]] const MapCamera& camera() const { return m_camera; }

    [[nodiscard]] const MapViewport& viewport() const { return m_viewport; }

    [[nodiscard]] bool isFlat() const { return m_sinePitch == 0; }

private:
    MapCamera m_camera;
    MapViewport m_viewport;
    double m_scale;
    double m_sineBearing;
    double m_cosineBearing;
    double m_sinePitch;
    double m_cosinePitch;
    /// How far the camera is from the centre, in pixels.
    double m_distance;
};

/// What can be done to a camera. All of it is pure.
namespace MapCameras {

constexpr double highestZoom = 20;
constexpr double highestPitch = 60;

/// The nearest camera that shows nothing but the world: neither too far away nor beyond the northern and southern edge.
[[nodiscard]] MapCamera bounded(const MapCamera& camera, const MapViewport& viewport);

/// The lowest zoom at which the world fills the viewport's height.
[[nodiscard]] double lowestZoom(const MapViewport& viewport);

/// The place under `point` stays there.
[[nodiscard]] MapCamera zoomed(const MapCamera& camera, const MapViewport& viewport, QPointF point, double zoom);
[[nodiscard]] MapCamera turned(const MapCamera& camera, const MapViewport& viewport, QPointF point, double bearing);

/// The place under `from` comes under `to`.
[[nodiscard]] MapCamera dragged(const MapCamera& camera, const MapViewport& viewport, QPointF from, QPointF to);

/// The degrees of latitude and longitude that a map of this centre and zoom shows with north up and no tilt.
[[nodiscard]] double latitudeDelta(const MapCamera& camera, const MapViewport& viewport);
[[nodiscard]] double longitudeDelta(const MapCamera& camera, const MapViewport& viewport);

/// The highest zoom at which so many degrees around the centre are shown.
[[nodiscard]] double zoomShowing(const Coordinate& center, double latitudeDelta, double longitudeDelta,
                                 const MapViewport& viewport);

/// The same direction, from -180 (excluded) to 180.
[[nodiscard]] double normalizedBearing(double degrees);

} // namespace MapCameras

} // namespace corvanta
