// SPDX-License-Identifier: MIT
#pragma once

#include "ControlWindow.h"
#include "X11Windows.h"

#include <optional>
#include <vector>

namespace corvanta {

/// The screens in device pixels, and the way between the X root window's coordinates and the desktop's.
///
/// Needs the QGuiApplication. Every operation reads the screens as they are now.
class X11Screens {
public:
    explicit X11Screens(const X11Windows& windows);

    /// The primary screen first.
    [[nodiscard]] std::vector<Screen> screens() const;

    /// The screen that shows most of `frame`; nothing when none shows any of it.
    [[nodiscard]] std::optional<Screen> screenShowing(const Rect& frame) const;

    [[nodiscard]] Rect toDesktop(const PixelRect& rect) const;
    [[nodiscard]] PixelRect fromDesktop(const Rect& rect) const;

    /// The top-left corner of the primary screen on the root window.
    [[nodiscard]] Point primaryOrigin() const;

private:
    const X11Windows& m_windows;
};

} // namespace corvanta
