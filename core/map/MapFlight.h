// SPDX-License-Identifier: MIT
#pragma once

#include "map/MapCamera.h"

#include <chrono>

namespace corvanta {

/// A smooth way from one camera to another, as a function of time. Over long distances it rises and comes down again,
/// so that the ground always passes at the pace that is easiest to follow.
class MapFlight {
public:
    using Duration = std::chrono::duration<double>;

    MapFlight(const MapCamera& from, const MapCamera& to, const MapViewport& viewport);
    /// The same in a given time.
    MapFlight(const MapCamera& from, const MapCamera& to, const MapViewport& viewport, Duration duration);

    [[nodiscard]] Duration duration() const { return m_duration; }

    [[nodiscard]] const MapCamera& destination() const { return m_to; }

    /// The camera after that time: exactly the first one at 0, exactly the destination from the duration on.
    [[nodiscard]] MapCamera at(Duration elapsed) const;

private:
    MapCamera m_from;
    MapCamera m_to;
    MapViewport m_viewport;
    double m_east;
    double m_south;
    double m_firstWidth;
    double m_lastWidth;
    double m_distance;
    double m_firstRise = 0;
    double m_length = 0;
    bool m_isStraight = false;
    Duration m_duration;
};

/// How a map that was let go of in motion runs out, as a function of time.
class MapInertia {
public:
    using Duration = std::chrono::duration<double>;

    /// `velocity` is in pixels a second.
    explicit MapInertia(QPointF velocity);

    /// How far it has gone.
    [[nodiscard]] QPointF offsetAt(Duration elapsed) const;
    /// When it is too slow to be seen; 0 when it never moves.
    [[nodiscard]] Duration duration() const;

private:
    QPointF m_velocity;
};

} // namespace corvanta
