// SPDX-License-Identifier: MIT
#include "SheetLayer.h"

#include "ShownText.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <string>
#include <utility>

namespace corvanta::lab {

namespace {

constexpr int sheetWidth = 270;

GtkWidget* addLabel(GtkWidget* box, const QString& text, const char* style) {
    GtkWidget* label = gtk_label_new(shownText(text.toStdString()).c_str());
    gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
    gtk_label_set_line_wrap_mode(GTK_LABEL(label), PANGO_WRAP_WORD_CHAR);
    gtk_label_set_justify(GTK_LABEL(label), GTK_JUSTIFY_CENTER);
    gtk_label_set_max_width_chars(GTK_LABEL(label), 1);
    gtk_label_set_lines(GTK_LABEL(label), 12);
    gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
    gtk_widget_set_hexpand(label, TRUE);
    gtk_style_context_add_class(gtk_widget_get_style_context(label), style);
    gtk_container_add(GTK_CONTAINER(box), label);
    return label;
}

} // namespace

SheetLayer::SheetLayer()
    : m_style(gtk_css_provider_new())
    , m_backdrop(gtk_event_box_new()) {
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(m_style),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION + 1);
    gtk_style_context_add_class(gtk_widget_get_style_context(m_backdrop), "sheet-backdrop");
    gtk_widget_set_no_show_all(m_backdrop, TRUE);
    const auto key = +[](GtkWidget*, GdkEventKey* event, gpointer layer) -> gboolean {
        auto* self = static_cast<SheetLayer*>(layer);
        const bool isReturn = event->keyval == GDK_KEY_Return || event->keyval == GDK_KEY_KP_Enter;
        if (self->m_sheets.empty() || (!isReturn && event->keyval != GDK_KEY_Escape)) {
            return FALSE;
        }
        GtkWidget* top = gtk_widget_get_toplevel(self->m_backdrop);
        GtkWidget* focused = GTK_IS_WINDOW(top) ? gtk_window_get_focus(GTK_WINDOW(top)) : nullptr;
        if (isReturn && focused != nullptr && GTK_IS_BUTTON(focused)) {
            return FALSE;
        }
        return self->pressFor(isReturn ? &Sheet::Button::isDefault : &Sheet::Button::isCancel) ? TRUE : FALSE;
    };
    g_signal_connect(m_backdrop, "key-press-event", G_CALLBACK(key), this);
}

SheetLayer::~SheetLayer() {
    if (m_pressing != 0) {
        g_source_remove(m_pressing);
    }
    gtk_style_context_remove_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(m_style));
    g_object_unref(m_style);
}

void SheetLayer::show(Sheet sheet) {
    if (sheet.content != nullptr) {
        g_object_ref_sink(sheet.content);
    }
    m_sheets.push_back(std::move(sheet));
    if (m_sheets.size() == 1) {
        present();
    }
}

void SheetLayer::abandon(const void* asker) {
    std::list<Sheet> abandoned;
    const bool isFront = !m_sheets.empty() && m_sheets.front().asker == asker;
    for (auto sheet = m_sheets.begin(); sheet != m_sheets.end();) {
        const auto next = std::next(sheet);
        if (sheet->asker == asker) {
            abandoned.splice(abandoned.end(), m_sheets, sheet);
        }
        sheet = next;
    }
    if (isFront) {
        present();
    }
    for (const Sheet& sheet : abandoned) {
        if (sheet.abandoned) {
            sheet.abandoned();
        }
        g_clear_object(const_cast<GtkWidget**>(&sheet.content));
    }
}

bool SheetLayer::pressFor(bool Sheet::Button::* purpose) {
    const auto& buttons = m_sheets.front().buttons;
    const auto found = std::ranges::find(buttons, true, purpose);
    if (found == buttons.end()) {
        return false;
    }
    press(static_cast<std::size_t>(found - buttons.begin()));
    return true;
}

void SheetLayer::pressDefaultLater() {
    if (m_pressing != 0) {
        return;
    }
    const auto press = +[](gpointer layer) -> gboolean {
        auto* self = static_cast<SheetLayer*>(layer);
        self->m_pressing = 0;
        if (!self->m_sheets.empty()) {
            self->pressFor(&Sheet::Button::isDefault);
        }
        return G_SOURCE_REMOVE;
    };
    m_pressing = g_idle_add(press, this);
}

void SheetLayer::abandonAll() {
    while (!m_sheets.empty()) {
        abandon(m_sheets.front().asker);
    }
}

void SheetLayer::press(std::size_t button) {
    Sheet sheet = std::move(m_sheets.front());
    m_sheets.pop_front();
    const QString text = m_entry == nullptr ? QString() : QString::fromUtf8(gtk_entry_get_text(GTK_ENTRY(m_entry)));
    // Before the next sheet, as the answer may lie in what this one holds.
    if (sheet.buttons[button].pressed) {
        sheet.buttons[button].pressed(text);
    }
    present();
    g_clear_object(&sheet.content);
}

