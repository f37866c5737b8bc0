// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"

#include <QString>

namespace corvanta {

/// "41.3874, 2.1686": a coordinate with four decimals at most, for people.
[[nodiscard]] QString coordinateText(const Coordinate& coordinate);

} // namespace corvanta
