// SPDX-License-Identifier: MIT
#include "map/MapFlight.h"

#include <algorithm>
#include <cmath>

namespace corvanta {

namespace {

// The path is the one of van Wijk and Nuij, "Smooth and efficient zooming and panning" (2003), whose experiments found
// this ratio between rising and moving.
constexpr double rise = 1.42;
constexpr double paceInScreens = 2.6;
constexpr double shortestFlight = 0.25;
constexpr double longestFlight = 1.6;

constexpr double slowest = 8;
constexpr double fastest = 4000;
constexpr double decay = 0.32;

double eased(double t) {
    return t < 0.5 ? 4 * t * t * t : 1 - std::pow(2 - 2 * t, 3) / 2;
}

double mix(double from, double to, double t) {
    return from + (to - from) * t;
}

} // namespace

MapFlight::MapFlight(const MapCamera& from, const MapCamera& to, const MapViewport& viewport)
    : MapFlight(from, to, viewport, Duration(0)) {
    const double turn = std::abs(MapCameras::normalizedBearing(to.bearing - from.bearing)) / 180;
    const double tilt = std::abs(to.pitch - from.pitch) / 90;
    m_duration = Duration(std::clamp(std::max({m_length / paceInScreens, turn, tilt}), shortestFlight, longestFlight));
}

MapFlight::MapFlight(const MapCamera& from, const MapCamera& to, const MapViewport& viewport, Duration duration)
    : m_from(from)
    , m_to(to)
    , m_viewport(viewport)
    , m_east(Mercator::eastwards(from.center.x, to.center.x))
    , m_south(to.center.y - from.center.y)
    , m_firstWidth(std::max(1.0, viewport.width) / MapProjection(from, viewport).scale())
    , m_lastWidth(std::max(1.0, viewport.width) / MapProjection(to, viewport).scale())
    , m_distance(std::hypot(m_east, m_south))
    , m_duration(duration) {
    const double square = rise * rise;
    m_isStraight = m_distance < m_firstWidth * 1e-3;
    if (m_isStraight) {
        m_length = std::abs(std::log(m_lastWidth / m_firstWidth)) / rise;
        return;
    }
    const auto angle = [&](double width, double sign) {
        const double b = (m_lastWidth * m_lastWidth - m_firstWidth * m_firstWidth +
                          sign * square * square * m_distance * m_distance) /
                         (2 * width * square * m_distance);
        return std::asinh(-b);
    };
    m_firstRise = angle(m_firstWidth, 1);
    m_length = (angle(m_lastWidth, -1) - m_firstRise) / rise;
}

MapCamera MapFlight::at(Duration elapsed) const {
    if (elapsed <= Duration(0))
        return m_from;
    if (elapsed >= m_duration)
        return m_to;
    const double t = eased(elapsed / m_duration);
    const double s = t * m_length;
    double way = t;
    double width = m_firstWidth * std::pow(m_lastWidth / m_firstWidth, t);
    if (!m_isStraight) {
        const double angle = rise * s + m_firstRise;
        width = m_firstWidth * std::cosh(m_firstRise) / std::cosh(angle);
        way = m_firstWidth / (rise * rise) * (std::cosh(m_firstRise) * std::tanh(angle) - std::sinh(m_firstRise)) /
              m_distance;
    }
    MapCamera camera;
    camera.center = {m_from.center.x + m_east * way, m_from.center.y + m_south * way};
    camera.zoom = m_from.zoom - std::log2(width / m_firstWidth);
    camera.bearing = m_from.bearing + MapCameras::normalizedBearing(m_to.bearing - m_from.bearing) * t;
    camera.pitch = mix(m_from.pitch, m_to.pitch, t);
    return MapCameras::bounded(camera, m_viewport);
}

MapInertia::MapInertia(QPointF velocity)
    : m_velocity(velocity) {
    const double speed = std::hypot(velocity.x(), velocity.y());
    if (!std::isfinite(speed) || speed < slowest)
        m_velocity = {};
    else if (speed > fastest)
        m_velocity *= fastest / speed;
}

QPointF MapInertia::offsetAt(Duration elapsed) const {
    return m_velocity * (decay * (1 - std::exp(-std::max(0.0, elapsed.count()) / decay)));
}

MapInertia::Duration MapInertia::duration() const {
    const double speed = std::hypot(m_velocity.x(), m_velocity.y());
    return Duration(speed <= slowest ? 0 : decay * std::log(speed / slowest));
}

} // namespace corvanta
