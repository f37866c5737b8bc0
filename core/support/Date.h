// SPDX-License-Identifier: MIT
#pragma once

#include <compare>

namespace corvanta {

/// A point in time as the preferences store it: seconds since 2001-01-01T00:00:00Z, fractions kept.
struct Date {
    double secondsSinceReferenceDate = 0;

    auto operator<=>(const Date&) const = default;
};

} // namespace corvanta
