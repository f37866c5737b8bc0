// SPDX-License-Identifier: MIT
#include "DeviceDrawing.h"

#include <QDateTime>
#include <QTime>

#include <pango/pangocairo.h>

#include <algorithm>
#include <numbers>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

struct Colour {
    double red = 0;
    double green = 0;
    double blue = 0;
};

constexpr Colour surroundTop{0.165, 0.175, 0.195};
constexpr Colour surroundBottom{0.115, 0.122, 0.138};
constexpr Colour bodyColour{0.035, 0.037, 0.042};
constexpr Colour rimColour{0.42, 0.43, 0.45};
constexpr Colour barColour{0.969, 0.969, 0.976};
constexpr Colour inkColour{0.06, 0.06, 0.07};

void setColour(cairo_t* context, const Colour& colour) {
    cairo_set_source_rgb(context, colour.red, colour.green, colour.blue);
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

void drawClock(cairo_t* context, const QString& time, const QRectF& area, double x, double height) {
    PangoLayout* text = pango_cairo_create_layout(context);
    PangoFontDescription* font = pango_font_description_from_string("Sans Bold");
    pango_font_description_set_absolute_size(font, std::max(5.0, height) * PANGO_SCALE);
    pango_layout_set_font_description(text, font);
    const QString shown = time.isEmpty() ? QTime::currentTime().toString(u"H:mm"_s) : time;
    pango_layout_set_text(text, shown.toUtf8().constData(), -1);
    int textWidth = 0;
    int textHeight = 0;
    pango_layout_get_pixel_size(text, &textWidth, &textHeight);
    setColour(context, inkColour);
    cairo_move_to(context, x < 0 ? area.center().x() - textWidth / 2.0 : x, area.center().y() - textHeight / 2.0);
    pango_cairo_show_layout(context, text);
    pango_font_description_free(font);
    g_object_unref(text);
}

void drawBattery(cairo_t* context, int level, double right, double middle, double unit) {
    const QRectF shell(right - 27 * unit, middle - 6 * unit, 24 * unit, 12 * unit);
    setColour(context, inkColour);
    cairo_set_line_width(context, std::max(0.75, unit));
    addRoundedRectangle(context, shell, 3.5 * unit);
    cairo_stroke(context);
    QRectF charge = shell.adjusted(2 * unit, 2 * unit, -2 * unit, -2 * unit);
    charge.setWidth(charge.width() * level / 100);
    addRoundedRectangle(context, charge, 2 * unit);
    addRoundedRectangle(context, {right - 1.8 * unit, middle - 2 * unit, 1.8 * unit, 4 * unit}, unit);
    cairo_fill(context);
}

void drawSignal(cairo_t* context, int bars, double right, double middle, double unit) {
    setColour(context, inkColour);
    for (int bar = 0; bar < bars; ++bar) {
        const double height = (4 + 2.6 * bar) * unit;
        addRoundedRectangle(context, {right - (4 - bar) * 5 * unit, middle + 6 * unit - height, 3.4 * unit, height},
                            unit);
    }
    cairo_fill(context);
}

void drawStatusBar(cairo_t* context, const DeviceType& type, const DeviceLayout& layout,
                   const StatusBarContent& content) {
    const double unit = layout.zoom * (type.shape == DeviceShape::island ? 1.0 : 0.75);
    const QRectF& bar = layout.statusBar;
    const double middle = bar.center().y();
    const double inset = (type.shape == DeviceShape::island ? 34 : 10) * layout.zoom;
    if (type.shape == DeviceShape::homeButton) {
        drawClock(context, content.time, bar, -1, 13 * layout.zoom);
    } else {
        drawClock(context, content.time, bar, bar.left() + inset, 17 * unit);
    }
    drawBattery(context, content.batteryLevel, bar.right() - inset, middle, unit);
    drawSignal(context, content.cellularBars, bar.right() - inset - 33 * unit, middle, unit);
    if (type.shape == DeviceShape::island) {
        const double width = 122 * layout.zoom;
        const double height = 35 * layout.zoom;
        cairo_set_source_rgb(context, 0, 0, 0);
        addRoundedRectangle(context, {bar.center().x() - width / 2, bar.top() + 13 * layout.zoom, width, height},
                            height / 2);
        cairo_fill(context);
    }
}

void drawHome(cairo_t* context, const DeviceType& type, const DeviceLayout& layout) {
    const double zoom = layout.zoom;
    if (type.shape == DeviceShape::homeButton) {
        const double y = (layout.screen.bottom() + layout.body.bottom()) / 2;
        setColour(context, {0.25, 0.26, 0.28});
        cairo_set_line_width(context, std::max(1.0, 2 * zoom));
        cairo_arc(context, layout.body.center().x(), y, 30 * zoom, 0, 2 * std::numbers::pi);
        cairo_stroke(context);
    } else if (type.shape == DeviceShape::island) {
        const double width = 140 * zoom;
        setColour(context, inkColour);
        addRoundedRectangle(
            context, {layout.screen.center().x() - width / 2, layout.screen.bottom() - 13 * zoom, width, 5 * zoom},
            2.5 * zoom);
        cairo_fill(context);
    }
}

} // namespace

