// SPDX-License-Identifier: MIT
#include "BrowserPages.h"

#include <QUrl>

#include <webkit2/webkit2.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

void enableFeature(WebKitSettings* settings, const char* name) {
    WebKitFeatureList* features = webkit_settings_get_all_features();
    for (gsize index = 0; index < webkit_feature_list_get_length(features); ++index) {
        WebKitFeature* feature = webkit_feature_list_get(features, index);
        if (g_strcmp0(webkit_feature_get_identifier(feature), name) == 0) {
            webkit_settings_set_feature_enabled(settings, feature, TRUE);
        }
    }
    webkit_feature_list_unref(features);
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
    enableFeature(settings, "ScreenOrientationAPI");
    return settings;
}

WebKitWebContext* makeContext() {
    WebKitWebContext* context = webkit_web_context_new_ephemeral();
    const char* const languages[] = {"en-US", nullptr};
    webkit_web_context_set_preferred_languages(context, languages);
    return context;
}

} // namespace

BrowserPages::BrowserPages(const DeviceType& type, const Runtime& runtime, Events events)
    : m_device{.type = type, .context = makeContext(), .settings = makeSettings(type, runtime)}
    , m_events(std::move(events))
    , m_location(std::make_unique<LocationFeed>(m_device.context))
    , m_stack(gtk_stack_new()) {
    gtk_stack_set_homogeneous(GTK_STACK(m_stack), FALSE);
    gtk_style_context_add_class(gtk_widget_get_style_context(m_stack), "pages");
    makeStartPage(runtime);
    warmUp();
}

BrowserPages::~BrowserPages() {
    for (const auto& page : m_pages) {
        m_events.closing(*page);
        g_signal_handlers_disconnect_by_data(page->view(), this);
    }
    m_pages.clear();
    m_location.reset();
    g_object_unref(m_device.settings);
    g_object_unref(m_device.context);
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
    addLine(m_device.type.name, "start-page-title");
    addLine(runtime.name, "start-page-text");
    addLine(QStringLiteral("No page is open."), "start-page-text");
    gtk_widget_set_valign(m_startPage, GTK_ALIGN_CENTER);
    gtk_container_add(GTK_CONTAINER(m_stack), m_startPage);
    gtk_widget_show_all(m_stack);
}

