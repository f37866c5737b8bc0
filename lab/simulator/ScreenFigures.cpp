// SPDX-License-Identifier: MIT
#include "ScreenFigures.h"

namespace corvanta::lab {

namespace {

/// The browser's row of address and buttons where it is above the page.
constexpr int browserRow = 50;
constexpr int phoneIndicator = 34;
constexpr int phoneIndicatorLandscape = 21;
constexpr int tabletIndicator = 20;

/// Height of the keyboard with its row of suggestions.
int keyboardHeight(const DeviceType& type, bool landscape) {
    switch (type.shape) {
    case DeviceShape::homeButton:
        return landscape ? 200 : 260;
    case DeviceShape::tablet:
        return type.screen.width() >= 1000 ? (landscape ? 476 : 390) : (landscape ? 406 : 325);
    case DeviceShape::island:
        return landscape ? (type.statusBar > 59 ? 209 : 219) : (type.statusBar > 59 ? 345 : 336);
    }
    return 0;
}

ScreenFigures tabletFigures(const DeviceType& type, Orientation orientation, ViewportFit fit) {
    ScreenFigures figures;
    figures.screen = isLandscape(orientation) ? type.screen.transposed() : type.screen;
    figures.statusBar = type.statusBar;
    figures.topBar = browserRow;
    figures.viewport = {figures.screen.width(), figures.screen.height() - type.statusBar - browserRow};
    if (fit == ViewportFit::cover) {
        figures.safeArea.setBottom(tabletIndicator);
    }
    return figures;
}

ScreenFigures phoneFigures(const DeviceType& type, Orientation orientation, ViewportFit fit) {
    const bool hasIndicator = type.shape == DeviceShape::island;
    ScreenFigures figures;
    if (!isLandscape(orientation)) {
        figures.screen = type.screen;
        figures.statusBar = type.statusBar;
        figures.indicator = hasIndicator ? phoneIndicator : 0;
        figures.viewport = type.viewport;
        figures.bottomBar = type.screen.height() - type.statusBar - type.viewport.height() - figures.indicator;
        return figures;
    }
    // On its side a phone has no status bar, and its browser one row above the page.
    figures.screen = type.screen.transposed();
    figures.topBar = browserRow;
    const int inset = hasIndicator ? type.statusBar : 0;
    figures.side = fit == ViewportFit::cover ? 0 : inset;
    figures.viewport = {figures.screen.width() - 2 * figures.side, figures.screen.height() - browserRow};
    if (fit == ViewportFit::cover && hasIndicator) {
        figures.safeArea = {inset, 0, inset, phoneIndicatorLandscape};
    }
    return figures;
}

} // namespace

Orientation turnedLeft(Orientation orientation) {
    return orientation == Orientation::landscapeRight ? Orientation::portrait : Orientation::landscapeLeft;
}

Orientation turnedRight(Orientation orientation) {
    return orientation == Orientation::landscapeLeft ? Orientation::portrait : Orientation::landscapeRight;
}

int orientationAngle(Orientation orientation) {
    switch (orientation) {
    case Orientation::portrait:
        return 0;
    case Orientation::landscapeLeft:
        return 90;
    case Orientation::landscapeRight:
        return -90;
    }
    return 0;
}

ScreenFigures ScreenFigures::of(const DeviceType& type, Orientation orientation, ViewportFit fit) {
    ScreenFigures figures =
        type.isTablet() ? tabletFigures(type, orientation, fit) : phoneFigures(type, orientation, fit);
    figures.keyboard = keyboardHeight(type, isLandscape(orientation));
    return figures;
}

} // namespace corvanta::lab