StatusBarContent StatusBarContent::of(const QMap<QString, QString>& overrides) {
    StatusBarContent content;
    const QString time = overrides.value(u"time"_s);
    const QDateTime moment = QDateTime::fromString(time, Qt::ISODate);
    content.time = moment.isValid() ? moment.time().toString(u"H:mm"_s) : time;
    content.batteryLevel = std::clamp(overrides.value(u"batteryLevel"_s, u"100"_s).toInt(), 0, 100);
    content.cellularBars = std::clamp(overrides.value(u"cellularBars"_s, u"4"_s).toInt(), 0, 4);
    return content;
}

void addScreenOutline(cairo_t* context, const DeviceType& type, const DeviceLayout& layout) {
    addRoundedRectangle(context, layout.screen, screenRadius(type) * layout.zoom);
}

void drawSquareCorners(cairo_t* context, const DeviceType& type, const DeviceLayout& layout) {
    if (screenRadius(type) <= 0) {
        return;
    }
    cairo_save(context);
    constexpr double overlap = 3;
    cairo_rectangle(context, layout.screen.x(), layout.screen.y(), layout.screen.width(), layout.screen.height());
    // A little over the screen's own edge, which is blended with what is behind it.
    addRoundedRectangle(context, layout.screen, (screenRadius(type) + overlap) * layout.zoom);
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_EVEN_ODD);
    setColour(context, barColour);
    cairo_fill(context);
    cairo_restore(context);
}

void drawDevice(cairo_t* context, const DeviceType& type, const DeviceLayout& layout, QSize area,
                const StatusBarContent& statusBar) {
    cairo_pattern_t* surround = cairo_pattern_create_linear(0, 0, 0, area.height());
    cairo_pattern_add_color_stop_rgb(surround, 0, surroundTop.red, surroundTop.green, surroundTop.blue);
    cairo_pattern_add_color_stop_rgb(surround, 1, surroundBottom.red, surroundBottom.green, surroundBottom.blue);
    cairo_set_source(context, surround);
    cairo_paint(context);
    cairo_pattern_destroy(surround);

    addRoundedRectangle(context, layout.body, bodyRadius(type) * layout.zoom);
    setColour(context, bodyColour);
    cairo_fill_preserve(context);
    setColour(context, rimColour);
    cairo_set_line_width(context, std::max(1.0, 2.5 * layout.zoom));
    cairo_stroke(context);

    addScreenOutline(context, type, layout);
    setColour(context, barColour);
    cairo_fill(context);
    drawStatusBar(context, type, layout, statusBar);
    drawHome(context, type, layout);
}

void drawScreenCorners(cairo_t* context, const DeviceType& type, const DeviceLayout& layout) {
    const double radius = screenRadius(type) * layout.zoom;
    addRoundedRectangle(context, layout.body, bodyRadius(type) * layout.zoom);
    cairo_clip(context);
    cairo_rectangle(context, layout.screen.x(), layout.screen.y(), layout.screen.width(), layout.screen.height());
    addRoundedRectangle(context, layout.screen, radius);
    cairo_set_fill_rule(context, CAIRO_FILL_RULE_EVEN_ODD);
    setColour(context, bodyColour);
    cairo_fill(context);
}

} // namespace corvanta::lab
