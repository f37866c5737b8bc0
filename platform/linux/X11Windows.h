// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

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
    };

    struct Extent {
        int width = 0;
        int height = 0;
    };

    std::optional<Position> position;
    std::optional<Extent> extent;
};

/// The top-level windows of the X server as the window manager knows them (EWMH), on a connection of its own.
///
/// All reads answer nothing and all writes fail quietly when the server or the window is gone. Main thread only.
class X11Windows {
public:
    using Window = std::uint32_t;

    /// Connects to the server that DISPLAY names.
    X11Windows();
    X11Windows(const X11Windows&) = delete;
    X11Windows& operator=(const X11Windows&) = delete;
    ~X11Windows();

    /// The managed windows, bottom to top.
    [[nodiscard]] std::vector<Window> windows() const;

    [[nodiscard]] std::optional<std::uint32_t> processId(Window window) const;
    [[nodiscard]] QString title(Window window) const;

    /// The instance part of WM_CLASS, where GTK programs put their program name.
    [[nodiscard]] QString instanceName(Window window) const;

    [[nodiscard]] bool isIconified(Window window) const;

    [[nodiscard]] std::optional<Window> activeWindow() const;

    /// The area that a person sees: with the window manager's decorations, without a shadow that the program draws.
    [[nodiscard]] std::optional<PixelRect> outerFrame(Window window) const;

    /// Gives the outer frame a place and an extent, after undoing maximisation, full screen and iconification, and says
    /// whether it arrived there within two pixels. Waits a fraction of a second at most.
    bool place(Window window, const PixelPlacement& placement);

    /// Raises the window and gives it the focus.
    void activate(Window window);

    /// Asks the program to close the window, as the button in its title bar does.
    void close(Window window);

    /// The part of the root window that panels leave free.
    [[nodiscard]] std::optional<PixelRect> workArea() const;

private:
    struct Connection;
    std::unique_ptr<Connection> m_connection;
};

} // namespace corvanta
