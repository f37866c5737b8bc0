// SPDX-License-Identifier: MIT
#pragma once

#include "map/MapCamera.h"

#include <QString>

namespace corvanta {

/// A round distance, and how long it is on the map.
struct MapScale {
    enum class Units { metric, imperial };

    QString text;
    /// In pixels.
    double length = 0;

    bool operator==(const MapScale&) const = default;

    /// The longest round distance that is at most `longest` pixels long in the middle of the map.
    [[nodiscard]] static MapScale forCamera(const MapCamera& camera, double longest, Units units);
};

/// Metres on the ground for a pixel in the middle of the map.
[[nodiscard]] double metresPerPixel(const MapCamera& camera);

} // namespace corvanta
