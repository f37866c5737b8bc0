// SPDX-License-Identifier: MIT
#include "StatusBarDrawing.h"

#include "DrawingTools.h"

#include <QLocale>
#include <QTime>

#include <pango/pangocairo.h>

#include <algorithm>
#include <numbers>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

using Radio = StatusBarContent::Radio;
using Battery = StatusBarContent::Battery;

/// Of what stands for something that is not there.
constexpr double dimmed = 0.3;
constexpr int lowBattery = 20;
constexpr Colour green{0.20, 0.78, 0.35};
constexpr Colour red{1.0, 0.23, 0.19};

/// One row of the status bar, filled from a side to the middle.
struct Row {
    cairo_t* context = nullptr;
    double middle = 0;
    /// Window pixels of the signs' own unit.
    double unit = 1;
    Colour ink;
};

/// Answers the width. An alignment of 0 begins at the place, 1 ends there.
double drawText(const Row& row, const QString& text, double x, double height, double alignment) {
    PangoLayout* layout = pango_cairo_create_layout(row.context);
    PangoFontDescription* font = pango_font_description_from_string("Sans Bold");
    pango_font_description_set_absolute_size(font, std::max(5.0, height) * PANGO_SCALE);
    pango_layout_set_font_description(layout, font);
    pango_layout_set_text(layout, text.toUtf8().constData(), -1);
    int width = 0;
    int textHeight = 0;
    pango_layout_get_pixel_size(layout, &width, &textHeight);
    setColour(row.context, row.ink);
    cairo_move_to(row.context, x - width * alignment, row.middle - textHeight / 2.0);
    pango_cairo_show_layout(row.context, layout);
    pango_font_description_free(font);
    g_object_unref(layout);
    return width;
}

/// Ends at `right`; answers the width.
double drawBattery(const Row& row, const StatusBarContent& content, double right) {
    const double unit = row.unit;
    const QRectF shell(right - 27 * unit, row.middle - 6 * unit, 24 * unit, 12 * unit);
    setColour(row.context, row.ink);
    cairo_set_line_width(row.context, std::max(0.75, unit));
    addRoundedRectangle(row.context, shell, 3.5 * unit);
    cairo_stroke(row.context);
    addRoundedRectangle(row.context, {right - 1.8 * unit, row.middle - 2 * unit, 1.8 * unit, 4 * unit}, unit);
    cairo_fill(row.context);
    QRectF charge = shell.adjusted(2 * unit, 2 * unit, -2 * unit, -2 * unit);
    charge.setWidth(charge.width() * content.batteryLevel / 100);
    const bool isPlugged = content.battery != Battery::discharging;
    setColour(row.context, isPlugged ? green : content.batteryLevel <= lowBattery ? red : row.ink);
    addRoundedRectangle(row.context, charge, 2 * unit);
    cairo_fill(row.context);
    if (isPlugged) {
        // A bolt.
        const double x = shell.center().x();
        setColour(row.context, row.ink);
        cairo_move_to(row.context, x + 1.5 * unit, row.middle - 5 * unit);
        cairo_line_to(row.context, x - 3.5 * unit, row.middle + 0.8 * unit);
        cairo_line_to(row.context, x - 0.3 * unit, row.middle + 0.8 * unit);
        cairo_line_to(row.context, x - 1.5 * unit, row.middle + 5 * unit);
        cairo_line_to(row.context, x + 3.5 * unit, row.middle - 0.8 * unit);
        cairo_line_to(row.context, x + 0.3 * unit, row.middle - 0.8 * unit);
        cairo_close_path(row.context);
        cairo_fill(row.context);
    }
    return 27 * unit;
}

/// Ends at `right`; answers the width.
double drawWireless(const Row& row, int bars, double right) {
    const double unit = row.unit;
    const double x = right - 8.5 * unit;
    const double y = row.middle + 5.5 * unit;
    cairo_save(row.context);
    cairo_set_line_width(row.context, 2.2 * unit);
    int bar = 3;
    for (const double radius : {10.0, 6.2}) {
        setColour(row.context, row.ink, bars >= bar-- ? 1 : dimmed);
        cairo_new_sub_path(row.context);
        cairo_arc(row.context, x, y, radius * unit, -std::numbers::pi * 0.75, -std::numbers::pi * 0.25);
        cairo_stroke(row.context);
    }
    setColour(row.context, row.ink, bars >= bar ? 1 : dimmed);
    cairo_move_to(row.context, x, y);
    cairo_arc(row.context, x, y, 3.2 * unit, -std::numbers::pi * 0.75, -std::numbers::pi * 0.25);
    cairo_close_path(row.context);
    cairo_fill(row.context);
    cairo_restore(row.context);
    return 17 * unit;
}

