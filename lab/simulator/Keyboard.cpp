// SPDX-License-Identifier: MIT
#include "Keyboard.h"

#include <QStringList>

#include <gtk/gtk.h>

#include <algorithm>
#include <numbers>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

// Keys that are not characters, apart from all key values.
constexpr unsigned shiftKey = 0xF0000001;
constexpr unsigned layerKey = 0xF0000002;
constexpr unsigned dismissKey = 0xF0000003;

void addRounded(cairo_t* context, const QRectF& area, double radius) {
    constexpr double quarter = std::numbers::pi / 2;
    cairo_new_sub_path(context);
    cairo_arc(context, area.right() - radius, area.top() + radius, radius, -quarter, 0);
    cairo_arc(context, area.right() - radius, area.bottom() - radius, radius, 0, quarter);
    cairo_arc(context, area.left() + radius, area.bottom() - radius, radius, quarter, 2 * quarter);
    cairo_arc(context, area.left() + radius, area.top() + radius, radius, 2 * quarter, 3 * quarter);
    cairo_close_path(context);
}

void drawLabel(cairo_t* context, const QString& label, const QRectF& place, double size) {
    PangoLayout* text = pango_cairo_create_layout(context);
    PangoFontDescription* font = pango_font_description_from_string("Sans");
    pango_font_description_set_absolute_size(font, size * PANGO_SCALE);
    pango_layout_set_font_description(text, font);
    pango_layout_set_text(text, label.toUtf8().constData(), -1);
    int width = 0;
    int height = 0;
    pango_layout_get_pixel_size(text, &width, &height);
    cairo_move_to(context, place.center().x() - width / 2.0, place.center().y() - height / 2.0);
    pango_cairo_show_layout(context, text);
    pango_font_description_free(font);
    g_object_unref(text);
}

} // namespace

Keyboard::Keyboard(std::function<void(unsigned)> typed, std::function<void()> dismissed)
    : m_typed(std::move(typed))
    , m_dismissed(std::move(dismissed))
    , m_area(gtk_drawing_area_new()) {
    gtk_widget_set_no_show_all(m_area, TRUE);
    gtk_widget_add_events(m_area, GDK_BUTTON_PRESS_MASK);
    AtkObject* accessible = gtk_widget_get_accessible(m_area);
    atk_object_set_name(accessible, "Keyboard");
    atk_object_set_role(accessible, ATK_ROLE_PANEL);
    const auto drawn = +[](GtkWidget*, cairo_t* context, gpointer keyboard) -> gboolean {
        static_cast<Keyboard*>(keyboard)->draw(context);
        return TRUE;
    };
    g_signal_connect(m_area, "draw", G_CALLBACK(drawn), this);
    const auto pressed = +[](GtkWidget*, GdkEventButton* event, gpointer keyboard) -> gboolean {
        if (event->type == GDK_BUTTON_PRESS && event->button == GDK_BUTTON_PRIMARY) {
            static_cast<Keyboard*>(keyboard)->press(event->x, event->y);
        }
        return TRUE;
    };
    g_signal_connect(m_area, "button-press-event", G_CALLBACK(pressed), this);
}

Keyboard::~Keyboard() {
    g_signal_handlers_disconnect_by_data(m_area, this);
}

void Keyboard::setShown(bool isShown) {
    m_isShown = isShown;
    m_isShifted = false;
    m_showsDigits = false;
    gtk_widget_set_visible(m_area, isShown ? TRUE : FALSE);
}

void Keyboard::setDark(bool isDark) {
    m_isDark = isDark;
    gtk_widget_queue_draw(m_area);
}

void Keyboard::setScale(double scale, int indicator) {
    m_scale = scale;
    m_indicator = indicator;
    gtk_widget_queue_draw(m_area);
}

