// SPDX-License-Identifier: MIT
#include "GazetteerLabels.h"

#include "places/Gazetteer.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace corvanta {

namespace {

/// For zoom 0 and up.
constexpr std::array<double, 13> least{9e6, 7e6, 3e6, 1.2e6, 5e5, 2.5e5, 1e5, 4e4, 1.5e4, 5e3, 1.5e3, 400, 0};

/// From here on it is a place's own size that counts, not how it compares with what else can be seen.
constexpr double largeCity = 4e5;
constexpr double largeTown = 2e4;

GeographicBounds boundsOf(const WorldArea& area) {
    const Coordinate corner = Mercator::unproject({0, area.top});
    const Coordinate opposite = Mercator::unproject({0, area.bottom});
    GeographicBounds bounds;
    bounds.north = corner.latitude;
    bounds.south = opposite.latitude;
    if (area.right - area.left < 1) {
        bounds.west = (Mercator::wrapped(area.left) - 0.5) * 360;
        bounds.east = (Mercator::wrapped(area.right) - 0.5) * 360;
    }
    return bounds;
}

MapLabel::Kind kindOf(double population, double leastShown) {
    if (population >= std::min(largeCity, std::max(1.0, leastShown) * 5))
        return population >= largeTown * 5 || leastShown > largeTown ? MapLabel::Kind::city : MapLabel::Kind::town;
    return population >= std::min(largeTown, leastShown * 2) ? MapLabel::Kind::town : MapLabel::Kind::village;
}

} // namespace

std::uint32_t GazetteerLabels::leastPopulation(double zoom) {
    const double bounded = std::clamp(zoom, 0.0, least.size() - 1.0);
    const auto below = static_cast<std::size_t>(bounded);
    const std::size_t above = std::min(below + 1, least.size() - 1);
    const double part = bounded - static_cast<double>(below);
    return static_cast<std::uint32_t>(least[below] + (least[above] - least[below]) * part);
}

std::vector<MapLabel> GazetteerLabels::labelsIn(const WorldArea& area, double zoom, int most) const {
    std::vector<MapLabel> labels;
    const std::uint32_t population = leastPopulation(zoom);
    m_gazetteer.visitPlaces(
        boundsOf(area), population, static_cast<std::size_t>(most), [&](PlaceIndex index, Coordinate coordinate) {
            const double size = m_gazetteer.population(index);
            labels.push_back({kindOf(size, population), m_gazetteer.name(index), Mercator::project(coordinate), size});
            return true;
        });
    return labels;
}

} // namespace corvanta
