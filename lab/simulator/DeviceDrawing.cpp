// SPDX-License-Identifier: MIT
#include "DeviceDrawing.h"

#include "DrawingTools.h"
#include "StatusBarDrawing.h"

#include <cairo.h>

#include <algorithm>
#include <numbers>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

constexpr Colour surroundTop{0.165, 0.175, 0.195};
constexpr Colour surroundBottom{0.115, 0.122, 0.138};
constexpr Colour bodyColour{0.035, 0.037, 0.042};
constexpr Colour rimLight{0.58, 0.58, 0.60};
constexpr Colour rimDark{0.30, 0.31, 0.33};

Colour barColour(bool isDark) {
    return isDark ? Colour{0.110, 0.110, 0.118} : Colour{0.969, 0.969, 0.976};
}

/// Between the edge of a phone with an island and its screen.
constexpr double phoneBorder = 14;

/// Corner radius of the screen in CSS pixels.
double screenRadius(const DeviceType& type) {
    switch (type.shape) {
    case DeviceShape::island:
        return 50;
    case DeviceShape::homeButton:
        return 0;
    case DeviceShape::tablet:
        return 18;
    }
    return 0;
}

double bodyRadius(const DeviceType& type) {
    return type.shape == DeviceShape::homeButton ? 56 : screenRadius(type) + (type.isTablet() ? 26 : 14);
}

/// Runs what draws in the device's own upright coordinates, from the corner of its body, in CSS pixels.
template<typename Draw>
void upright(cairo_t* context, const DeviceLayout& layout, Orientation orientation, const Draw& draw) {
    cairo_save(context);
    switch (orientation) {
    case Orientation::portrait:
        cairo_translate(context, layout.body.left(), layout.body.top());
        break;
    case Orientation::landscapeLeft:
        cairo_translate(context, layout.body.left(), layout.body.bottom());
        cairo_rotate(context, -std::numbers::pi / 2);
        break;
    case Orientation::landscapeRight:
        cairo_translate(context, layout.body.right(), layout.body.top());
        cairo_rotate(context, std::numbers::pi / 2);
        break;
    }
    cairo_scale(context, layout.zoom, layout.zoom);
    const QSizeF size = layout.body.size() / layout.zoom;
    draw(isLandscape(orientation) ? size.transposed() : size);
    cairo_restore(context);
}

void drawSideButtons(cairo_t* context, const DeviceType& type, const QSizeF& body) {
    setColour(context, rimDark);
    if (type.isTablet()) {
        addRoundedRectangle(context, {body.width() - 92, -4, 56, 8}, 3);
        addRoundedRectangle(context, {34, -4, 46, 8}, 3);
        addRoundedRectangle(context, {88, -4, 46, 8}, 3);
    } else {
        addRoundedRectangle(context, {-4, 118, 8, 30}, 3);
        addRoundedRectangle(context, {-4, 176, 8, 58}, 3);
        addRoundedRectangle(context, {-4, 248, 8, 58}, 3);
        addRoundedRectangle(context, {body.width() - 4, 196, 8, 92}, 3);
    }
    cairo_fill(context);
}

void drawBody(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, const QSizeF& body) {
    drawSideButtons(context, type, body);
    const QRectF outline(QPointF(0, 0), body);
    const double thinnest = 1 / layout.zoom;
    addRoundedRectangle(context, outline, bodyRadius(type));
    cairo_pattern_t* rim = cairo_pattern_create_linear(0, 0, body.width(), body.height());
    cairo_pattern_add_color_stop_rgb(rim, 0, rimLight.red, rimLight.green, rimLight.blue);
    cairo_pattern_add_color_stop_rgb(rim, 0.5, rimDark.red, rimDark.green, rimDark.blue);
    cairo_pattern_add_color_stop_rgb(rim, 1, rimLight.red, rimLight.green, rimLight.blue);
    cairo_set_source(context, rim);
    cairo_fill(context);
    cairo_pattern_destroy(rim);
    const double edge = std::max(3.5, thinnest);
    addRoundedRectangle(context, outline.adjusted(edge, edge, -edge, -edge), bodyRadius(type) - edge);
    setColour(context, bodyColour);
    cairo_fill(context);
    if (type.shape == DeviceShape::homeButton) {
        setColour(context, {0.30, 0.31, 0.33});
        cairo_set_line_width(context, std::max(2.0, thinnest));
        cairo_arc(context, body.width() / 2, body.height() - 46, 29, 0, 2 * std::numbers::pi);
        cairo_stroke(context);
        setColour(context, {0.16, 0.165, 0.18});
        addRoundedRectangle(context, {body.width() / 2 - 32, 43, 64, 7}, 3.5);
        cairo_fill(context);
    } else if (type.isTablet()) {
        setColour(context, {0.10, 0.105, 0.12});
        cairo_arc(context, body.width() - 15, body.height() / 2, 4.5, 0, 2 * std::numbers::pi);
        cairo_fill(context);
    }
}

