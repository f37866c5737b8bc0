// SPDX-License-Identifier: MIT
#include "DrawingTools.h"

#include <cairo.h>

#include <algorithm>
#include <numbers>

namespace corvanta::lab {

void setColour(cairo_t* context, const Colour& colour, double opacity) {
    cairo_set_source_rgba(context, colour.red, colour.green, colour.blue, opacity);
}

void addRoundedRectangle(cairo_t* context, const QRectF& area, double radius) {
    constexpr double quarter = std::numbers::pi / 2;
    const double r = std::min({radius, area.width() / 2, area.height() / 2});
    cairo_new_sub_path(context);
    cairo_arc(context, area.right() - r, area.top() + r, r, -quarter, 0);
    cairo_arc(context, area.right() - r, area.bottom() - r, r, 0, quarter);
    cairo_arc(context, area.left() + r, area.bottom() - r, r, quarter, 2 * quarter);
    cairo_arc(context, area.left() + r, area.top() + r, r, 2 * quarter, 3 * quarter);
    cairo_close_path(context);
}

} // namespace corvanta::lab
