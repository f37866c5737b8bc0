// SPDX-License-Identifier: MIT
#pragma once

#include "PlaceCompleter.h"
#include "PlaceSearch.h"

namespace corvanta {

/// Places found by MapKit.
class MacPlaceSearch final : public PlaceSearch {
public:
    [[nodiscard]] std::unique_ptr<PlaceCompleter> makeCompleter() override;

    /// Throws NativeError.
    [[nodiscard]] QCoro::Task<std::vector<MapItem>> search(PlaceCompletion completion) override;
};

} // namespace corvanta
