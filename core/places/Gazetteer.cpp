// SPDX-License-Identifier: MIT
#include "places/Gazetteer.h"

#include "places/GazetteerSearch.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace corvanta {

namespace {

QString text(std::string_view utf8) {
    return QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size()));
}

/// Hundred-thousandths of a degree above `origin`, kept within what a position can be.
std::uint32_t units(double degrees, double origin, double (*rounded)(double)) {
    constexpr double most = 36'000'000;
    const double value = rounded((degrees + origin) * 1e5);
    return std::isnan(value) ? 0 : static_cast<std::uint32_t>(std::clamp(value, 0.0, most));
}

} // namespace

GazetteerPlace Gazetteer::place(PlaceIndex index) const {
    const GazetteerFile::Region region = m_file.region(index);
    return {.name = name(index),
            .region = text(region.name),
            .country = text(region.country),
            .coordinate = coordinate(index),
            .population = population(index)};
}

QString Gazetteer::name(PlaceIndex index) const {
    std::string name;
    m_file.readName(index, name);
    return text(name);
}

std::vector<PlaceIndex> Gazetteer::search(const QString& typed, std::size_t limit) const {
    return GazetteerSearch(m_file, limit).find(m_file.folding().foldTyped(typed));
}

void Gazetteer::visitPlaces(const GeographicBounds& bounds, std::uint32_t minimumPopulation, std::size_t maximumCount,
                            const std::function<bool(PlaceIndex index, Coordinate coordinate)>& visit) const {
    const std::uint32_t south = units(bounds.south, 90, std::ceil);
    const std::uint32_t north = units(bounds.north, 90, std::floor);
    const std::uint32_t west = units(bounds.west, 180, std::ceil);
    const std::uint32_t east = units(bounds.east, 180, std::floor);
    const bool crossesDateLine = bounds.west > bounds.east;
    std::size_t visited = 0;
    for (PlaceIndex index = 0; index < count() && visited < maximumCount; ++index) {
        const GazetteerFile::Position at = m_file.position(index);
        if (at.latitude < south || at.latitude > north)
            continue;
        if (crossesDateLine ? at.longitude < west && at.longitude > east : at.longitude < west || at.longitude > east)
            continue;
        if (population(index) < minimumPopulation || !visit(index, coordinate(index)))
            return;
        ++visited;
    }
}

} // namespace corvanta
