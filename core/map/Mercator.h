// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"

namespace corvanta {

/// A place in the unit square of the Web Mercator projection: x grows eastwards from the date line, y southwards from
/// the northern edge. Values of x beyond 0 and 1 are the same places once more around the earth.
struct WorldPoint {
    double x = 0;
    double y = 0;

    bool operator==(const WorldPoint&) const = default;
};

/// The projection that web maps use (EPSG:3857), pure and total.
namespace Mercator {

/// The latitude of the square's edges; places nearer to a pole are shown there.
constexpr double highestLatitude = 85.0511287798066;

/// The earth's equatorial radius in metres.
constexpr double earthRadius = 6378137;

/// Any longitude is taken; what is not a number becomes 0.
[[nodiscard]] WorldPoint project(const Coordinate& coordinate);

/// The longitude is in -180 (included) to 180, the latitude within `highestLatitude` of the equator.
[[nodiscard]] Coordinate unproject(const WorldPoint& point);

/// The same value of x, from 0 to 1 (excluded).
[[nodiscard]] double wrapped(double x);

/// The shortest way from one x to another around the earth, from -0.5 to 0.5.
[[nodiscard]] double eastwards(double from, double to);

} // namespace Mercator

} // namespace corvanta
