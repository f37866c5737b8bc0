// SPDX-License-Identifier: MIT
#pragma once

#include "PlaceSearch.h"
#include "locations/Coordinate.h"

#include <QString>

#include <memory>

namespace corvanta {

/// A place whose coordinate is known already when it is suggested: what a completion of this platform carries.
struct FoundPlace {
    QString title;
    QString subtitle;
    Coordinate coordinate;

    bool operator==(const FoundPlace&) const = default;
};

[[nodiscard]] inline PlaceCompletion completionOf(const FoundPlace& place) {
    return {.title = place.title, .subtitle = place.subtitle, .source = std::make_shared<const FoundPlace>(place)};
}

} // namespace corvanta
