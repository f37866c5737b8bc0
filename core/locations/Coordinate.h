// SPDX-License-Identifier: MIT
#pragma once

namespace corvanta {

/// A point on the earth in degrees, north and east positive. No range is enforced anywhere.
struct Coordinate {
    double latitude = 0;
    double longitude = 0;

    bool operator==(const Coordinate&) const = default;
};

} // namespace corvanta