void BrowserPages::warmUp() {
    // The first page of a context starts its processes, which belongs to booting; the view is not needed after that.
    auto* const view = static_cast<GtkWidget*>(
        g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", m_device.context, "settings", m_device.settings, nullptr));
    gtk_container_add(GTK_CONTAINER(m_stack), view);
    const auto loaded = +[](WebKitWebView* warm, WebKitLoadEvent event, gpointer pages) {
        auto* self = static_cast<BrowserPages*>(pages);
        if (event != WEBKIT_LOAD_FINISHED || !self->m_events.ready) {
            return;
        }
        const auto remove = +[](gpointer finished) -> gboolean {
            gtk_widget_destroy(GTK_WIDGET(finished));
            return G_SOURCE_REMOVE;
        };
        g_idle_add_full(G_PRIORITY_DEFAULT, remove, g_object_ref(warm), g_object_unref);
        std::exchange(self->m_events.ready, nullptr)();
    };
    g_signal_connect(view, "load-changed", G_CALLBACK(loaded), this);
    const auto terminated = +[](WebKitWebView*, WebKitWebProcessTerminationReason, gpointer pages) {
        if (static_cast<BrowserPages*>(pages)->m_events.ready) {
            // Without its engine the device would be booting for ever.
            g_printerr("SimulatorDevice: the web engine ended while the device was booting\n");
            _exit(EXIT_FAILURE);
        }
    };
    g_signal_connect(view, "web-process-terminated", G_CALLBACK(terminated), this);
    webkit_web_view_load_plain_text(WEBKIT_WEB_VIEW(view), "");
}

WebPage* BrowserPages::front() const {
    return m_pages.empty() ? nullptr : m_pages[m_current].get();
}

WebPage& BrowserPages::add(std::unique_ptr<WebPage> page) {
    WebKitWebView* view = page->view();
    m_events.opened(*page);
    const auto create = +[](WebKitWebView* opener, WebKitNavigationAction*, gpointer pages) -> GtkWidget* {
        auto* self = static_cast<BrowserPages*>(pages);
        return GTK_WIDGET(self->add(self->makePage(opener)).view());
    };
    g_signal_connect(view, "create", G_CALLBACK(create), this);
    const auto closed = +[](WebKitWebView* web, gpointer pages) {
        auto* self = static_cast<BrowserPages*>(pages);
        const auto found = std::ranges::find_if(self->m_pages, [&](const auto& other) { return other->view() == web; });
        if (found != self->m_pages.end()) {
            self->close(static_cast<std::size_t>(found - self->m_pages.begin()));
        }
    };
    g_signal_connect(view, "close", G_CALLBACK(closed), this);
    gtk_container_add(GTK_CONTAINER(m_stack), page->widget());
    m_pages.push_back(std::move(page));
    show(m_pages.size() - 1);
    if (!m_pageSize.isEmpty()) {
        // The page may read its viewport before the next layout of the window.
        m_pages.back()->presize(m_pageSize);
    }
    return *m_pages.back();
}

void BrowserPages::show(std::size_t index) {
    m_current = index;
    gtk_stack_set_visible_child(GTK_STACK(m_stack), m_pages.empty() ? m_startPage : m_pages[index]->widget());
    const WebPage* page = front();
    m_events.edited(page != nullptr && page->isEditing(), false);
    m_events.viewportAsked();
    m_events.changed();
}

std::unique_ptr<WebPage> BrowserPages::makePage(WebKitWebView* opener) {
    WebPageOwner& owner = *this;
    return std::make_unique<WebPage>(m_device, owner, opener);
}

void BrowserPages::open(const QString& url) {
    WebPage& page = add(makePage());
    page.load(url);
    page.focus();
}

void BrowserPages::go(const QString& url) {
    if (WebPage* page = front()) {
        page->load(url);
        m_events.changed();
    } else {
        open(url);
    }
}

void BrowserPages::step(int distance) {
    if (m_pages.empty()) {
        return;
    }
    const auto size = static_cast<long>(m_pages.size());
    show(static_cast<std::size_t>(((static_cast<long>(m_current) + distance) % size + size) % size));
    focus();
}

void BrowserPages::close(std::size_t index) {
    const std::unique_ptr<WebPage> closed = std::move(m_pages[index]);
    m_pages.erase(m_pages.begin() + static_cast<std::ptrdiff_t>(index));
    g_signal_handlers_disconnect_by_data(closed->view(), this);
    m_events.closing(*closed);
    if (m_current > index || (m_current == m_pages.size() && m_current > 0)) {
        --m_current;
    }
    show(m_current);
}

void BrowserPages::closeCurrent() {
    if (!m_pages.empty()) {
        close(m_current);
    }
}

void BrowserPages::reload() {
    if (WebPage* page = front()) {
        page->reload();
    }
}

void BrowserPages::goBack() {
    if (WebPage* page = front()) {
        page->goBack();
    }
}

void BrowserPages::goForward() {
    if (WebPage* page = front()) {
        page->goForward();
    }
}

void BrowserPages::focus() {
    if (WebPage* page = front()) {
        page->focus();
    }
}

void BrowserPages::turn(Orientation orientation) {
    m_device.orientation = orientation;
    for (const auto& page : m_pages) {
        page->turn();
    }
}

void BrowserPages::setContentSize(const QString& size) {
    if (std::exchange(m_device.contentSize, size) != size) {
        for (const auto& page : m_pages) {
            page->followContentSize();
        }
    }
}

bool BrowserPages::canGoBack() const {
    const WebPage* page = front();
    return page != nullptr && webkit_web_view_can_go_back(page->view()) != FALSE;
}

bool BrowserPages::canGoForward() const {
    const WebPage* page = front();
    return page != nullptr && webkit_web_view_can_go_forward(page->view()) != FALSE;
}

QString BrowserPages::address() const {
    const WebPage* page = front();
    if (page == nullptr) {
        return {};
    }
    const QUrl url(page->address());
    if (url.isLocalFile()) {
        return url.fileName();
    }
    const QString host = url.host();
    return host.isEmpty() ? page->address().left(200) : host;
}

void BrowserPages::pageChanged(WebPage&) {
    m_events.changed();
}

void BrowserPages::pageAsksForViewport(WebPage& page) {
    if (&page == front()) {
        m_events.viewportAsked();
    }
}

void BrowserPages::pageEdits(WebPage& page, bool isEditing, bool byHand) {
    if (&page == front()) {
        m_events.edited(isEditing, byHand);
    }
}

} // namespace corvanta::lab
