// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"
#include "places/GazetteerFile.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace corvanta {

/// Names a place of one gazetteer. The more populous place has the lower index.
using PlaceIndex = std::uint32_t;

/// What is known of a place.
struct GazetteerPlace {
    QString name;
    /// The country's first-order division; empty when that is not known.
    QString region;
    QString country;
    Coordinate coordinate;
    /// 0 when nobody has counted.
    std::uint32_t population = 0;

    bool operator==(const GazetteerPlace&) const = default;
};

/// Part of the earth between two parallels and two meridians, in degrees. It crosses the date line where `west` is
/// greater than `east`.
struct GeographicBounds {
    double south = -90;
    double west = -180;
    double north = 90;
    double east = 180;
};

/// The towns of the world, known without a network: found by what people type, or by where they are.
///
/// Everything is read from the mapped file when it is asked for; there is nothing to warm up. What does not change it
/// may be called on any thread.
class Gazetteer {
public:
    /// Throws GazetteerError. The file must not be changed in place while this lives.
    explicit Gazetteer(const QString& path)
        : m_file(path) {}

    [[nodiscard]] std::uint32_t count() const { return m_file.placeCount(); }

    /// `index` below count(), here and in what follows.
    [[nodiscard]] GazetteerPlace place(PlaceIndex index) const;
    [[nodiscard]] QString name(PlaceIndex index) const;

    [[nodiscard]] Coordinate coordinate(PlaceIndex index) const { return m_file.coordinate(index); }

    [[nodiscard]] std::uint32_t population(PlaceIndex index) const { return m_file.population(index); }

    /// Places of which a name or another spelling has words that begin with the words of `text`, the likeliest first,
    /// at most `limit`. Case, marks and punctuation do not count. Words that a place's names do not have may be those
    /// of its region or country: "paris texas".
    ///
    /// How well a name matches weighs the population: a whole name counts a hundredfold, another spelling as a whole
    /// twentyfold. Where only the beginning is there, that of another spelling or of a later word counts a twentieth.
    [[nodiscard]] std::vector<PlaceIndex> search(const QString& text, std::size_t limit) const;

    /// Calls `visit` for the places within `bounds` of at least `minimumPopulation`, the most populous first, until it
    /// answers false or `maximumCount` have been visited.
    void visitPlaces(const GeographicBounds& bounds, std::uint32_t minimumPopulation, std::size_t maximumCount,
                     const std::function<bool(PlaceIndex index, Coordinate coordinate)>& visit) const;

private:
    GazetteerFile m_file;
};

} // namespace corvanta
