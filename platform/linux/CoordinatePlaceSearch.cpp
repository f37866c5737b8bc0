// SPDX-License-Identifier: MIT
#include "CoordinatePlaceSearch.h"

#include <QLocale>
#include <QStringList>

#include <cmath>
#include <utility>

namespace corvanta {

namespace {

std::optional<double> degrees(const QString& text, double limit) {
    bool isNumber = false;
    const double value = QLocale::c().toDouble(text.trimmed(), &isNumber);
    return isNumber && std::abs(value) <= limit ? std::optional(value) : std::nullopt;
}

std::optional<Coordinate> parseCoordinate(const QString& text) {
    const QStringList parts = text.split(u',');
    if (parts.size() != 2)
        return std::nullopt;
    const auto latitude = degrees(parts.at(0), 90);
    const auto longitude = degrees(parts.at(1), 180);
    if (!latitude || !longitude)
        return std::nullopt;
    return Coordinate{*latitude, *longitude};
}

} // namespace

QCoro::Task<std::vector<MapItem>> CoordinatePlaceSearch::search(PlaceCompletion completion) {
    std::vector<MapItem> found;
    if (const auto coordinate = parseCoordinate(completion.title))
        found.push_back({.name = std::nullopt, .coordinate = *coordinate});
    co_return found;
}

} // namespace corvanta
