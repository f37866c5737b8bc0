// SPDX-License-Identifier: MIT
#include "BrowserPages.h"

#include "DeviceLayout.h"
#include "PageShims.h"

#include <QUrl>

#include <webkit2/webkit2.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

/// Keeps the page's viewport at the model's width whatever width the view gets.
void followAllocation(GtkWidget* view, GdkRectangle* allocation, gpointer viewportWidth) {
    const double zoom = pageZoom(allocation->width, GPOINTER_TO_INT(viewportWidth));
    if (allocation->width > 1 && std::abs(webkit_web_view_get_zoom_level(WEBKIT_WEB_VIEW(view)) - zoom) > 1e-9) {
        webkit_web_view_set_zoom_level(WEBKIT_WEB_VIEW(view), zoom);
    }
}

gboolean answerPermission(WebKitWebView*, WebKitPermissionRequest* request, gpointer feed) {
    if (WEBKIT_IS_GEOLOCATION_PERMISSION_REQUEST(request) && static_cast<LocationFeed*>(feed)->isAllowed()) {
        // Also without a location, as a refusal would stick to the page: the feed tells that there is none.
        webkit_permission_request_allow(request);
    } else {
        webkit_permission_request_deny(request);
    }
    return TRUE;
}

gboolean suppressContextMenu(WebKitWebView*, WebKitContextMenu*, GdkEvent*, WebKitHitTestResult*, gpointer) {
    // A phone has none, and its "Inspect Element" would put a second inspector on a page, which ends the pages'
    // process.
    return TRUE;
}

WebKitSettings* makeSettings(const DeviceType& type, const Runtime& runtime) {
    WebKitSettings* settings = webkit_settings_new();
    webkit_settings_set_user_agent(settings, userAgent(type, runtime).toUtf8().constData());
    webkit_settings_set_enable_site_specific_quirks(settings, FALSE);
    webkit_settings_set_enable_developer_extras(settings, TRUE);
    webkit_settings_set_javascript_can_open_windows_automatically(settings, TRUE);
    webkit_settings_set_enable_back_forward_navigation_gestures(settings, FALSE);
    // Pages work without a graphics processor; with one, compositing fails on virtual displays.
    webkit_settings_set_hardware_acceleration_policy(settings, WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER);
    return settings;
}

} // namespace

struct BrowserPages::Page {
    GtkWidget* container = nullptr;
    GtkWidget* view = nullptr;
    /// The last address; the engine forgets it when the page's process ends.
    QString address;

    [[nodiscard]] WebKitWebView* web() const { return WEBKIT_WEB_VIEW(view); }
};

BrowserPages::BrowserPages(const DeviceType& type, const Runtime& runtime, std::function<void()> changed,
                           std::function<void()> ready)
    : m_type(type)
    , m_changed(std::move(changed))
    , m_ready(std::move(ready))
    , m_context(webkit_web_context_new_ephemeral())
    , m_settings(makeSettings(type, runtime))
    , m_content(webkit_user_content_manager_new())
    , m_location(std::make_unique<LocationFeed>(m_context))
    , m_stack(gtk_stack_new()) {
    WebKitUserScript* shims = webkit_user_script_new(pageShims(type).constData(), WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                                                     WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, nullptr, nullptr);
    webkit_user_content_manager_add_script(m_content, shims);
    webkit_user_script_unref(shims);
    gtk_stack_set_homogeneous(GTK_STACK(m_stack), FALSE);
    makeStartPage(runtime);
    warmUp();
}

BrowserPages::~BrowserPages() {
    for (const auto& page : m_pages) {
        g_signal_handlers_disconnect_by_data(page->view, this);
    }
    m_location.reset();
    g_object_unref(m_content);
    g_object_unref(m_settings);
    g_object_unref(m_context);
}

GtkWidget* BrowserPages::makeView(WebKitSettings* settings) const {
    auto* view = static_cast<GtkWidget*>(g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", m_context, "settings",
                                                      settings, "user-content-manager", m_content, nullptr));
    g_signal_connect(view, "size-allocate", G_CALLBACK(followAllocation), GINT_TO_POINTER(m_type.viewport.width()));
    g_signal_connect(view, "context-menu", G_CALLBACK(suppressContextMenu), nullptr);
    return view;
}

void BrowserPages::makeStartPage(const Runtime& runtime) {
    // Not a web page: that would be inspectable, and a fresh device has no page to offer in the browser's menu.
    m_startPage = gtk_box_new(GTK_ORIENTATION_VERTICAL, 8);
    gtk_style_context_add_class(gtk_widget_get_style_context(m_startPage), "start-page");
    const auto addLine = [this](const QString& text, const char* style) {
        GtkWidget* const label = gtk_label_new(text.toUtf8().constData());
        gtk_label_set_line_wrap(GTK_LABEL(label), TRUE);
        gtk_label_set_justify(GTK_LABEL(label), GTK_JUSTIFY_CENTER);
        gtk_style_context_add_class(gtk_widget_get_style_context(label), style);
        gtk_container_add(GTK_CONTAINER(m_startPage), label);
    };
    addLine(m_type.name, "start-page-title");
    addLine(runtime.name, "start-page-text");
    addLine(QStringLiteral("No page is open."), "start-page-text");
    gtk_widget_set_valign(m_startPage, GTK_ALIGN_CENTER);
    gtk_container_add(GTK_CONTAINER(m_stack), m_startPage);
    gtk_widget_show_all(m_stack);
}

