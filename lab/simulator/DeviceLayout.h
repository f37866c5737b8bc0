// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenFigures.h"

#include <QRect>
#include <QRectF>
#include <QSize>

namespace corvanta::lab {

/// Where everything of a device goes in a window's area, in the window's pixels.
struct DeviceLayout {
    /// Window pixels per CSS pixel of the device; also the page's zoom.
    double zoom = 1;
    /// The device with its border, and the screen in it.
    QRectF body;
    QRectF screen;
    QRectF statusBar;
    /// The page: in whole pixels, so that `page` divided by `zoom` gives exactly the model's viewport, rounded down.
    QRect page;
    /// The browser's bars: on an upright phone below the page (address, then buttons), else one row above it.
    QRect bar;
    /// Where the keyboard is while it is shown.
    QRect keyboard;

    /// Fits the device into an area of that size. Nothing leaves the area as long as it is at least 100 x 150.
    [[nodiscard]] static DeviceLayout fit(const DeviceType& type, QSize area,
                                          Orientation orientation = Orientation::portrait,
                                          ViewportFit viewport = ViewportFit::automatic);

    /// The side of the square in which the device has a zoom of 1, however it is held.
    [[nodiscard]] static int sideAtFullSize(const DeviceType& type);

    bool operator==(const DeviceLayout&) const = default;
};

/// The zoom at which a page of that many window pixels is exactly `viewportWidth` CSS pixels wide.
[[nodiscard]] double pageZoom(int width, int viewportWidth);

} // namespace corvanta::lab
