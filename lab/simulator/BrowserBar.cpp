// SPDX-License-Identifier: MIT
#include "BrowserBar.h"

#include "BrowserPages.h"
#include "ShownText.h"

#include <QUrl>

#include <gtk/gtk.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

/// What a person typed as an address; sites without a scheme are asked for securely, those of this machine plainly.
QString typedAddress(const QString& typed) {
    const QString text = typed.trimmed();
    if (text.isEmpty() || text.contains(u"://") || text.startsWith(u"about:") || text.startsWith(u"data:")) {
        return text;
    }
    const QString host = QUrl(u"http://"_s + text).host();
    const bool isHere = host == u"localhost" || host.endsWith(u".localhost") || host.startsWith(u"127.") ||
                        host == u"::1" || host.startsWith(u"192.168.") || host.startsWith(u"10.");
    return (isHere ? u"http://"_s : u"https://"_s) + text;
}

void addClass(GtkWidget* widget, const char* name) {
    gtk_style_context_add_class(gtk_widget_get_style_context(widget), name);
}

} // namespace

BrowserBar::BrowserBar(const DeviceType& type, BrowserPages& pages, std::function<void()> showPages)
    : m_pages(pages)
    , m_showPages(std::move(showPages))
    , m_isTablet(type.isTablet())
    , m_isOneRow(m_isTablet)
    , m_sideRoom(type.shape == DeviceShape::island ? type.statusBar : 0)
    , m_style(gtk_css_provider_new())
    , m_box(gtk_box_new(GTK_ORIENTATION_VERTICAL, 0))
    , m_pill(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0))
    , m_buttons(gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 0))
    , m_addressStack(gtk_stack_new())
    , m_addressButton(gtk_button_new())
    , m_address(gtk_label_new(""))
    , m_entry(gtk_entry_new()) {
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(m_style),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION + 1);
    addClass(m_box, "browser-bar");
    addClass(m_pill, "address");
    gtk_label_set_ellipsize(GTK_LABEL(m_address), PANGO_ELLIPSIZE_MIDDLE);
    gtk_label_set_max_width_chars(GTK_LABEL(m_address), 40);
    gtk_container_add(GTK_CONTAINER(m_addressButton), m_address);
    gtk_button_set_relief(GTK_BUTTON(m_addressButton), GTK_RELIEF_NONE);
    gtk_entry_set_width_chars(GTK_ENTRY(m_entry), 1);
    gtk_entry_set_has_frame(GTK_ENTRY(m_entry), FALSE);
    gtk_entry_set_placeholder_text(GTK_ENTRY(m_entry), "Enter website name");
    atk_object_set_name(gtk_widget_get_accessible(m_entry), "Address");
    gtk_stack_add_named(GTK_STACK(m_addressStack), m_addressButton, "shown");
    gtk_stack_add_named(GTK_STACK(m_addressStack), m_entry, "edited");
    gtk_box_pack_start(GTK_BOX(m_pill), m_addressStack, TRUE, TRUE, 0);

    m_back = addButton("go-previous-symbolic", "Back", &BrowserBar::goBack);
    m_forward = addButton("go-next-symbolic", "Forward", &BrowserBar::goForward);
    m_reload = addButton("view-refresh-symbolic", "Reload", &BrowserBar::reload);
    m_new = addButton("list-add-symbolic", "New Page", &BrowserBar::newPage);
    m_switch = addButton(nullptr, "Pages", &BrowserBar::showPages);
    m_count = gtk_label_new("0");
    addClass(m_count, "page-count");
    gtk_widget_set_halign(m_count, GTK_ALIGN_CENTER);
    gtk_widget_set_valign(m_count, GTK_ALIGN_CENTER);
    gtk_container_add(GTK_CONTAINER(m_switch), m_count);
    gtk_box_pack_end(GTK_BOX(m_pill), m_reload, FALSE, FALSE, 0);

    const auto edit = +[](GtkButton*, gpointer bar) { static_cast<BrowserBar*>(bar)->editAddress(); };
    g_signal_connect(m_addressButton, "clicked", G_CALLBACK(edit), this);
    const auto entered = +[](GtkEntry* entry, gpointer bar) {
        auto* self = static_cast<BrowserBar*>(bar);
        const QString address = typedAddress(QString::fromUtf8(gtk_entry_get_text(entry)));
        self->endEditing();
        if (!address.isEmpty()) {
            self->m_pages.go(address);
            self->m_pages.focus();
        }
    };
    g_signal_connect(m_entry, "activate", G_CALLBACK(entered), this);
    const auto key = +[](GtkWidget*, GdkEventKey* event, gpointer bar) -> gboolean {
        if (event->keyval == GDK_KEY_Escape) {
            static_cast<BrowserBar*>(bar)->endEditing();
            return TRUE;
        }
        return FALSE;
    };
    g_signal_connect(m_entry, "key-press-event", G_CALLBACK(key), this);
    const auto left = +[](GtkWidget*, GdkEvent*, gpointer bar) -> gboolean {
        static_cast<BrowserBar*>(bar)->endEditing();
        return FALSE;
    };
    g_signal_connect(m_entry, "focus-out-event", G_CALLBACK(left), this);

    for (GtkWidget* widget : std::array{m_pill, m_buttons, m_back, m_forward, m_new, m_switch}) {
        g_object_ref_sink(widget);
    }
    arrange();
    gtk_widget_show_all(m_box);
}

