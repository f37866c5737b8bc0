// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>
#include <vector>

namespace corvanta::lab {

/// A place on the earth in degrees.
struct Coordinate {
    double latitude = 0;
    double longitude = 0;

    /// Reads "latitude,longitude"; absent when the text is no such pair or no place on the earth.
    [[nodiscard]] static std::optional<Coordinate> parse(const QString& text);

    bool operator==(const Coordinate&) const = default;
};

/// Metres between two places along the great circle.
[[nodiscard]] double distance(const Coordinate& from, const Coordinate& to);

/// Direction at `from` on the way to `to`, in degrees from north, clockwise, 0 to 360.
[[nodiscard]] double heading(const Coordinate& from, const Coordinate& to);

/// A way that a device travels by itself.
struct LocationRoute {
    /// Two at least.
    std::vector<Coordinate> waypoints;
    /// Metres a second; above 0.
    double speed = 20;
    /// Time between two reports of the position.
    std::chrono::milliseconds interval{1000};
    /// Whether it begins anew at its end.
    bool repeats = false;

    struct Point {
        Coordinate position;
        double heading = 0;
        /// Whether the end of a route that does not repeat is reached.
        bool isLast = false;
    };

    /// Where the traveller is that long after the start.
    [[nodiscard]] Point at(std::chrono::milliseconds elapsed) const;

    /// The whole way in metres.
    [[nodiscard]] double length() const;
};

/// The names of the scenarios that every device knows, in the order of the list.
[[nodiscard]] const QStringList& locationScenarios();

/// The scenario with that name in any letter case; absent when there is none.
[[nodiscard]] std::optional<LocationRoute> locationScenario(const QString& name);

} // namespace corvanta::lab
