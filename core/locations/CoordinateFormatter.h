// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"

#include <QString>

namespace corvanta::CoordinateFormatter {

/// `value` with up to eight decimals and a point, whatever the locale: 37.5, 12.0, -0.0.
///
/// Rounded as printf's %.8f rounds. A whole number keeps one zero behind the point. Not finite: "nan", "inf", "-inf".
[[nodiscard]] QString decimalString(double value);

/// Latitude, comma and longitude without a space: what the simulator takes and the user sees.
[[nodiscard]] QString coordinatePair(const Coordinate& coordinate);

} // namespace corvanta::CoordinateFormatter
