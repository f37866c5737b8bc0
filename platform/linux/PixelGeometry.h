// SPDX-License-Identifier: MIT
#pragma once

#include <optional>

namespace corvanta {

/// A rectangle on the X screen in device pixels: origin at the top-left of the root window, y growing downwards.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const PixelRect&) const = default;
};

/// What a window is to become; what is absent stays as it is.
struct PixelPlacement {
    struct Position {
        int x = 0;
        int y = 0;

        bool operator==(const Position&) const = default;
    };

    struct Extent {
        int width = 0;
        int height = 0;

        bool operator==(const Extent&) const = default;
    };

    std::optional<Position> position;
    std::optional<Extent> extent;

    bool operator==(const PixelPlacement&) const = default;
};

} // namespace corvanta