void SheetLayer::present() {
    if (m_card != nullptr) {
        gtk_widget_destroy(std::exchange(m_card, nullptr));
        m_entry = nullptr;
    }
    if (m_sheets.empty()) {
        gtk_widget_hide(m_backdrop);
        return;
    }
    const Sheet& sheet = m_sheets.front();
    m_card = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_style_context_add_class(gtk_widget_get_style_context(m_card), "sheet");
    gtk_widget_set_halign(m_card, GTK_ALIGN_CENTER);
    gtk_widget_set_valign(m_card, GTK_ALIGN_CENTER);
    AtkObject* accessible = gtk_widget_get_accessible(m_card);
    atk_object_set_role(accessible, ATK_ROLE_ALERT);
    const std::string title = shownText(sheet.title.toStdString());
    atk_object_set_name(accessible, title.c_str());
    GtkWidget* body = gtk_box_new(GTK_ORIENTATION_VERTICAL, 4);
    gtk_style_context_add_class(gtk_widget_get_style_context(body), "sheet-body");
    if (!sheet.title.isEmpty()) {
        addLabel(body, sheet.title, "sheet-title");
    }
    if (!sheet.text.isEmpty()) {
        addLabel(body, sheet.text, "sheet-text");
    }
    if (sheet.entry) {
        m_entry = gtk_entry_new();
        gtk_entry_set_text(GTK_ENTRY(m_entry), sheet.entry->toUtf8().constData());
        gtk_entry_set_width_chars(GTK_ENTRY(m_entry), 1);
        atk_object_set_name(gtk_widget_get_accessible(m_entry), title.c_str());
        gtk_container_add(GTK_CONTAINER(body), m_entry);
    }
    if (sheet.content != nullptr) {
        gtk_container_add(GTK_CONTAINER(body), sheet.content);
    }
    gtk_container_add(GTK_CONTAINER(m_card), body);
    const bool isRow = sheet.buttons.size() == 2 &&
                       std::ranges::all_of(sheet.buttons, [](const auto& button) { return button.label.size() < 12; });
    GtkWidget* row = gtk_box_new(isRow ? GTK_ORIENTATION_HORIZONTAL : GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_set_homogeneous(GTK_BOX(row), TRUE);
    GtkWidget* focused = sheet.focused != nullptr ? sheet.focused : m_entry;
    for (std::size_t index = 0; index < sheet.buttons.size(); ++index) {
        GtkWidget* button = gtk_button_new_with_label(sheet.buttons[index].label.toUtf8().constData());
        GtkStyleContext* style = gtk_widget_get_style_context(button);
        gtk_style_context_add_class(style, "sheet-button");
        gtk_style_context_add_class(style, isRow && index > 0 ? "beside" : "below");
        if (sheet.buttons[index].isDefault) {
            gtk_style_context_add_class(style, "sheet-default");
            focused = focused == nullptr ? button : focused;
        }
        g_object_set_data(G_OBJECT(button), "index", GUINT_TO_POINTER(guint(index)));
        const auto clicked = +[](GtkButton* pressed, gpointer layer) {
            const guint index = GPOINTER_TO_UINT(g_object_get_data(G_OBJECT(pressed), "index"));
            // The button is taken apart with its sheet, so not from within its own signal.
            g_object_ref(pressed);
            static_cast<SheetLayer*>(layer)->press(index);
            g_object_unref(pressed);
        };
        g_signal_connect(button, "clicked", G_CALLBACK(clicked), this);
        gtk_container_add(GTK_CONTAINER(row), button);
    }
    gtk_container_add(GTK_CONTAINER(m_card), row);
    gtk_container_add(GTK_CONTAINER(m_backdrop), m_card);
    gtk_widget_show_all(m_card);
    gtk_widget_set_no_show_all(m_backdrop, FALSE);
    gtk_widget_show(m_backdrop);
    gtk_widget_set_no_show_all(m_backdrop, TRUE);
    gtk_widget_set_size_request(m_card, int(sheetWidth * m_scale), -1);
    if (focused != nullptr) {
        gtk_widget_grab_focus(focused);
    }
}

void SheetLayer::setScale(double scale) {
    m_scale = scale;
    const auto pixels = [&](double size, int least = 0) {
        return QByteArray::number(std::max(least, static_cast<int>(size * scale))) + "px";
    };
    const QByteArray style = ".sheet { border-radius: " + pixels(14) + "; } .sheet-body { padding: " + pixels(18) +
                             " " + pixels(16) + "; } .sheet-title { font-size: " + pixels(17, 8) +
                             "; } .sheet-text, .sheet entry, .sheet-body * { font-size: " + pixels(13, 8) +
                             "; } .sheet-body .sheet-title { font-size: " + pixels(17, 8) +
                             "; } .sheet-button { padding: " + pixels(10) + " " + pixels(8) +
                             "; } .sheet-button label { font-size: " + pixels(17, 8) + "; }";
    gtk_css_provider_load_from_data(m_style, style.constData(), style.size(), nullptr);
    if (m_card != nullptr) {
        gtk_widget_set_size_request(m_card, int(sheetWidth * m_scale), -1);
    }
}

} // namespace corvanta::lab
