// SPDX-License-Identifier: MIT
#include "map/MapShapes.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvanta::MapShapes {

namespace {

/// One side of a rectangle: `x` or `y` at most or at least a value.
struct Side {
    bool isVertical = false;
    bool isLeast = false;
    double value = 0;

    [[nodiscard]] double excess(const QPointF& point) const {
        const double coordinate = isVertical ? point.x() : point.y();
        return isLeast ? value - coordinate : coordinate - value;
    }
};

std::array<Side, 4> sidesOf(const QRectF& area) {
    return {Side{true, true, area.left()}, Side{true, false, area.right()}, Side{false, true, area.top()},
            Side{false, false, area.bottom()}};
}

QPointF crossing(const QPointF& from, const QPointF& to, double excessFrom, double excessTo) {
    return from + (to - from) * (excessFrom / (excessFrom - excessTo));
}

void clip(const MapVertices& ring, const Side& side, MapVertices& result) {
    result.clear();
    for (std::size_t index = 0; index < ring.size(); ++index) {
        const MapVertex& from = ring[index];
        const MapVertex& to = ring[index + 1 == ring.size() ? 0 : index + 1];
        const double excessFrom = side.excess(from.at);
        const double excessTo = side.excess(to.at);
        if (excessFrom <= 0)
            result.push_back(from);
        if ((excessFrom <= 0) != (excessTo <= 0))
            result.push_back({crossing(from.at, to.at, excessFrom, excessTo), true});
    }
}

template<typename Vertices>
bool reaches(const Vertices& vertices, const Side& side) {
    return std::ranges::any_of(vertices, [&](const MapVertex& vertex) { return side.excess(vertex.at) > 0; });
}

/// Cuts a quarter of both edges off each corner.
MapVertices rounded(const MapVertices& vertices, bool isClosed) {
    MapVertices result;
    result.reserve(vertices.size() * 2);
    const std::size_t count = vertices.size();
    for (std::size_t index = 0; index < count; ++index) {
        const MapVertex& vertex = vertices[index];
        const bool isEnd = !isClosed && (index == 0 || index + 1 == count);
        if (vertex.isFixed || isEnd) {
            result.push_back(vertex);
            continue;
        }
        const QPointF before = vertices[index == 0 ? count - 1 : index - 1].at;
        const QPointF after = vertices[index + 1 == count ? 0 : index + 1].at;
        result.push_back({vertex.at * 0.75 + before * 0.25, false});
        result.push_back({vertex.at * 0.75 + after * 0.25, false});
    }
    return result;
}

MapVertices smoothed(MapVertices vertices, int rounds, bool isClosed) {
    if (vertices.size() < 3)
        return vertices;
    for (int round = 0; round < rounds; ++round)
        vertices = rounded(vertices, isClosed);
    return vertices;
}

} // namespace

MapVertices clippedRing(const MapVertices& ring, const QRectF& area) {
    MapVertices result = ring;
    MapVertices other;
    for (const Side& side : sidesOf(area)) {
        if (!reaches(result, side))
            continue;
        clip(result, side, other);
        std::swap(result, other);
    }
    return result.size() < 3 ? MapVertices{} : result;
}

std::vector<MapVertices> clippedLine(const MapVertices& line, const QRectF& area) {
    std::vector<MapVertices> parts;
    MapVertices part;
    const auto finish = [&] {
        if (part.size() > 1)
            parts.push_back(part);
        part.clear();
    };
    const auto sides = sidesOf(area);
    for (std::size_t index = 0; index + 1 < line.size(); ++index) {
        MapVertex from = line[index];
        MapVertex to = line[index + 1];
        bool isInside = true;
        bool leaves = false;
        for (const Side& side : sides) {
            const double excessFrom = side.excess(from.at);
            const double excessTo = side.excess(to.at);
            if (excessFrom > 0 && excessTo > 0) {
                isInside = false;
                break;
            }
            if (excessFrom > 0)
                from = {crossing(from.at, to.at, excessFrom, excessTo), true};
            if (excessTo > 0) {
                to = {crossing(from.at, to.at, side.excess(from.at), excessTo), true};
                leaves = true;
            }
        }
        if (!isInside) {
            finish();
            continue;
        }
        if (part.empty())
            part.push_back(from);
        part.push_back(to);
        if (leaves)
            finish();
    }
    finish();
    return parts;
}

MapVertices smoothedRing(MapVertices ring, int rounds) {
    return smoothed(std::move(ring), rounds, true);
}

MapVertices smoothedLine(MapVertices line, int rounds) {
    return smoothed(std::move(line), rounds, false);
}

} // namespace corvanta::MapShapes
