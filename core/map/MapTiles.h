// SPDX-License-Identifier: MIT
#pragma once

#include "map/MapCamera.h"

#include <compare>
#include <vector>

namespace corvanta {

/// A square of the world: at zoom z there are 2^z of them beside each other.
struct MapTile {
    int zoom = 0;
    int column = 0;
    int row = 0;

    auto operator<=>(const MapTile&) const = default;
};

/// A tile where it is seen; `turn` counts the times around the earth, 0 for the camera's own.
struct ShownMapTile {
    MapTile tile;
    int turn = 0;

    bool operator==(const ShownMapTile&) const = default;
};

namespace MapTiles {

/// The tiles of one zoom that the projection shows, those nearest to the middle first; never more than `most`.
[[nodiscard]] std::vector<ShownMapTile> visible(const MapProjection& projection, int zoom, int most);

/// The zoom whose tiles come closest to their own size on a screen of that many pixels per unit.
[[nodiscard]] int zoomFor(const MapCamera& camera, double devicePixelRatio, int highest);

/// The same tile's part of a tile of a lower zoom.
[[nodiscard]] MapTile ancestor(const MapTile& tile, int levels);

/// The place of a tile's northwestern corner.
[[nodiscard]] WorldPoint corner(const ShownMapTile& shown);

} // namespace MapTiles

} // namespace corvanta
