// SPDX-License-Identifier: MIT
#include "map/MapCamera.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvanta {

namespace {

constexpr double tileSize = 256;
/// The camera's distance in heights of the viewport. With it the horizon stays out of sight at every pitch allowed.
constexpr double distanceInHeights = 1.5;
/// What is nearer to the camera than this part of its distance counts as behind it.
constexpr double nearPlane = 0.01;

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

double scaleOf(double zoom) {
    return tileSize * std::exp2(zoom);
}

} // namespace

MapProjection::MapProjection(const MapCamera& camera, const MapViewport& viewport)
    : m_camera(camera)
    , m_viewport(viewport)
    , m_scale(scaleOf(camera.zoom))
    , m_sineBearing(std::sin(radians(camera.bearing)))
    , m_cosineBearing(std::cos(radians(camera.bearing)))
    , m_sinePitch(std::sin(radians(camera.pitch)))
    , m_cosinePitch(std::cos(radians(camera.pitch)))
    , m_distance(distanceInHeights * std::max(1.0, viewport.height)) {}

QPointF MapProjection::ground(const WorldPoint& place) const {
    const double x = m_camera.center.x + Mercator::eastwards(m_camera.center.x, place.x);
    return groundUnwrapped({x, place.y});
}

QPointF MapProjection::groundUnwrapped(const WorldPoint& place) const {
    const double east = (place.x - m_camera.center.x) * m_scale;
    const double south = (place.y - m_camera.center.y) * m_scale;
    return {east * m_cosineBearing + south * m_sineBearing, south * m_cosineBearing - east * m_sineBearing};
}

WorldPoint MapProjection::fromGround(QPointF ground) const {
    const double east = ground.x() * m_cosineBearing - ground.y() * m_sineBearing;
    const double south = ground.y() * m_cosineBearing + ground.x() * m_sineBearing;
    return {m_camera.center.x + east / m_scale, m_camera.center.y + south / m_scale};
}

QPointF MapProjection::shown(QPointF ground) const {
    const double nearness = m_distance / (m_distance - ground.y() * m_sinePitch);
    return {m_viewport.width / 2 + ground.x() * nearness,
            m_viewport.height / 2 + ground.y() * m_cosinePitch * nearness};
}

QPointF MapProjection::groundAt(QPointF point) const {
    const double right = point.x() - m_viewport.width / 2;
    const double down = point.y() - m_viewport.height / 2;
    const double y = down * m_distance / (m_cosinePitch * m_distance + down * m_sinePitch);
    return {right * (m_distance - y * m_sinePitch) / m_distance, y};
}

bool MapProjection::isBeforeCamera(QPointF ground) const {
    return m_distance - ground.y() * m_sinePitch > m_distance * nearPlane;
}

QLineF MapProjection::beforeCamera(const QLineF& ground) const {
    if (isBeforeCamera(ground.p1()) && isBeforeCamera(ground.p2()))
        return ground;
    if (!isBeforeCamera(ground.p1()) && !isBeforeCamera(ground.p2()))
        return {};
    // Somewhat before the nearest that counts as before the camera, so that the end found does count.
    const double nearest = m_distance * (1 - 2 * nearPlane) / m_sinePitch;
    const double part = std::clamp((nearest - ground.y1()) / ground.dy(), 0.0, 1.0);
    const QPointF end = ground.pointAt(part);
    return isBeforeCamera(ground.p1()) ? QLineF(ground.p1(), end) : QLineF(end, ground.p2());
}

QPointF MapProjection::pointFor(const Coordinate& coordinate) const {
    return shown(ground(Mercator::project(coordinate)));
}

WorldPoint MapProjection::placeAt(QPointF point) const {
    return fromGround(groundAt(point));
}

Coordinate MapProjection::coordinateAt(QPointF point) const {
    return Mercator::unproject(placeAt(point));
}

std::array<QPointF, 4> MapProjection::groundCorners() const {
    return {groundAt({0, 0}), groundAt({m_viewport.width, 0}), groundAt({m_viewport.width, m_viewport.height}),
            groundAt({0, m_viewport.height})};
}

