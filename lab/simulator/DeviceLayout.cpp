// SPDX-License-Identifier: MIT
#include "DeviceLayout.h"

#include <QMarginsF>

#include <algorithm>
#include <cmath>

namespace corvanta::lab {

namespace {

/// Free space around the device, in window pixels.
constexpr double surround = 10;
/// The engine divides in sixty-fourths and rounds down; this much keeps an exact quotient from falling below itself.
constexpr double roundingGuard = 0.004;
/// Zooms above 1 and up to here are not used: the engine adds a pixel before it divides, so that a page's layout width
/// and its width in media queries would be one too large (WebKitGTK 2.50).
constexpr double smallestEnlargement = 1.016;
/// How many page widths are tried for a height that comes out whole.
constexpr int candidates = 16;
/// What of a CSS pixel may be left over below a page.
constexpr double smallRest = 0.2;

QMarginsF border(const DeviceType& type, Orientation orientation) {
    switch (type.shape) {
    case DeviceShape::island:
        return {14, 14, 14, 14};
    case DeviceShape::homeButton:
        return isLandscape(orientation) ? QMarginsF(92, 18, 92, 18) : QMarginsF(18, 92, 18, 92);
    case DeviceShape::tablet:
        return {30, 30, 30, 30};
    }
    return {};
}

struct PageSize {
    int width = 1;
    int height = 1;
    double zoom = 1;
};

/// The largest page not wider than `limit` whose viewport is the model's.
PageSize pageSize(const QSize& viewport, int limit) {
    PageSize best;
    double smallestRest = 2;
    for (int width = limit, seen = 0; width > 0 && seen < candidates; --width) {
        const double zoom = pageZoom(width, viewport.width());
        if (zoom > 1 && zoom < smallestEnlargement) {
            continue;
        }
        if (zoom == 1) {
            return best.width > 1 ? best : PageSize{width, viewport.height(), 1};
        }
        const int height = static_cast<int>(std::ceil((viewport.height() + roundingGuard) * zoom));
        const double rest = height / zoom - viewport.height();
        if (rest < smallestRest) {
            smallestRest = rest;
            best = {width, height, zoom};
        }
        if (smallestRest < smallRest) {
            break;
        }
        // Once a height fits, a few more widths may fit it better; until one does, the search goes on.
        if (smallestRest < 0.9) {
            ++seen;
        }
    }
    return best;
}

} // namespace

double pageZoom(int width, int viewportWidth) {
    return width == viewportWidth ? 1 : width / (viewportWidth + roundingGuard);
}

int DeviceLayout::sideAtFullSize(const DeviceType& type) {
    const QRectF body = QRectF(QPointF(), type.screen).marginsAdded(border(type, Orientation::portrait));
    return static_cast<int>(std::ceil(std::max(body.width(), body.height()) + 2 * surround));
}

DeviceLayout DeviceLayout::fit(const DeviceType& type, QSize area, Orientation orientation, ViewportFit viewport) {
    const ScreenFigures figures = ScreenFigures::of(type, orientation, viewport);
    const QMarginsF margins = border(type, orientation);
    const double bodyWidth = figures.screen.width() + margins.left() + margins.right();
    const double bodyHeight = figures.screen.height() + margins.top() + margins.bottom();
    const double scale = std::max(
        0.05, std::min((area.width() - 2 * surround) / bodyWidth, (area.height() - 2 * surround) / bodyHeight));
    const PageSize size = pageSize(figures.viewport, std::max(1, static_cast<int>(figures.viewport.width() * scale)));

    DeviceLayout layout;
    layout.zoom = size.zoom;
    const double zoom = size.zoom;
    const auto left = std::round((area.width() - bodyWidth * zoom) / 2 + margins.left() * zoom);
    const auto top = std::round((area.height() - bodyHeight * zoom) / 2 + margins.top() * zoom);
    const double screenWidth = figures.side == 0 ? size.width : figures.screen.width() * zoom;
    layout.screen = {left, top, screenWidth, figures.screen.height() * zoom};
    layout.body = layout.screen.marginsAdded(margins * zoom);
    layout.statusBar = {left, top, screenWidth, figures.statusBar * zoom};
    const int afterStatus = static_cast<int>(std::round(top + figures.statusBar * zoom));
    const int x = static_cast<int>(left);
    const int width = static_cast<int>(std::round(screenWidth));
    const int bottom = static_cast<int>(std::round(layout.screen.bottom()));
    if (figures.topBar > 0) {
        const int pageTop = bottom - size.height;
        layout.bar = {x, afterStatus, width, std::max(1, pageTop - afterStatus)};
        layout.page = {static_cast<int>(std::round(left + figures.side * zoom)), pageTop, size.width, size.height};
    } else {
        layout.page = {x, afterStatus, size.width, size.height};
        layout.bar = {x, afterStatus + size.height, width, std::max(1, static_cast<int>(figures.bottomBar * zoom))};
    }
    const int keys = static_cast<int>(std::round(figures.keyboard * zoom));
    layout.keyboard = {x, bottom - keys, width, keys};
    return layout;
}

} // namespace corvanta::lab
