// SPDX-License-Identifier: MIT
#pragma once

#include "layout/Geometry.h"

#include <optional>

namespace corvanta {

/// One screen of the desktop, in desktop coordinates.
struct Screen {
    Rect frame;
    /// The frame without menu bar, Dock and panels.
    Rect visibleFrame;

    bool operator==(const Screen&) const = default;
};

/// The application's own window as the arranger sees it.
///
/// Held weakly by everyone but the view that shows it: an expired pointer is a window that has been closed.
class ControlWindow {
public:
    ControlWindow() = default;
    ControlWindow(const ControlWindow&) = delete;
    ControlWindow& operator=(const ControlWindow&) = delete;
    virtual ~ControlWindow() = default;

    /// The outer frame, window decorations included.
    [[nodiscard]] virtual Rect frame() const = 0;

    /// Moves and resizes the window, decorations included; animated where the host does so.
    virtual void setFrame(const Rect& frame) = 0;

    /// The screen that shows most of the window; nothing while it is on none.
    [[nodiscard]] virtual std::optional<Screen> screen() const = 0;
};

} // namespace corvanta
