// SPDX-License-Identifier: MIT
#pragma once

namespace corvanta::lab {

/// Adds the colours of the device's browser to the display, light, and dark below a widget with the class `dark`.
void addDeviceStyle();

} // namespace corvanta::lab
