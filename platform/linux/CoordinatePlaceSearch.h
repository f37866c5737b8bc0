// SPDX-License-Identifier: MIT
#pragma once

#include "PlaceSearch.h"

namespace corvanta {

/// Finds the point that is written as "latitude, longitude" in degrees; knows no names.
class CoordinatePlaceSearch final : public PlaceSearch {
public:
    [[nodiscard]] QCoro::Task<std::vector<MapItem>> search(PlaceCompletion completion) override;
};

} // namespace corvanta