void drawIsland(cairo_t* context, const QSizeF& body) {
    setColour(context, {0, 0, 0});
    addRoundedRectangle(
        context, {(body.width() - islandSize.width()) / 2, phoneBorder + 12, islandSize.width(), islandSize.height()},
        islandSize.height() / 2);
    cairo_fill(context);
    setColour(context, {0.055, 0.065, 0.10});
    cairo_arc(context, (body.width() + islandSize.width()) / 2 - islandSize.height() / 2,
              phoneBorder + 12 + islandSize.height() / 2, 7, 0, 2 * std::numbers::pi);
    cairo_fill(context);
}

void drawHomeIndicator(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, const DeviceLook& look) {
    if (type.shape == DeviceShape::homeButton) {
        return;
    }
    const double zoom = layout.zoom;
    const double width = (type.isTablet() ? 280 : isLandscape(look.orientation) ? 230 : 140) * zoom;
    if (layout.page.bottom() + 1 >= static_cast<int>(layout.screen.bottom())) {
        // Over a page of any colour.
        cairo_set_source_rgba(context, 0.46, 0.46, 0.48, 0.9);
    } else {
        setColour(context, inkColour(look.isDark));
    }
    addRoundedRectangle(context,
                        {layout.screen.center().x() - width / 2, layout.screen.bottom() - 13 * zoom, width, 5 * zoom},
                        2.5 * zoom);
    cairo_fill(context);
}

/// Everything but the screen.
void drawSurroundings(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, QSize area,
                      const DeviceLook& look) {
    cairo_pattern_t* surround = cairo_pattern_create_linear(0, 0, 0, area.height());
    cairo_pattern_add_color_stop_rgb(surround, 0, surroundTop.red, surroundTop.green, surroundTop.blue);
    cairo_pattern_add_color_stop_rgb(surround, 1, surroundBottom.red, surroundBottom.green, surroundBottom.blue);
    cairo_set_source(context, surround);
    cairo_paint(context);
    cairo_pattern_destroy(surround);
    upright(context, layout, look.orientation, [&](const QSizeF& body) { drawBody(context, type, layout, body); });
}

} // namespace

void addScreenOutline(cairo_t* context, const DeviceType& type, const DeviceLayout& layout) {
    addRoundedRectangle(context, layout.screen, screenRadius(type) * layout.zoom);
}

void drawSquareCorners(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, const DeviceLook& look) {
    if (screenRadius(type) <= 0) {
        return;
    }
    cairo_save(context);
    constexpr double overlap = 3;
    cairo_rectangle(context, layout.screen.x(), layout.screen.y(), layout.screen.width(), layout.screen.height());
    // A little over the screen's own edge, which is blended with what is behind it.
    addRoundedRectangle(context, layout.screen, (screenRadius(type) + overlap) * layout.zoom);
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_EVEN_ODD);
    setColour(context, barColour(look.isDark));
    cairo_fill(context);
    cairo_restore(context);
}

void drawDevice(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, QSize area,
                const DeviceLook& look) {
    drawSurroundings(context, type, layout, area, look);
    addScreenOutline(context, type, layout);
    setColour(context, barColour(look.isDark));
    cairo_fill(context);
    drawStatusBar(context, type, layout, look.statusBar, look.isDark);
}

void drawOverScreen(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, const DeviceLook& look) {
    drawHomeIndicator(context, type, layout, look);
    if (type.shape == DeviceShape::island) {
        upright(context, layout, look.orientation, [&](const QSizeF& body) { drawIsland(context, body); });
    }
}

void drawScreenCorners(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, QSize area,
                       const DeviceLook& look) {
    if (screenRadius(type) <= 0) {
        return;
    }
    cairo_save(context);
    // A pixel more, as the page ends on whole pixels and the screen between them. What is seen there is the body and,
    // where its own corner is rounder, what is around it.
    const QRect screen = layout.screen.adjusted(-1, -1, 1, 1).toAlignedRect();
    cairo_rectangle(context, screen.x(), screen.y(), screen.width(), screen.height());
    cairo_clip(context);
    // Blended once where the outline divides a pixel: each of the layers by itself would leave a trace of those below.
    cairo_push_group(context);
    drawSurroundings(context, type, layout, area, look);
    cairo_pop_group_to_source(context);
    cairo_rectangle(context, screen.x(), screen.y(), screen.width(), screen.height());
    addRoundedRectangle(context, layout.screen, screenRadius(type) * layout.zoom);
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_EVEN_ODD);
    cairo_fill(context);
    cairo_restore(context);
}

} // namespace corvanta::lab