BrowserBar::~BrowserBar() {
    g_signal_handlers_disconnect_by_data(m_entry, this);
    for (GtkWidget* widget : std::array{m_pill, m_buttons, m_back, m_forward, m_new, m_switch}) {
        g_object_unref(widget);
    }
    gtk_style_context_remove_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(m_style));
    g_object_unref(m_style);
}

GtkWidget* BrowserBar::addButton(const char* icon, const char* name, void (BrowserBar::*action)()) {
    struct Press {
        BrowserBar& bar;
        void (BrowserBar::*action)();
    };

    GtkWidget* button = gtk_button_new();
    if (icon != nullptr) {
        gtk_container_add(GTK_CONTAINER(button), gtk_image_new_from_icon_name(icon, GTK_ICON_SIZE_BUTTON));
    }
    gtk_button_set_relief(GTK_BUTTON(button), GTK_RELIEF_NONE);
    gtk_widget_set_focus_on_click(button, FALSE);
    gtk_widget_set_tooltip_text(button, name);
    atk_object_set_name(gtk_widget_get_accessible(button), name);
    const auto pressed = +[](GtkButton*, gpointer data) {
        const Press press = *static_cast<Press*>(data);
        (press.bar.*press.action)();
    };
    const auto forget = +[](gpointer data, GClosure*) { delete static_cast<Press*>(data); };
    g_signal_connect_data(button, "clicked", G_CALLBACK(pressed), new Press{*this, action}, forget, GConnectFlags(0));
    return button;
}

void BrowserBar::arrange() {
    for (GtkWidget* widget : std::array{m_pill, m_buttons, m_back, m_forward, m_new, m_switch}) {
        if (GtkWidget* parent = gtk_widget_get_parent(widget)) {
            gtk_container_remove(GTK_CONTAINER(parent), widget);
        }
    }
    GtkBox* const box = GTK_BOX(m_box);
    gtk_orientable_set_orientation(GTK_ORIENTABLE(m_box),
                                   m_isOneRow ? GTK_ORIENTATION_HORIZONTAL : GTK_ORIENTATION_VERTICAL);
    gtk_box_set_homogeneous(box, m_isOneRow ? FALSE : TRUE);
    GtkBox* const buttons = m_isOneRow ? box : GTK_BOX(m_buttons);
    gtk_box_set_homogeneous(GTK_BOX(m_buttons), TRUE);
    const gboolean spread = m_isOneRow ? FALSE : TRUE;
    if (!m_isOneRow) {
        gtk_box_pack_start(box, m_pill, TRUE, TRUE, 0);
        gtk_box_pack_start(box, m_buttons, TRUE, TRUE, 0);
    }
    gtk_box_pack_start(buttons, m_back, spread, TRUE, 0);
    gtk_box_pack_start(buttons, m_forward, spread, TRUE, 0);
    if (m_isOneRow) {
        gtk_box_pack_start(box, m_pill, TRUE, TRUE, 0);
    }
    gtk_box_pack_start(buttons, m_new, spread, TRUE, 0);
    gtk_box_pack_start(buttons, m_switch, spread, TRUE, 0);
    gtk_widget_show_all(m_box);
}

