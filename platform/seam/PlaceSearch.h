// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"

#include <QCoroTask>

#include <QString>

#include <memory>
#include <optional>
#include <vector>

namespace corvanta {

class PlaceCompleter;

/// A place that the search suggests for what was typed.
struct PlaceCompletion {
    QString title;
    QString subtitle;
    /// What the search that suggested it needs to find it again; means nothing to anybody else.
    std::shared_ptr<const void> source;
};

/// A place on the map.
struct MapItem {
    std::optional<QString> name;
    Coordinate coordinate;
};

/// Finds places by name. Main thread only.
class PlaceSearch {
public:
    PlaceSearch() = default;
    PlaceSearch(const PlaceSearch&) = delete;
    PlaceSearch& operator=(const PlaceSearch&) = delete;
    virtual ~PlaceSearch() = default;

    /// The places that a suggestion stands for, the best first; empty when there is none. Throws LocalizedError.
    [[nodiscard]] virtual QCoro::Task<std::vector<MapItem>> search(PlaceCompletion completion) = 0;

    /// A completer of its own for each caller. The search outlives it.
    [[nodiscard]] virtual std::unique_ptr<PlaceCompleter> makeCompleter() = 0;
};

} // namespace corvanta