void BrowserPages::warmUp() {
    // The first page of a context starts its processes, which belongs to booting; the view is not needed after that.
    GtkWidget* const view = makeView(m_settings);
    gtk_container_add(GTK_CONTAINER(m_stack), view);
    const auto loaded = +[](WebKitWebView* warm, WebKitLoadEvent event, gpointer pages) {
        auto* self = static_cast<BrowserPages*>(pages);
        if (event != WEBKIT_LOAD_FINISHED || !self->m_ready) {
            return;
        }
        const auto remove = +[](gpointer finished) -> gboolean {
            gtk_widget_destroy(GTK_WIDGET(finished));
            return G_SOURCE_REMOVE;
        };
        g_idle_add_full(G_PRIORITY_DEFAULT, remove, g_object_ref(warm), g_object_unref);
        std::exchange(self->m_ready, nullptr)();
    };
    g_signal_connect(view, "load-changed", G_CALLBACK(loaded), this);
    const auto terminated = +[](WebKitWebView*, WebKitWebProcessTerminationReason, gpointer pages) {
        if (static_cast<BrowserPages*>(pages)->m_ready) {
            // Without its engine the device would be booting for ever.
            g_printerr("SimulatorDevice: the web engine ended while the device was booting\n");
            _exit(EXIT_FAILURE);
        }
    };
    g_signal_connect(view, "web-process-terminated", G_CALLBACK(terminated), this);
    webkit_web_view_load_plain_text(WEBKIT_WEB_VIEW(view), "");
}

BrowserPages::Page* BrowserPages::front() const {
    return m_pages.empty() ? nullptr : m_pages[m_current].get();
}

BrowserPages::Page* BrowserPages::pageOf(const GtkWidget* view) const {
    const auto found = std::ranges::find_if(m_pages, [&](const auto& page) { return page->view == view; });
    return found == m_pages.end() ? nullptr : found->get();
}

void BrowserPages::connectView(GtkWidget* view) {
    const auto moved = +[](GObject* web, GParamSpec*, gpointer pages) {
        auto* self = static_cast<BrowserPages*>(pages);
        const char* uri = webkit_web_view_get_uri(WEBKIT_WEB_VIEW(web));
        if (Page* page = self->pageOf(GTK_WIDGET(web)); page != nullptr && uri != nullptr && *uri != '\0') {
            page->address = QString::fromUtf8(uri);
        }
        self->m_changed();
    };
    g_signal_connect(view, "notify::uri", G_CALLBACK(moved), this);
    const auto loadChanged =
        +[](WebKitWebView*, WebKitLoadEvent, gpointer pages) { static_cast<BrowserPages*>(pages)->m_changed(); };
    g_signal_connect(view, "load-changed", G_CALLBACK(loadChanged), this);
    g_signal_connect(view, "permission-request", G_CALLBACK(answerPermission), m_location.get());
    const auto create = +[](WebKitWebView* opener, WebKitNavigationAction*, gpointer pages) -> GtkWidget* {
        auto* self = static_cast<BrowserPages*>(pages);
        auto* opened =
            static_cast<GtkWidget*>(g_object_new(WEBKIT_TYPE_WEB_VIEW, "related-view", opener, "settings",
                                                 self->m_settings, "user-content-manager", self->m_content, nullptr));
        g_signal_connect(opened, "size-allocate", G_CALLBACK(followAllocation),
                         GINT_TO_POINTER(self->m_type.viewport.width()));
        g_signal_connect(opened, "context-menu", G_CALLBACK(suppressContextMenu), nullptr);
        self->add(opened);
        return opened;
    };
    g_signal_connect(view, "create", G_CALLBACK(create), this);
    const auto closed = +[](WebKitWebView* web, gpointer pages) {
        auto* self = static_cast<BrowserPages*>(pages);
        if (const Page* page = self->pageOf(GTK_WIDGET(web))) {
            self->close(*page);
        }
    };
    g_signal_connect(view, "close", G_CALLBACK(closed), this);
    const auto crashed = +[](WebKitWebView* web, WebKitWebProcessTerminationReason, gpointer pages) {
        auto* self = static_cast<BrowserPages*>(pages);
        if (Page* page = self->pageOf(GTK_WIDGET(web))) {
            self->showCrash(*page);
        }
    };
    g_signal_connect(view, "web-process-terminated", G_CALLBACK(crashed), this);
}