void Keyboard::arrange(double width, double height) {
    m_keys.clear();
    const double unit = m_scale;
    const double top = 42 * unit;
    const double rows = (height - top - m_indicator * unit) / 4;
    const double gap = 3 * unit;
    const double keyWidth = width / 10;
    const auto add = [&](double x, double row, double keys, const QString& label, unsigned value) {
        m_keys.push_back({QRectF(x, top + row * rows, keys * keyWidth, rows).adjusted(gap, gap * 1.4, -gap, -gap * 1.4),
                          label, value});
    };
    const auto addRow = [&](double row, double start, const QString& letters) {
        for (qsizetype index = 0; index < letters.size(); ++index) {
            const QChar letter = m_isShifted ? letters[index].toUpper() : letters[index];
            add((start + double(index)) * keyWidth, row, 1, QString(letter), gdk_unicode_to_keyval(letter.unicode()));
        }
    };
    if (m_showsDigits) {
        addRow(0, 0, u"1234567890"_s);
        addRow(1, 0, u"-/:;()$&@\""_s);
        addRow(2, 1.75, u".,?!'#+"_s.left(6));
    } else {
        addRow(0, 0, u"qwertyuiop"_s);
        addRow(1, 0.5, u"asdfghjkl"_s);
        addRow(2, 1.5, u"zxcvbnm"_s);
        add(0, 2, 1.35, u"⇧"_s, shiftKey);
    }
    add(8.65 * keyWidth, 2, 1.35, u"⌫"_s, GDK_KEY_BackSpace);
    add(0, 3, 2.4, m_showsDigits ? u"ABC"_s : u"123"_s, layerKey);
    add(2.4 * keyWidth, 3, 5.2, u"space"_s, GDK_KEY_space);
    add(7.6 * keyWidth, 3, 2.4, u"return"_s, GDK_KEY_Return);
    m_keys.push_back({QRectF(width - 70 * unit, 4 * unit, 60 * unit, 34 * unit), u"Done"_s, dismissKey});
}

void Keyboard::draw(cairo_t* context) {
    const double width = gtk_widget_get_allocated_width(m_area);
    const double height = gtk_widget_get_allocated_height(m_area);
    arrange(width, height);
    const auto grey = [&](double light, double dark) {
        const double value = m_isDark ? dark : light;
        cairo_set_source_rgb(context, value, value, value + 0.012);
    };
    grey(0.82, 0.165);
    cairo_paint(context);
    for (const Key& key : m_keys) {
        if (key.value == dismissKey) {
            cairo_set_source_rgb(context, m_isDark ? 0.25 : 0.0, m_isDark ? 0.60 : 0.40, m_isDark ? 1.0 : 0.85);
            drawLabel(context, key.label, key.place, std::max(7.0, 16 * m_scale));
            continue;
        }
        const bool isSpecial = key.value == shiftKey || key.value == layerKey || key.value == GDK_KEY_BackSpace ||
                               key.value == GDK_KEY_Return;
        const bool isOn = key.value == shiftKey && m_isShifted;
        const double radius = 5 * m_scale;
        cairo_set_source_rgba(context, 0, 0, 0, 0.28);
        addRounded(context, key.place.translated(0, std::max(0.6, m_scale)), radius);
        cairo_fill(context);
        isSpecial && !isOn ? grey(0.675, 0.275) : grey(0.988, 0.42);
        addRounded(context, key.place, radius);
        cairo_fill(context);
        grey(0.04, 0.98);
        drawLabel(context, key.label, key.place,
                  std::max(7.0, (key.label.size() > 1 ? 15.0 : 22.0) * m_scale * (height < 230 * m_scale ? 0.85 : 1)));
    }
}

void Keyboard::press(double x, double y) {
    const auto found = std::ranges::find_if(m_keys, [&](const Key& key) { return key.place.contains(x, y); });
    if (found == m_keys.end()) {
        return;
    }
    const unsigned value = found->value;
    gtk_widget_queue_draw(m_area);
    if (value == shiftKey) {
        m_isShifted = !m_isShifted;
    } else if (value == layerKey) {
        m_showsDigits = !m_showsDigits;
    } else if (value == dismissKey) {
        m_dismissed();
    } else {
        m_isShifted = false;
        m_typed(value);
    }
}

} // namespace corvanta::lab
