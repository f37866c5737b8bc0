// SPDX-License-Identifier: MIT
#pragma once

#include "MapPalette.h"
#include "map/MapCamera.h"

#include <QFont>
#include <QLocale>
#include <QRectF>

class QPainter;

namespace corvanta {

/// Where the scale may be drawn on a map of that place.
[[nodiscard]] QRectF roomOfMapScale(const QRectF& map);

/// A bar in the lower left corner with the distance that it stands for, in the units of the locale.
void paintMapScale(QPainter& painter, const QRectF& map, const MapCamera& camera, const MapPalette& palette,
                   const QFont& font, const QLocale& locale);

/// The middle, which keys point at, and that the map has the keyboard.
void paintMapCrosshair(QPainter& painter, const QRectF& map, const MapPalette& palette);

} // namespace corvanta
