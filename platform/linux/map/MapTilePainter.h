// SPDX-License-Identifier: MIT
#pragma once

#include "MapTileStore.h"
#include "map/MapCamera.h"

#include <optional>
#include <vector>

class QPainter;

namespace corvanta {

/// Draws the tiles of a map as far as they are there, and knows afterwards where they cover it.
class MapTilePainter {
public:
    /// The store outlives this.
    explicit MapTilePainter(const MapTileStore& store)
        : m_store(store) {}

    /// Draws what is there of `camera`'s view; `pixelRatio` is the pixels of the screen to one of the painter's.
    /// Answers the tiles that are seen, the most wanted first.
    std::vector<MapTile> paint(QPainter& painter, const MapProjection& projection, const MapCamera& camera,
                               double pixelRatio);

    /// Whether anything was there the last time.
    [[nodiscard]] bool isShowing() const { return m_isShowing; }

    [[nodiscard]] bool covers(const WorldPoint& place) const;

private:
    struct Part {
        const QImage* image;
        double opacity;
        /// Of the picture, from 0 to 1.
        QRectF source;
    };

    [[nodiscard]] std::optional<Part> standIn(const MapTile& tile) const;

    const MapTileStore& m_store;
    int m_zoom = 0;
    bool m_isShowing = false;
};

} // namespace corvanta
