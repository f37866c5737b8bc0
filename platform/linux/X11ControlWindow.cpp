// SPDX-License-Identifier: MIT
#include "X11ControlWindow.h"

#include <QWidget>

namespace corvanta {

X11ControlWindow::X11ControlWindow(QWidget& window, X11Windows& windows, const X11Screens& screens)
    : m_window(window)
    , m_windows(windows)
    , m_screens(screens) {}

Rect X11ControlWindow::frame() const {
    const auto id = static_cast<X11Windows::Window>(m_window.winId());
    return m_screens.toDesktop(m_windows.outerFrame(id).value_or(PixelRect()));
}

void X11ControlWindow::setFrame(const Rect& frame) {
    const PixelRect pixels = m_screens.fromDesktop(frame);
    PixelPlacement placement;
    placement.position = {pixels.x, pixels.y};
    placement.extent = {pixels.width, pixels.height};
    m_windows.place(static_cast<X11Windows::Window>(m_window.winId()), placement);
}

std::optional<Screen> X11ControlWindow::screen() const {
    return m_window.isVisible() ? m_screens.screenShowing(frame()) : std::nullopt;
}

} // namespace corvanta
