// SPDX-License-Identifier: MIT
#pragma once

#include "MapPalette.h"
#include "map/BaseMap.h"
#include "map/MapCamera.h"

class QPainter;

namespace corvanta {

/// Draws the base map as sharp as the screen at any zoom, rotation and pitch. A null map is all land.
void paintBaseMap(QPainter& painter, const BaseMap* map, const MapProjection& projection, const MapPalette& palette);

} // namespace corvanta