/// Begins at `left`; answers the width.
double drawSignal(const Row& row, int bars, double left) {
    for (int bar = 0; bar < 4; ++bar) {
        const double height = (4 + 2.6 * bar) * row.unit;
        setColour(row.context, row.ink, bar < bars ? 1 : dimmed);
        addRoundedRectangle(row.context,
                            {left + bar * 5 * row.unit, row.middle + 6 * row.unit - height, 3.4 * row.unit, height},
                            row.unit);
        cairo_fill(row.context);
    }
    return 18.4 * row.unit;
}

/// The wireless network's sign or the data network's name; ends at `right`. Answers the width, 0 for none.
double drawNetwork(const Row& row, const StatusBarContent& content, double right) {
    if (content.dataNetwork == u"hide") {
        return 0;
    }
    if (content.dataNetwork != u"wifi") {
        return drawText(row, content.dataNetwork, right, 13 * row.unit, 1);
    }
    return content.wireless == Radio::none ? 0 : drawWireless(row, content.wirelessBars, right);
}

/// A tablet has no cellular radio, and tells the date and the charge in words.
void drawTabletRow(const Row& row, const StatusBarContent& content, const QString& time, double left, double right,
                   double height) {
    const QDate date = content.date.isValid() ? content.date : QDate::currentDate();
    drawText(row, time + u"  "_s + QLocale::c().toString(date, u"ddd MMM d"_s), left, height, 0);
    double x = right - drawBattery(row, content, right) - 5 * row.unit;
    x -= drawText(row, QString::number(content.batteryLevel) + u'%', x, height, 1) + 7 * row.unit;
    drawNetwork(row, content, x);
}

/// A phone with a home button has its networks to the left and the time in the middle.
void drawHomeButtonRow(const Row& row, const StatusBarContent& content, const QString& time, double left, double right,
                       double height) {
    const double gap = 5 * row.unit;
    drawText(row, time, (left + right) / 2, height, 0.5);
    drawBattery(row, content, right);
    if (content.cellular != Radio::none) {
        left += drawSignal(row, content.cellularBars, left) + gap;
    }
    const QString name = content.cellular == Radio::searching ? u"Searching…"_s
                         : content.cellular == Radio::failed  ? u"No Service"_s
                                                              : content.operatorName;
    if (!name.isEmpty()) {
        left += drawText(row, name, left, height, 0) + gap;
    }
    if (content.dataNetwork == u"wifi") {
        drawNetwork(row, content, left + 17 * row.unit);
    } else if (content.dataNetwork != u"hide") {
        drawText(row, content.dataNetwork, left, height, 0);
    }
}

} // namespace

void drawStatusBar(cairo_t* context, const DeviceType& type, const DeviceLayout& layout,
                   const StatusBarContent& content, bool isDark) {
    const QRectF& bar = layout.statusBar;
    if (bar.height() <= 0) {
        return;
    }
    const double zoom = layout.zoom;
    const bool hasIsland = type.shape == DeviceShape::island;
    const Row row{.context = context,
                  .middle = bar.center().y() + (hasIsland ? 1.5 * zoom : 0),
                  .unit = zoom * (hasIsland ? 1.0 : 0.75),
                  .ink = inkColour(isDark)};
    const double inset = (hasIsland ? 34 : type.isTablet() ? 18 : 8) * zoom;
    const double left = bar.left() + inset;
    const double right = bar.right() - inset;
    const double smallText = 12.5 * zoom;
    const QString time = content.time.isEmpty() ? QTime::currentTime().toString(u"H:mm"_s) : content.time;
    if (type.isTablet()) {
        drawTabletRow(row, content, time, left, right, smallText);
        return;
    }
    if (!hasIsland) {
        drawHomeButtonRow(row, content, time, left, right, smallText);
        return;
    }
    // The time is in the middle of the room beside the island.
    drawText(row, time, bar.left() + (bar.width() - islandSize.width() * zoom) / 4 + 4 * zoom, 17 * zoom, 0.5);
    double x = right - drawBattery(row, content, right) - 5 * row.unit;
    if (const double width = drawNetwork(row, content, x); width > 0) {
        x -= width + 5 * row.unit;
    }
    if (content.cellular != Radio::none) {
        drawSignal(row, content.cellularBars, x - 18.4 * row.unit);
    }
}

} // namespace corvanta::lab