BrowserPages::Page& BrowserPages::add(GtkWidget* view) {
    connectView(view);
    auto page = std::make_unique<Page>();
    page->view = view;
    page->container = gtk_stack_new();
    gtk_stack_set_homogeneous(GTK_STACK(page->container), FALSE);
    gtk_container_add(GTK_CONTAINER(page->container), view);
    gtk_widget_show_all(page->container);
    gtk_container_add(GTK_CONTAINER(m_stack), page->container);
    m_pages.push_back(std::move(page));
    show(m_pages.size() - 1);
    if (!m_pageSize.isEmpty()) {
        // The page may read its viewport before the next layout of the window.
        gtk_widget_get_preferred_size(view, nullptr, nullptr);
        GdkRectangle area{0, 0, m_pageSize.width(), m_pageSize.height()};
        gtk_widget_size_allocate(view, &area);
    }
    return *m_pages.back();
}

void BrowserPages::show(std::size_t index) {
    m_current = index;
    gtk_stack_set_visible_child(GTK_STACK(m_stack), m_pages.empty() ? m_startPage : m_pages[index]->container);
    m_changed();
}

void BrowserPages::open(const QString& url) {
    Page& page = add(makeView(m_settings));
    page.address = url;
    webkit_web_view_load_uri(page.web(), url.toUtf8().constData());
}

void BrowserPages::step(int distance) {
    if (m_pages.empty()) {
        return;
    }
    const auto size = static_cast<long>(m_pages.size());
    show(static_cast<std::size_t>(((static_cast<long>(m_current) + distance) % size + size) % size));
    focus();
}

void BrowserPages::close(const Page& page) {
    const auto found = std::ranges::find_if(m_pages, [&](const auto& other) { return other.get() == &page; });
    const auto index = static_cast<std::size_t>(found - m_pages.begin());
    const std::unique_ptr<Page> closed = std::move(*found);
    m_pages.erase(found);
    g_signal_handlers_disconnect_by_data(closed->view, this);
    if (m_current > index || (m_current == m_pages.size() && m_current > 0)) {
        --m_current;
    }
    show(m_current);
    gtk_widget_destroy(closed->container);
}

void BrowserPages::closeCurrent() {
    if (const Page* page = front()) {
        close(*page);
    }
}

void BrowserPages::reload() {
    if (const Page* page = front()) {
        gtk_stack_set_visible_child(GTK_STACK(page->container), page->view);
        if (webkit_web_view_get_uri(page->web()) != nullptr) {
            webkit_web_view_reload(page->web());
        } else {
            webkit_web_view_load_uri(page->web(), page->address.toUtf8().constData());
        }
    }
}

void BrowserPages::showCrash(Page& page) {
    GtkWidget* message = gtk_stack_get_child_by_name(GTK_STACK(page.container), "crash");
    if (message == nullptr) {
        message = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
        gtk_style_context_add_class(gtk_widget_get_style_context(message), "crash");
        gtk_widget_set_valign(message, GTK_ALIGN_FILL);
        GtkWidget* text = gtk_label_new("This page ended unexpectedly.");
        gtk_label_set_line_wrap(GTK_LABEL(text), TRUE);
        gtk_label_set_justify(GTK_LABEL(text), GTK_JUSTIFY_CENTER);
        GtkWidget* button = gtk_button_new_with_label("Reload");
        gtk_widget_set_halign(button, GTK_ALIGN_CENTER);
        const auto clicked = +[](GtkButton*, gpointer pages) { static_cast<BrowserPages*>(pages)->reload(); };
        g_signal_connect(button, "clicked", G_CALLBACK(clicked), this);
        GtkWidget* group = gtk_box_new(GTK_ORIENTATION_VERTICAL, 12);
        gtk_container_add(GTK_CONTAINER(group), text);
        gtk_container_add(GTK_CONTAINER(group), button);
        gtk_box_set_center_widget(GTK_BOX(message), group);
        gtk_widget_show_all(message);
        gtk_stack_add_named(GTK_STACK(page.container), message, "crash");
    }
    gtk_stack_set_visible_child(GTK_STACK(page.container), message);
}

void BrowserPages::goBack() {
    if (const Page* page = front()) {
        webkit_web_view_go_back(page->web());
    }
}

void BrowserPages::goForward() {
    if (const Page* page = front()) {
        webkit_web_view_go_forward(page->web());
    }
}

void BrowserPages::focus() {
    if (const Page* page = front()) {
        gtk_widget_grab_focus(page->view);
    }
}

bool BrowserPages::canGoBack() const {
    const Page* page = front();
    return page != nullptr && webkit_web_view_can_go_back(page->web()) != FALSE;
}

bool BrowserPages::canGoForward() const {
    const Page* page = front();
    return page != nullptr && webkit_web_view_can_go_forward(page->web()) != FALSE;
}

QString BrowserPages::address() const {
    const Page* page = front();
    if (page == nullptr) {
        return {};
    }
    const QString host = QUrl(page->address).host();
    return host.isEmpty() ? page->address.left(200) : host;
}

} // namespace corvanta::lab
