// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceCatalogue.h"

#include <QMargins>
#include <QSize>

namespace corvanta::lab {

/// How a device is held.
enum class Orientation {
    portrait,
    /// Turned to the left: the top of the device points left.
    landscapeLeft,
    /// Turned to the right: the top of the device points right.
    landscapeRight,
};

/// What a page asks of the screen with `viewport-fit`.
enum class ViewportFit {
    /// The page stays clear of the screen's rounded corners and of its sensors.
    automatic,
    /// The page reaches the edges and is told the safe area.
    cover,
};

[[nodiscard]] constexpr bool isLandscape(Orientation orientation) {
    return orientation != Orientation::portrait;
}

/// The device turned by a quarter to the left or to the right. It is never held upside down: from one landscape the way
/// to the other leads through portrait.
[[nodiscard]] Orientation turnedLeft(Orientation orientation);
[[nodiscard]] Orientation turnedRight(Orientation orientation);

/// The value of `window.orientation`: 0, 90 or -90.
[[nodiscard]] int orientationAngle(Orientation orientation);

/// How the screen of a device is divided, in CSS pixels.
struct ScreenFigures {
    /// The screen as it is held.
    QSize screen;
    /// Height of the status bar at the top; 0 where there is none.
    int statusBar = 0;
    /// Height of the browser's bar below the status bar; 0 where the browser has its bars at the bottom.
    int topBar = 0;
    /// Height of the browser's bars below the page, without the strip of the home indicator.
    int bottomBar = 0;
    /// Width of the strips to the left and to the right that the page does not use.
    int side = 0;
    /// Height of the strip of the home indicator where it lies below the bars and not over the page.
    int indicator = 0;
    /// What the page sees as its window.
    QSize viewport;
    /// What `env(safe-area-inset-…)` answers.
    QMargins safeArea;
    /// Height of the software keyboard from the screen's lower edge.
    int keyboard = 0;

    [[nodiscard]] static ScreenFigures of(const DeviceType& type, Orientation orientation,
                                          ViewportFit fit = ViewportFit::automatic);

    bool operator==(const ScreenFigures&) const = default;
};

} // namespace corvanta::lab
