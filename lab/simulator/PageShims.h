// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceCatalogue.h"

#include <QByteArray>

namespace corvanta::lab {

/// The script that tells a page what the engine cannot be set to: pixel ratio, touch points, platform and screen size.
[[nodiscard]] QByteArray pageShims(const DeviceType& type);

} // namespace corvanta::lab
