// SPDX-License-Identifier: MIT
#include "PageOverview.h"

#include "BrowserPages.h"
#include "ShownText.h"

#include <webkit2/webkit2.h>

#include <algorithm>
#include <string>

namespace corvanta::lab {

namespace {

constexpr int pageCardWidth = 160;
constexpr int pageCardHeight = 200;

void addClass(GtkWidget* widget, const char* name) {
    gtk_style_context_add_class(gtk_widget_get_style_context(widget), name);
}

guint indexOf(GtkWidget* widget) {
    return GPOINTER_TO_UINT(g_object_get_data(G_OBJECT(widget), "index"));
}

/// Fills the card's picture once the engine has made it.
void showPicture(GObject* view, GAsyncResult* result, gpointer data) {
    auto* const image = static_cast<GtkWidget*>(data);
    cairo_surface_t* picture = webkit_web_view_get_snapshot_finish(WEBKIT_WEB_VIEW(view), result, nullptr);
    if (picture != nullptr && gtk_widget_get_parent(image) != nullptr) {
        int width = 0;
        int height = 0;
        gtk_widget_get_size_request(image, &width, &height);
        const int pictureWidth = cairo_image_surface_get_width(picture);
        cairo_surface_t* scaled = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
        cairo_t* context = cairo_create(scaled);
        cairo_set_source_rgb(context, 1, 1, 1);
        cairo_paint(context);
        const double scale = double(width) / std::max(1, pictureWidth);
        cairo_scale(context, scale, scale);
        cairo_surface_set_device_scale(picture, 1, 1);
        cairo_set_source_surface(context, picture, 0, 0);
        cairo_pattern_set_filter(cairo_get_source(context), CAIRO_FILTER_GOOD);
        cairo_paint(context);
        cairo_destroy(context);
        gtk_image_set_from_surface(GTK_IMAGE(image), scaled);
        cairo_surface_destroy(scaled);
    }
    if (picture != nullptr) {
        cairo_surface_destroy(picture);
    }
    g_object_unref(image);
}

} // namespace

PageOverview::PageOverview(BrowserPages& pages)
    : m_pages(pages)
    , m_backdrop(gtk_event_box_new()) {
    addClass(m_backdrop, "overview");
    GtkWidget* column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    GtkWidget* scroller = gtk_scrolled_window_new(nullptr, nullptr);
    gtk_scrolled_window_set_policy(GTK_SCROLLED_WINDOW(scroller), GTK_POLICY_NEVER, GTK_POLICY_AUTOMATIC);
    m_cards = gtk_flow_box_new();
    gtk_flow_box_set_selection_mode(GTK_FLOW_BOX(m_cards), GTK_SELECTION_NONE);
    gtk_flow_box_set_min_children_per_line(GTK_FLOW_BOX(m_cards), 2);
    gtk_flow_box_set_max_children_per_line(GTK_FLOW_BOX(m_cards), 4);
    gtk_flow_box_set_homogeneous(GTK_FLOW_BOX(m_cards), TRUE);
    gtk_widget_set_valign(m_cards, GTK_ALIGN_START);
    gtk_widget_set_halign(m_cards, GTK_ALIGN_CENTER);
    gtk_container_add(GTK_CONTAINER(scroller), m_cards);
    gtk_box_pack_start(GTK_BOX(column), scroller, TRUE, TRUE, 0);
    GtkWidget* done = gtk_button_new_with_label("Done");
    addClass(done, "overview-done");
    gtk_widget_set_halign(done, GTK_ALIGN_END);
    const auto finish = +[](GtkButton*, gpointer overview) { static_cast<PageOverview*>(overview)->hide(); };
    g_signal_connect(done, "clicked", G_CALLBACK(finish), this);
    gtk_box_pack_end(GTK_BOX(column), done, FALSE, FALSE, 0);
    gtk_container_add(GTK_CONTAINER(m_backdrop), column);
    gtk_widget_show_all(column);
    gtk_widget_set_no_show_all(m_backdrop, TRUE);
}

void PageOverview::addCard(unsigned index) {
    WebPage& page = m_pages.at(index);
    GtkWidget* card = gtk_box_new(GTK_ORIENTATION_VERTICAL, 2);
    GtkWidget* overlay = gtk_overlay_new();
    GtkWidget* open = gtk_button_new();
    addClass(open, "overview-card");
    const std::string title = page.title().isEmpty() ? "Untitled" : shownLine(page.title().toStdString());
    atk_object_set_name(gtk_widget_get_accessible(open), title.c_str());
    GtkWidget* image = gtk_image_new();
    gtk_widget_set_size_request(image, int(pageCardWidth * m_scale), int(pageCardHeight * m_scale));
    gtk_container_add(GTK_CONTAINER(open), image);
    gtk_container_add(GTK_CONTAINER(overlay), open);
    GtkWidget* close = gtk_button_new_from_icon_name("window-close-symbolic", GTK_ICON_SIZE_MENU);
    addClass(close, "overview-close");
    gtk_widget_set_halign(close, GTK_ALIGN_END);
    gtk_widget_set_valign(close, GTK_ALIGN_START);
    atk_object_set_name(gtk_widget_get_accessible(close), ("Close " + title).c_str());
    gtk_overlay_add_overlay(GTK_OVERLAY(overlay), close);
    GtkWidget* label = gtk_label_new(title.c_str());
    gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
    gtk_label_set_max_width_chars(GTK_LABEL(label), 1);
    gtk_container_add(GTK_CONTAINER(card), overlay);
    gtk_container_add(GTK_CONTAINER(card), label);
    for (GtkWidget* button : {open, close}) {
        g_object_set_data(G_OBJECT(button), "index", GUINT_TO_POINTER(index));
    }
    const auto opened = +[](GtkButton* button, gpointer overview) {
        auto* self = static_cast<PageOverview*>(overview);
        self->m_pages.show(indexOf(GTK_WIDGET(button)));
        self->hide();
        self->m_pages.focus();
    };
    g_signal_connect(open, "clicked", G_CALLBACK(opened), this);
    const auto closed = +[](GtkButton* button, gpointer overview) {
        auto* self = static_cast<PageOverview*>(overview);
        self->m_pages.close(indexOf(GTK_WIDGET(button)));
        // The cards are made anew, so not from within the signal of one of them.
        const auto again = +[](gpointer data) -> gboolean {
            auto* shown = static_cast<PageOverview*>(data);
            shown->m_pages.count() > 0 ? shown->show() : shown->hide();
            return G_SOURCE_REMOVE;
        };
        g_idle_add(again, overview);
    };
    g_signal_connect(close, "clicked", G_CALLBACK(closed), this);
    gtk_flow_box_insert(GTK_FLOW_BOX(m_cards), card, -1);
    webkit_web_view_get_snapshot(page.view(), WEBKIT_SNAPSHOT_REGION_VISIBLE, WEBKIT_SNAPSHOT_OPTIONS_NONE, nullptr,
                                 showPicture, g_object_ref(image));
}

void PageOverview::show() {
    const auto destroy = +[](GtkWidget* child, gpointer) { gtk_widget_destroy(child); };
    gtk_container_foreach(GTK_CONTAINER(m_cards), destroy, nullptr);
    for (unsigned index = 0; index < m_pages.count(); ++index) {
        addCard(index);
    }
    gtk_widget_show_all(m_cards);
    gtk_widget_show(m_backdrop);
}

void PageOverview::hide() {
    gtk_widget_hide(m_backdrop);
}

bool PageOverview::isShown() const {
    return gtk_widget_get_visible(m_backdrop) != FALSE;
}

} // namespace corvanta::lab
