// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceLayout.h"
#include "StatusBarContent.h"

typedef struct _cairo cairo_t;

namespace corvanta::lab {

/// Draws what the status bar tells, where that model shows it; nothing where there is no status bar.
void drawStatusBar(cairo_t* context, const DeviceType& type, const DeviceLayout& layout,
                   const StatusBarContent& content, bool isDark);

} // namespace corvanta::lab
