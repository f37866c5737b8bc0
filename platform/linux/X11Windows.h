// SPDX-License-Identifier: MIT
#pragma once

#include "HangAllowance.h"
#include "PixelGeometry.h"

#include <QString>
#include <QTimer>

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace corvanta {

struct X11Connection;

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

    /// Gives the outer frame a place and an extent, after undoing maximisation, full screen and iconification.
    ///
    /// True once it has arrived there within two pixels; false when it is gone or was given another place or extent.
    /// Windows of one program that do not arrive hold a turn of the event loop for 80 ms, all together: what the window
    /// manager has not answered by then counts as accepted, and is looked after from the event loop for a moment.
    bool place(Window window, const PixelPlacement& placement);

    /// Raises the window and gives it the focus.
    void activate(Window window);

    /// Asks the program to close the window, as the button in its title bar does.
    void close(Window window);

    /// The part of the root window that panels leave free.
    [[nodiscard]] std::optional<PixelRect> workArea() const;

private:
    /// A placement that has not been seen to arrive, or may not last.
    struct Unfinished {
        PixelPlacement placement;
        PixelBorder border;
        bool hasArrived = false;
        int looksLeft = 0;
    };

    [[nodiscard]] HangAllowance& allowance(Window window);
    void lookAfter(Window window, const PixelPlacement& placement, bool isUnfinished);
    void lookAtUnfinished();

    std::unique_ptr<X11Connection> m_connection;
    std::map<std::uint32_t, HangAllowance> m_allowances;
    std::map<Window, Unfinished> m_unfinished;
    QTimer m_nextLook;
};

} // namespace corvanta
