// SPDX-License-Identifier: MIT
#include "map/MapTiles.h"

#include <algorithm>
#include <cmath>
#include <tuple>

namespace corvanta::MapTiles {

namespace {

/// Whether a square of the ground touches the convex area that is seen.
bool touches(const std::array<QPointF, 4>& square, const std::array<QPointF, 4>& seen) {
    const auto isApart = [](const std::array<QPointF, 4>& first, const std::array<QPointF, 4>& second) {
        for (std::size_t index = 0; index < 4; ++index) {
            const QPointF edge = first[(index + 1) % 4] - first[index];
            const auto side = [&](const QPointF& point) {
                const QPointF way = point - first[index];
                return edge.x() * way.y() - edge.y() * way.x();
            };
            if (std::ranges::all_of(second, [&](const QPointF& point) { return side(point) <= 0; }))
                return true;
        }
        return false;
    };
    return !isApart(square, seen) && !isApart(seen, square);
}

} // namespace

std::vector<ShownMapTile> visible(const MapProjection& projection, int zoom, int most) {
    const auto seen = projection.groundCorners();
    double left = projection.camera().center.x;
    double right = left;
    double top = projection.camera().center.y;
    double bottom = top;
    for (const QPointF& corner : seen) {
        const WorldPoint place = projection.fromGround(corner);
        left = std::min(left, place.x);
        right = std::max(right, place.x);
        top = std::min(top, place.y);
        bottom = std::max(bottom, place.y);
    }
    const int across = 1 << zoom;
    const auto index = [across](double value) { return static_cast<int>(std::floor(value * across)); };

    struct Found {
        ShownMapTile shown;
        double distance;
    };

    std::vector<Found> found;
    const double side = 1.0 / across;
    for (int row = std::max(0, index(top)); row <= std::min(across - 1, index(bottom)); ++row) {
        for (int column = index(left); column <= index(right); ++column) {
            const double x = column * side;
            const double y = row * side;
            const std::array<QPointF, 4> square{
                projection.groundUnwrapped({x, y}), projection.groundUnwrapped({x + side, y}),
                projection.groundUnwrapped({x + side, y + side}), projection.groundUnwrapped({x, y + side})};
            if (!touches(square, seen))
                continue;
            const QPointF middle = (square[0] + square[2]) / 2;
            const int turn = static_cast<int>(std::floor(1.0 * column / across));
            found.push_back({{{zoom, column - turn * across, row}, turn}, std::hypot(middle.x(), middle.y())});
        }
    }
    // Equally far ones always in the same order, so that a cut always cuts the same.
    std::ranges::sort(found, {},
                      [](const Found& one) { return std::tuple(one.distance, one.shown.turn, one.shown.tile); });
    std::vector<ShownMapTile> result;
    for (const Found& one : found) {
        if (static_cast<int>(result.size()) == most)
            break;
        result.push_back(one.shown);
    }
    return result;
}

int zoomFor(const MapCamera& camera, double devicePixelRatio, int highest) {
    // Half a step more on fine screens: sharper, and its lettering still large enough to be read.
    const double wanted = camera.zoom + (devicePixelRatio > 1.25 ? 0.5 : 0.0);
    return std::clamp(static_cast<int>(std::lround(wanted)), 0, highest);
}

MapTile ancestor(const MapTile& tile, int levels) {
    return {tile.zoom - levels, tile.column >> levels, tile.row >> levels};
}

WorldPoint corner(const ShownMapTile& shown) {
    const double side = std::exp2(-shown.tile.zoom);
    return {shown.tile.column * side + shown.turn, shown.tile.row * side};
}

} // namespace corvanta::MapTiles
