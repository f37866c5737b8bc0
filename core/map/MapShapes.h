// SPDX-License-Identifier: MIT
#pragma once

#include <QPointF>
#include <QRectF>

#include <vector>

namespace corvanta {

/// A corner of an outline or a line.
struct MapVertex {
    QPointF at;
    /// Where two pieces of the map meet, and nothing may be rounded off.
    bool isFixed = false;

    bool operator==(const MapVertex&) const = default;
};

using MapVertices = std::vector<MapVertex>;

/// What becomes of outlines and lines on their way to the screen; pure.
namespace MapShapes {

/// The part of a closed outline within the rectangle; empty when there is none. Runs along the rectangle's edges where
/// it was cut.
[[nodiscard]] MapVertices clippedRing(const MapVertices& ring, const QRectF& area);

/// The parts of a line within the rectangle.
[[nodiscard]] std::vector<MapVertices> clippedLine(const MapVertices& line, const QRectF& area);

/// Rounds off the corners that are not fixed, the more the more rounds.
[[nodiscard]] MapVertices smoothedRing(MapVertices ring, int rounds);
[[nodiscard]] MapVertices smoothedLine(MapVertices line, int rounds);

} // namespace MapShapes

} // namespace corvanta
