// SPDX-License-Identifier: MIT
#include "CoordinateText.h"

#include <QLocale>
#include <QStringList>

#include <cmath>

namespace corvanta {

namespace {

std::optional<double> degrees(const QString& text, double limit) {
    bool isNumber = false;
    const double value = QLocale::c().toDouble(text.trimmed(), &isNumber);
    return isNumber && std::abs(value) <= limit ? std::optional(value) : std::nullopt;
}

} // namespace

std::optional<Coordinate> coordinateFromText(const QString& text) {
    const QStringList parts = text.split(u',');
    if (parts.size() != 2)
        return std::nullopt;
    const auto latitude = degrees(parts.at(0), 90);
    const auto longitude = degrees(parts.at(1), 180);
    if (!latitude || !longitude)
        return std::nullopt;
    return Coordinate{*latitude, *longitude};
}

} // namespace corvanta