namespace MapCameras {

double lowestZoom(const MapViewport& viewport) {
    return std::max(0.0, std::log2(std::max(1.0, viewport.height) / tileSize));
}

double normalizedBearing(double degrees) {
    const double rest = std::remainder(degrees, 360.0);
    return rest == -180 ? 180 : rest;
}

MapCamera bounded(const MapCamera& camera, const MapViewport& viewport) {
    MapCamera result = camera;
    result.zoom = std::clamp(camera.zoom, lowestZoom(viewport), highestZoom);
    result.pitch = std::clamp(camera.pitch, 0.0, highestPitch);
    result.bearing = normalizedBearing(camera.bearing);
    result.center.x = Mercator::wrapped(camera.center.x);
    const double turn = radians(result.bearing);
    const double height = std::abs(viewport.height * std::cos(turn)) + std::abs(viewport.width * std::sin(turn));
    const double margin = std::min(0.5, height / 2 / scaleOf(result.zoom));
    result.center.y = std::clamp(camera.center.y, margin, 1 - margin);
    return result;
}

MapCamera dragged(const MapCamera& camera, const MapViewport& viewport, QPointF from, QPointF to) {
    const MapProjection projection(camera, viewport);
    const WorldPoint before = projection.placeAt(from);
    const WorldPoint after = projection.placeAt(to);
    MapCamera result = camera;
    result.center = {camera.center.x + before.x - after.x, camera.center.y + before.y - after.y};
    return bounded(result, viewport);
}

namespace {

/// Moves the camera so that the place is shown at the point again.
MapCamera holding(const MapCamera& camera, const MapViewport& viewport, QPointF point, const WorldPoint& place) {
    const WorldPoint now = MapProjection(camera, viewport).placeAt(point);
    MapCamera result = camera;
    result.center = {camera.center.x + place.x - now.x, camera.center.y + place.y - now.y};
    return bounded(result, viewport);
}

} // namespace

MapCamera zoomed(const MapCamera& camera, const MapViewport& viewport, QPointF point, double zoom) {
    const WorldPoint place = MapProjection(camera, viewport).placeAt(point);
    MapCamera result = camera;
    result.zoom = std::clamp(zoom, lowestZoom(viewport), highestZoom);
    return holding(result, viewport, point, place);
}

MapCamera turned(const MapCamera& camera, const MapViewport& viewport, QPointF point, double bearing) {
    const WorldPoint place = MapProjection(camera, viewport).placeAt(point);
    MapCamera result = camera;
    result.bearing = normalizedBearing(bearing);
    return holding(result, viewport, point, place);
}

double latitudeDelta(const MapCamera& camera, const MapViewport& viewport) {
    const double half = viewport.height / 2 / scaleOf(camera.zoom);
    return Mercator::unproject({camera.center.x, camera.center.y - half}).latitude -
           Mercator::unproject({camera.center.x, camera.center.y + half}).latitude;
}

double longitudeDelta(const MapCamera& camera, const MapViewport& viewport) {
    return std::min(360.0, viewport.width / scaleOf(camera.zoom) * 360);
}

double zoomShowing(const Coordinate& center, double latitudeDelta, double longitudeDelta, const MapViewport& viewport) {
    const WorldPoint middle = Mercator::project(center);
    const double north = Mercator::project({center.latitude + std::abs(latitudeDelta) / 2, 0}).y;
    const double south = Mercator::project({center.latitude - std::abs(latitudeDelta) / 2, 0}).y;
    // The edge that is further away decides: the centre stays in the middle.
    const double height = 2 * std::max(middle.y - north, south - middle.y);
    const double width = std::min(1.0, std::abs(longitudeDelta) / 360);
    const double across = width > 0 ? std::log2(viewport.width / tileSize / width) : highestZoom;
    const double down = height > 0 ? std::log2(viewport.height / tileSize / height) : highestZoom;
    const double zoom = std::min(across, down);
    return std::isfinite(zoom) ? std::clamp(zoom, lowestZoom(viewport), highestZoom) : lowestZoom(viewport);
}

} // namespace MapCameras

} // namespace corvanta
