// SPDX-License-Identifier: MIT
#pragma once

#include "MapSurface.h"

#include <memory>

namespace corvanta {

/// MapKit's map in a child of `parent`, which may go before the surface does.
[[nodiscard]] std::unique_ptr<MapSurface> makeMacMapSurface(QWidget& parent);

} // namespace corvanta
