// SPDX-License-Identifier: MIT
#pragma once

#include "MapSurface.h"

#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

namespace corvanta {

/// A map with a pin on the one selected place, which tells of clicks as coordinates.
///
/// This is a description that is made anew whenever something changes; what lasts is the MapSurface that shows it and
/// the Coordinator between them. Main thread only.
struct LocationMapView {
    class Coordinator;

    /// Reads the selected place at the moment that it is called.
    std::function<std::optional<Coordinate>()> selectedCoordinate;
    /// Another value for each selection that is made.
    QUuid selectionID;
    /// Whether the map moves to a new selection.
    bool recenterOnSelection = false;
    /// Told where somebody has clicked on the map.
    std::function<void(Coordinate)> onCoordinateSelected;

    /// Makes a fresh map what this program shows, around a fixed place until a selection moves it.
    static void makeMap(MapSurface& map, Coordinator& coordinator);

    /// Brings the map up to date with this view.
    void updateMap(MapSurface& map, Coordinator& coordinator) const;
};

/// The map's delegate and the target of its clicks. Must be taken from the map before it goes.
class LocationMapView::Coordinator final : public MapSurfaceDelegate {
public:
    /// `map` outlives this.
    Coordinator(MapSurface& map, LocationMapView view)
        : parent(std::move(view))
        , m_map(map) {}

    /// The view as it was updated last.
    LocationMapView parent;
    /// The one pin; null when nothing is selected.
    std::shared_ptr<MapAnnotation> annotation;
    /// The selection that was acted on last.
    std::optional<QUuid> lastSelectionID;

    /// Puts the pin on the coordinate, or takes it away, and moves the map there once for each selection that asks for
    /// it. The zoom stays.
    void syncAnnotation(MapSurface& on, const std::optional<Coordinate>& coordinate, const QUuid& selection,
                        bool recenters);

    void handleClick(MapGestureState state, QPointF point) override;

    [[nodiscard]] std::optional<MapMarkerStyle> viewFor(const MapAnnotation& shown) override;

private:
    MapSurface& m_map;
};

} // namespace corvanta
