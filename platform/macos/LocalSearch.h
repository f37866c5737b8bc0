// SPDX-License-Identifier: MIT
#pragma once

#include "PlaceSearch.h"

#include <QString>

#include <functional>
#include <optional>
#include <vector>

namespace corvanta {

/// What a search has come to: its places, or the system's text on failure.
struct LocalSearchOutcome {
    std::vector<MapItem> items;
    std::optional<QString> failure;
};

/// Searches for what a suggestion of MapKit's completer stands for, which must have come from there. Main thread only;
/// `done` is called there too.
void startLocalSearch(const PlaceCompletion& completion, std::function<void(const LocalSearchOutcome&)> done);

} // namespace corvanta
