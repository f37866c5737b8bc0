// SPDX-License-Identifier: MIT
#include "MacControlWindow.h"

#include "NativeValues.h"

#include <QWidget>

#import <AppKit/AppKit.h>

namespace corvanta {

namespace {

class MacControlWindow final : public ControlWindow {
public:
    explicit MacControlWindow(QWidget& widget)
        : m_widget(widget) {}

    [[nodiscard]] Rect frame() const override { return rectOf(window().frame); }

    void setFrame(const Rect& frame) override { [window() setFrame:nativeRect(frame) display:YES animate:YES]; }

    [[nodiscard]] std::optional<Screen> screen() const override {
        NSScreen* const screen = window().screen;
        if (screen == nil)
            return std::nullopt;
        return screenOf(screen);
    }

private:
    /// Qt's identifier of a widget is its NSView.
    [[nodiscard]] NSWindow* window() const {
        return ((__bridge NSView*)reinterpret_cast<void*>(m_widget.winId())).window;
    }

    QWidget& m_widget;
};

} // namespace

std::shared_ptr<ControlWindow> makeMacControlWindow(QWidget& widget) {
    return std::make_shared<MacControlWindow>(widget);
}

} // namespace corvanta