void BrowserBar::setOrientation(Orientation orientation) {
    const bool isOneRow = m_isTablet || isLandscape(orientation);
    if (isOneRow != m_isOneRow) {
        m_isOneRow = isOneRow;
        m_scale = 0;
        endEditing();
        arrange();
    }
}

void BrowserBar::update() {
    const QString address = m_pages.address();
    const std::string text = address.isEmpty() ? "Start Page" : shownLine(address.toStdString());
    gtk_label_set_text(GTK_LABEL(m_address), text.c_str());
    atk_object_set_name(gtk_widget_get_accessible(m_addressButton), ("Address: " + text).c_str());
    const std::size_t count = m_pages.count();
    gtk_label_set_text(GTK_LABEL(m_count), QByteArray::number(qulonglong(count)).constData());
    const QByteArray spoken =
        count == 1 ? QByteArray("Pages: 1 open") : "Pages: " + QByteArray::number(qulonglong(count)) + " open";
    atk_object_set_name(gtk_widget_get_accessible(m_switch), spoken.constData());
    gtk_widget_set_sensitive(m_back, m_pages.canGoBack());
    gtk_widget_set_sensitive(m_forward, m_pages.canGoForward());
    gtk_widget_set_sensitive(m_reload, count > 0);
    gtk_widget_set_sensitive(m_switch, count > 0);
}

void BrowserBar::setScale(double scale) {
    if (std::abs(scale - m_scale) < 1e-6) {
        return;
    }
    m_scale = scale;
    for (GtkWidget* button : std::array{m_back, m_forward, m_reload, m_new}) {
        const double size = button == m_reload ? 16 : 20;
        gtk_image_set_pixel_size(GTK_IMAGE(gtk_bin_get_child(GTK_BIN(button))), std::max(6, int(size * scale)));
    }
    const auto pixels = [&](double size) {
        return QByteArray::number(std::max(0, static_cast<int>(size * scale))) + "px";
    };
    const QByteArray ends = pixels(m_isOneRow ? (m_isTablet ? 10 : m_sideRoom + 4) : 0);
    const QByteArray style = ".browser-bar { padding: 0 " + ends +
                             "; }"
                             ".browser-bar label, .browser-bar entry { font-size: " +
                             QByteArray::number(std::max(6, int(16 * scale))) +
                             "px; }"
                             ".browser-bar .address { margin: " +
                             pixels(m_isOneRow ? 7 : 4) + " " + pixels(m_isOneRow ? 10 : 12) + "; padding: 0 " +
                             pixels(6) + "; border-radius: " + pixels(11) +
                             "; }"
                             ".browser-bar .one-row { padding: 0 " +
                             pixels(10) +
                             "; }"
                             ".browser-bar .page-count { font-size: " +
                             QByteArray::number(std::max(5, int(12 * scale))) + "px; padding: 0 " + pixels(5) +
                             "; border-radius: " + pixels(5) + "; }";
    gtk_css_provider_load_from_data(m_style, style.constData(), style.size(), nullptr);
    for (GtkWidget* button : std::array{m_back, m_forward, m_new, m_switch}) {
        gtk_widget_set_size_request(button, m_isOneRow ? int(44 * scale) : -1, -1);
    }
}

void BrowserBar::editAddress() {
    const WebPage* page = m_pages.front();
    gtk_entry_set_text(GTK_ENTRY(m_entry), page == nullptr ? "" : page->address().toUtf8().constData());
    gtk_stack_set_visible_child_name(GTK_STACK(m_addressStack), "edited");
    gtk_widget_grab_focus(m_entry);
}

void BrowserBar::endEditing() {
    gtk_stack_set_visible_child_name(GTK_STACK(m_addressStack), "shown");
}

void BrowserBar::newPage() {
    m_pages.open(u"about:blank"_s);
    editAddress();
}

void BrowserBar::showPages() {
    m_showPages();
}

void BrowserBar::goBack() {
    m_pages.goBack();
}

void BrowserBar::goForward() {
    m_pages.goForward();
}

void BrowserBar::reload() {
    m_pages.reload();
}

} // namespace corvanta::lab
