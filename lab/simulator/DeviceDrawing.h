// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceLayout.h"

typedef struct _cairo cairo_t;

namespace corvanta::lab {

/// Draws the surround, the device's body and the status bar for an area of that size.
void drawDevice(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, QSize area);

/// Draws what lies over the screen's corners, so that a page does not stand out of them.
void drawScreenCorners(cairo_t* context, const DeviceType& type, const DeviceLayout& layout);

} // namespace corvanta::lab
