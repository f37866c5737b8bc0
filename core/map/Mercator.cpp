// SPDX-License-Identifier: MIT
#include "map/Mercator.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace corvanta::Mercator {

namespace {

double finite(double value) {
    return std::isfinite(value) ? value : 0;
}

} // namespace

WorldPoint project(const Coordinate& coordinate) {
    const double latitude = std::clamp(finite(coordinate.latitude), -highestLatitude, highestLatitude);
    const double sine = std::sin(latitude * std::numbers::pi / 180);
    return {wrapped(finite(coordinate.longitude) / 360 + 0.5), 0.5 - std::atanh(sine) / (2 * std::numbers::pi)};
}

Coordinate unproject(const WorldPoint& point) {
    const double y = std::clamp(point.y, 0.0, 1.0);
    const double latitude = std::atan(std::sinh((0.5 - y) * 2 * std::numbers::pi)) * 180 / std::numbers::pi;
    return {latitude, (wrapped(point.x) - 0.5) * 360};
}

double wrapped(double x) {
    const double rest = x - std::floor(x);
    // A value just below a whole number may round up to it.
    return rest < 1 ? rest : 0;
}

double eastwards(double from, double to) {
    return std::remainder(to - from, 1.0);
}

} // namespace corvanta::Mercator
