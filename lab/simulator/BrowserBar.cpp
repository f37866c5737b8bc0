// SPDX-License-Identifier: MIT
#include "BrowserBar.h"

#include "BrowserPages.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <array>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

GtkWidget* makeButton(GtkWidget* box, const char* icon, const char* name) {
    GtkWidget* button = gtk_button_new();
    gtk_container_add(GTK_CONTAINER(button), gtk_image_new_from_icon_name(icon, GTK_ICON_SIZE_BUTTON));
    gtk_button_set_relief(GTK_BUTTON(button), GTK_RELIEF_NONE);
    gtk_widget_set_focus_on_click(button, FALSE);
    gtk_widget_set_tooltip_text(button, name);
    atk_object_set_name(gtk_widget_get_accessible(button), name);
    gtk_box_pack_start(GTK_BOX(box), button, TRUE, TRUE, 0);
    return button;
}

} // namespace

BrowserBar::BrowserBar(const DeviceType& type, BrowserPages& pages)
    : m_pages(pages)
    , m_isTablet(type.isTablet())
    , m_style(gtk_css_provider_new())
    , m_box(gtk_box_new(m_isTablet ? GTK_ORIENTATION_HORIZONTAL : GTK_ORIENTATION_VERTICAL, 0)) {
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(m_style),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION + 1);
    gtk_style_context_add_class(gtk_widget_get_style_context(m_box), "browser-bar");
    GtkWidget* pill = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
    gtk_style_context_add_class(gtk_widget_get_style_context(pill), "address");
    GtkWidget* buttons = m_isTablet ? m_box : gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0);
    if (!m_isTablet) {
        gtk_box_pack_start(GTK_BOX(m_box), pill, TRUE, TRUE, 0);
        gtk_box_pack_start(GTK_BOX(m_box), buttons, TRUE, TRUE, 0);
        gtk_box_set_homogeneous(GTK_BOX(m_box), TRUE);
    }
    m_back = addButton(buttons, "go-previous-symbolic", "Back", &BrowserPages::goBack);
    m_forward = addButton(buttons, "go-next-symbolic", "Forward", &BrowserPages::goForward);
    if (m_isTablet) {
        gtk_box_pack_start(GTK_BOX(m_box), pill, TRUE, TRUE, 0);
    }
    m_address = gtk_label_new("");
    gtk_label_set_ellipsize(GTK_LABEL(m_address), PANGO_ELLIPSIZE_MIDDLE);
    gtk_label_set_width_chars(GTK_LABEL(m_address), m_isTablet ? 24 : 1);
    gtk_box_pack_start(GTK_BOX(pill), m_address, TRUE, TRUE, 0);
    m_reload = addButton(pill, "view-refresh-symbolic", "Reload", &BrowserPages::reload);
    gtk_box_set_child_packing(GTK_BOX(pill), m_reload, FALSE, FALSE, 0, GTK_PACK_START);
    m_previous = addStep(buttons, "pan-start-symbolic", "Previous Page", -1);
    m_count = gtk_label_new("");
    gtk_box_pack_start(GTK_BOX(buttons), m_count, TRUE, TRUE, 0);
    m_next = addStep(buttons, "pan-end-symbolic", "Next Page", 1);
    m_close = addButton(buttons, "window-close-symbolic", "Close Page", &BrowserPages::closeCurrent);
    gtk_widget_show_all(m_box);
}

BrowserBar::~BrowserBar() {
    gtk_style_context_remove_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(m_style));
    g_object_unref(m_style);
}

GtkWidget* BrowserBar::addButton(GtkWidget* box, const char* icon, const char* name, void (BrowserPages::*action)()) {
    struct Press {
        BrowserPages& pages;
        void (BrowserPages::*action)();
    };

    GtkWidget* button = makeButton(box, icon, name);
    const auto pressed = +[](GtkButton*, gpointer data) {
        const Press press = *static_cast<Press*>(data);
        (press.pages.*press.action)();
    };
    const auto forget = +[](gpointer data, GClosure*) { delete static_cast<Press*>(data); };
    g_signal_connect_data(button, "clicked", G_CALLBACK(pressed), new Press{m_pages, action}, forget, GConnectFlags(0));
    return button;
}

GtkWidget* BrowserBar::addStep(GtkWidget* box, const char* icon, const char* name, int distance) {
    return distance < 0 ? addButton(box, icon, name, &BrowserPages::showPrevious)
                        : addButton(box, icon, name, &BrowserPages::showNext);
}

void BrowserBar::update() {
    const QString address = m_pages.address();
    const QByteArray text = (address.isEmpty() ? u"Start Page"_s : address).toUtf8();
    gtk_label_set_text(GTK_LABEL(m_address), text.constData());
    atk_object_set_name(gtk_widget_get_accessible(m_address), ("Address: " + text).constData());
    const std::size_t count = m_pages.count();
    const QByteArray position = count == 0 ? QByteArray("0")
                                           : QByteArray::number(qulonglong(m_pages.current() + 1)) + "/" +
                                                 QByteArray::number(qulonglong(count));
    gtk_label_set_text(GTK_LABEL(m_count), position.constData());
    const QByteArray spoken = count == 1 ? QByteArray("1 page") : QByteArray::number(qulonglong(count)) + " pages";
    atk_object_set_name(gtk_widget_get_accessible(m_count), spoken.constData());
    gtk_widget_set_sensitive(m_back, m_pages.canGoBack());
    gtk_widget_set_sensitive(m_forward, m_pages.canGoForward());
    gtk_widget_set_sensitive(m_reload, count > 0);
    gtk_widget_set_sensitive(m_close, count > 0);
    gtk_widget_set_sensitive(m_previous, count > 1);
    gtk_widget_set_sensitive(m_next, count > 1);
}

void BrowserBar::setScale(double scale) {
    const int icon = std::max(6, static_cast<int>(17 * scale));
    if (icon == m_iconSize) {
        return;
    }
    m_iconSize = icon;
    for (GtkWidget* button : std::array{m_back, m_forward, m_reload, m_previous, m_next, m_close}) {
        gtk_image_set_pixel_size(GTK_IMAGE(gtk_bin_get_child(GTK_BIN(button))), icon);
    }
    const auto pixels = [&](double size) {
        return QByteArray::number(std::max(0, static_cast<int>(size * scale))) + "px";
    };
    const QByteArray style = ".browser-bar label { font-size: " + QByteArray::number(std::max(6, int(16 * scale))) +
                             "px; } .browser-bar .address { margin: " + pixels(5) + " " + pixels(12) + "; padding: 0 " +
                             pixels(8) + "; border-radius: " + pixels(11) + "; }";
    gtk_css_provider_load_from_data(m_style, style.constData(), style.size(), nullptr);
}

} // namespace corvanta::lab
