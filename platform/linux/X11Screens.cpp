// SPDX-License-Identifier: MIT
#include "X11Screens.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>
#include <cmath>

namespace corvanta {

namespace {

/// Qt leaves a screen's corner in device pixels and scales its extent.
PixelRect pixelFrame(const QScreen& screen) {
    const QRect geometry = screen.geometry();
    const qreal ratio = screen.devicePixelRatio();
    return {geometry.x(), geometry.y(), static_cast<int>(std::lround(geometry.width() * ratio)),
            static_cast<int>(std::lround(geometry.height() * ratio))};
}

PixelRect primaryFrame() {
    const QScreen* const primary = QGuiApplication::primaryScreen();
    return primary == nullptr ? PixelRect() : pixelFrame(*primary);
}

PixelRect intersection(const PixelRect& left, const PixelRect& right) {
    const int x = std::max(left.x, right.x);
    const int y = std::max(left.y, right.y);
    return {x, y, std::min(left.x + left.width, right.x + right.width) - x,
            std::min(left.y + left.height, right.y + right.height) - y};
}

double sharedArea(const Rect& left, const Rect& right) {
    const double width = std::min(left.maxX(), right.maxX()) - std::max(left.minX(), right.minX());
    const double height = std::min(left.maxY(), right.maxY()) - std::max(left.minY(), right.minY());
    return std::max(0.0, width) * std::max(0.0, height);
}

} // namespace

X11Screens::X11Screens(const X11Windows& windows)
    : m_windows(windows) {}

std::vector<Screen> X11Screens::screens() const {
    const std::optional<PixelRect> workArea = m_windows.workArea();
    std::vector<Screen> screens;
    // Qt lists the primary screen first.
    for (const QScreen* const screen : QGuiApplication::screens()) {
        const PixelRect frame = pixelFrame(*screen);
        const PixelRect visible = workArea ? intersection(frame, *workArea) : frame;
        const bool isCovered = visible.width <= 0 || visible.height <= 0;
        screens.push_back({toDesktop(frame), toDesktop(isCovered ? frame : visible)});
    }
    return screens;
}

std::optional<Screen> X11Screens::screenShowing(const Rect& frame) const {
    std::optional<Screen> best;
    double bestArea = 0;
    for (const Screen& screen : screens()) {
        const double area = sharedArea(screen.frame, frame);
        if (area > bestArea) {
            best = screen;
            bestArea = area;
        }
    }
    return best;
}

Rect X11Screens::toDesktop(const PixelRect& rect) const {
    const PixelRect primary = primaryFrame();
    return {static_cast<double>(rect.x - primary.x),
            static_cast<double>(primary.y + primary.height - rect.y - rect.height), static_cast<double>(rect.width),
            static_cast<double>(rect.height)};
}

PixelRect X11Screens::fromDesktop(const Rect& rect) const {
    const PixelRect primary = primaryFrame();
    const auto pixels = [](double value) { return static_cast<int>(std::lround(value)); };
    return {pixels(rect.minX()) + primary.x, primary.y + primary.height - pixels(rect.maxY()), pixels(rect.width),
            pixels(rect.height)};
}

Point X11Screens::primaryOrigin() const {
    const PixelRect primary = primaryFrame();
    return {static_cast<double>(primary.x), static_cast<double>(primary.y)};
}

} // namespace corvanta
