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

/// What lies between the client window and the outer frame: decorations added, shadows taken away.
struct PixelBorder {
    int left = 0;
    int top = 0;
    int horizontal = 0;
    int vertical = 0;

    bool operator==(const PixelBorder&) const = default;
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
