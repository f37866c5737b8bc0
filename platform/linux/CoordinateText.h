// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"

#include <QString>

#include <optional>

namespace corvanta {

/// The point that is written as "latitude, longitude" in degrees with decimal points; nothing for any other text, and
/// for a point that is not on the earth.
[[nodiscard]] std::optional<Coordinate> coordinateFromText(const QString& text);

} // namespace corvanta
