// SPDX-License-Identifier: MIT
#pragma once

#include "ControlWindow.h"
#include "X11Screens.h"
#include "X11Windows.h"

class QWidget;

namespace corvanta {

/// A top-level widget of this application, measured and placed by way of the window manager.
class X11ControlWindow final : public ControlWindow {
public:
    X11ControlWindow(QWidget& window, X11Windows& windows, const X11Screens& screens);

    [[nodiscard]] Rect frame() const override;
    void setFrame(const Rect& frame) override;
    [[nodiscard]] std::optional<Screen> screen() const override;

private:
    QWidget& m_window;
    X11Windows& m_windows;
    const X11Screens& m_screens;
};

} // namespace corvanta
