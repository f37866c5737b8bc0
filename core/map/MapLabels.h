// SPDX-License-Identifier: MIT
#pragma once

#include "map/Mercator.h"

#include <QRectF>
#include <QString>

#include <cstdint>
#include <vector>

namespace corvanta {

/// A name to be written on the map.
struct MapLabel {
    enum class Kind { city, town, village, country, ocean, sea };

    Kind kind = Kind::city;
    QString name;
    WorldPoint place;
    /// Those with more come first.
    double importance = 0;

    bool operator==(const MapLabel&) const = default;
};

/// A part of the world; `left` may be below 0 and `right` above 1 where it lies across the date line.
struct WorldArea {
    double left = 0;
    double top = 0;
    double right = 1;
    double bottom = 1;

    bool operator==(const WorldArea&) const = default;
};

/// Knows the names of places.
class MapLabelSource {
public:
    MapLabelSource() = default;
    MapLabelSource(const MapLabelSource&) = delete;
    MapLabelSource& operator=(const MapLabelSource&) = delete;
    virtual ~MapLabelSource() = default;

    /// The most important places of an area, the most important first, at most `most` of them and only those that are
    /// worth naming at that zoom. Their x is between 0 and 1. Asked on the main thread, several times a second.
    [[nodiscard]] virtual std::vector<MapLabel> labelsIn(const WorldArea& area, double zoom, int most) const = 0;
};

/// Finds room for labels: what comes first stays, what would overlap it is left out.
class LabelLayout {
public:
    /// Nothing is placed that reaches beyond the bounds.
    explicit LabelLayout(const QRectF& bounds);

    /// Takes up the room, if it is free.
    [[nodiscard]] bool place(const QRectF& room);

    /// Takes up the room in any case.
    void reserve(const QRectF& room) { m_taken.push_back(room); }

private:
    QRectF m_bounds;
    std::vector<QRectF> m_taken;
};

} // namespace corvanta
