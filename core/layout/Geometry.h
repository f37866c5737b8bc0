// SPDX-License-Identifier: MIT
#pragma once

namespace corvanta {

/// A position in points. Which corner is the origin is said where it is used.
struct Point {
    double x = 0;
    double y = 0;

    bool operator==(const Point&) const = default;
};

/// An extent in points.
struct Size {
    double width = 0;
    double height = 0;

    bool operator==(const Size&) const = default;
};

/// A rectangle in desktop coordinates: origin at the bottom-left of the primary screen, y growing upwards.
///
/// (`x`, `y`) is the bottom-left corner. Points on macOS, device pixels on Linux.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    [[nodiscard]] constexpr double minX() const { return x; }

    [[nodiscard]] constexpr double maxX() const { return x + width; }

    [[nodiscard]] constexpr double minY() const { return y; }

    [[nodiscard]] constexpr double maxY() const { return y + height; }

    bool operator==(const Rect&) const = default;
};

} // namespace corvanta
