// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceLayout.h"
#include "StatusBarContent.h"

typedef struct _cairo cairo_t;

namespace corvanta::lab {

/// How the device is shown.
struct DeviceLook {
    Orientation orientation = Orientation::portrait;
    bool isDark = false;
    StatusBarContent statusBar;
};

/// Draws the surround, the device's body and the status bar for an area of that size.
void drawDevice(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, QSize area,
                const DeviceLook& look);

/// Draws what lies over everything on the screen: the sensor island and the home indicator.
void drawOverScreen(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, const DeviceLook& look);

/// Adds the outline of the screen to the context's path.
void addScreenOutline(cairo_t* context, const DeviceType& type, const DeviceLayout& layout);

/// Makes the screen's corners square, in the colour of its bars.
void drawSquareCorners(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, const DeviceLook& look);

/// Draws what lies over the screen's corners, so that a page does not stand out of them.
void drawScreenCorners(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, QSize area,
                       const DeviceLook& look);

} // namespace corvanta::lab
