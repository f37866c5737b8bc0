// SPDX-License-Identifier: MIT
#pragma once

#include <QRectF>
#include <QSizeF>

typedef struct _cairo cairo_t;

namespace corvanta::lab {

struct Colour {
    double red = 0;
    double green = 0;
    double blue = 0;
};

/// What is written and drawn on the bars.
[[nodiscard]] constexpr Colour inkColour(bool isDark) {
    return isDark ? Colour{0.96, 0.96, 0.97} : Colour{0.06, 0.06, 0.07};
}

/// The sensor island, in CSS pixels.
inline constexpr QSizeF islandSize{122, 36};

void setColour(cairo_t* context, const Colour& colour, double opacity = 1);

/// Adds a path with round corners, as far as the area has room for them.
void addRoundedRectangle(cairo_t* context, const QRectF& area, double radius);

} // namespace corvanta::lab
