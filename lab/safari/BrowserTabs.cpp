// SPDX-License-Identifier: MIT
#include "BrowserTabs.h"

#include "GlibPointers.h"
#include "LoadProblem.h"
#include "ShownText.h"
#include "StartPage.h"

#include <algorithm>
#include <utility>

namespace corvanta::lab {

namespace {

constexpr int iconSize = 16;

std::string shownAddress(WebKitWebView* view) {
    const char* const uri = view ? webkit_web_view_get_uri(view) : nullptr;
    return uri && g_strcmp0(uri, "about:blank") != 0 ? uri : "";
}

std::string shownTitle(WebKitWebView* view) {
    const char* const title = view ? webkit_web_view_get_title(view) : nullptr;
    if (title && *title != '\0')
        return shownLine(title);
    const std::string address = shownAddress(view);
    return address.empty() ? "Start Page" : shownLine(address);
}

GlibPointer<GdkPixbuf> scaled(cairo_surface_t* surface) {
    const GlibPointer<GdkPixbuf> whole(gdk_pixbuf_get_from_surface(
        surface, 0, 0, cairo_image_surface_get_width(surface), cairo_image_surface_get_height(surface)));
    return GlibPointer<GdkPixbuf>(whole ? gdk_pixbuf_scale_simple(whole.get(), iconSize, iconSize, GDK_INTERP_BILINEAR)
                                        : nullptr);
}

} // namespace

/// One tab: its page, and what stands for it in the row of tabs.
class BrowserTabs::Tab {
public:
    Tab(BrowserTabs& tabs, WebKitWebView* related)
        : m_tabs(tabs)
        , m_view(WEBKIT_WEB_VIEW(related ? webkit_web_view_new_with_related_view(related) : webkit_web_view_new())) {
        buildLabel();
        watch();
        gtk_widget_show(widget());
    }

    Tab(const Tab&) = delete;
    Tab& operator=(const Tab&) = delete;

    ~Tab() { g_signal_handlers_disconnect_by_data(m_view, this); }

    [[nodiscard]] GtkWidget* widget() const { return GTK_WIDGET(m_view); }

    [[nodiscard]] WebKitWebView* view() const { return m_view; }

    [[nodiscard]] GtkWidget* label() const { return m_label; }

    void refresh() {
        const std::string title = shownTitle(m_view);
        if (title != gtk_label_get_text(GTK_LABEL(m_title))) {
            gtk_label_set_text(GTK_LABEL(m_title), title.c_str());
            gtk_widget_set_tooltip_text(m_label, title.c_str());
            atk_object_set_name(gtk_widget_get_accessible(m_close), ("Close “" + title + "”").c_str());
        }
        const bool isLoading = webkit_web_view_is_loading(m_view) != FALSE;
        gtk_widget_set_visible(m_spinner, isLoading);
        gtk_widget_set_visible(m_icon, !isLoading);
        g_object_set(m_spinner, "active", isLoading, nullptr);
        if (!m_isProblem && !m_isProblemComing)
            m_tabs.m_handlers.onTitle(shownAddress(m_view), title);
        if (m_view == m_tabs.current())
            m_tabs.m_handlers.onChange();
    }

    void show(const std::string& url, const LoadProblem& problem) {
        m_isProblemComing = true;
        webkit_web_view_load_alternate_html(m_view, problemPage(url, problem).c_str(), url.c_str(), nullptr);
    }

private:
    void buildLabel() {
        m_label = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 6);
        m_icon = gtk_image_new_from_icon_name("web-browser-symbolic", GTK_ICON_SIZE_MENU);
        m_spinner = gtk_spinner_new();
        m_title = gtk_label_new(nullptr);
        gtk_label_set_ellipsize(GTK_LABEL(m_title), PANGO_ELLIPSIZE_END);
        gtk_label_set_width_chars(GTK_LABEL(m_title), 14);
        m_close = gtk_button_new_from_icon_name("window-close-symbolic", GTK_ICON_SIZE_MENU);
        gtk_button_set_relief(GTK_BUTTON(m_close), GTK_RELIEF_NONE);
        gtk_widget_set_focus_on_click(m_close, FALSE);
        gtk_widget_set_tooltip_text(m_close, "Close Tab");
        g_signal_connect_swapped(m_close, "clicked", G_CALLBACK(+[](Tab* tab) { tab->m_tabs.close(tab->widget()); }),
                                 this);
        gtk_box_pack_start(GTK_BOX(m_label), m_icon, FALSE, FALSE, 0);
        gtk_box_pack_start(GTK_BOX(m_label), m_spinner, FALSE, FALSE, 0);
        gtk_box_pack_start(GTK_BOX(m_label), m_title, TRUE, TRUE, 0);
        gtk_box_pack_start(GTK_BOX(m_label), m_close, FALSE, FALSE, 0);
        gtk_widget_show_all(m_label);
    }

    void watch() {
        const auto connect = [this](const char* signal, void (*call)(Tab*)) {
            g_signal_connect_swapped(m_view, signal, G_CALLBACK(call), this);
        };
        for (const char* const property :
             {"notify::uri", "notify::title", "notify::is-loading", "notify::estimated-load-progress"})
            connect(property, [](Tab* tab) { tab->refresh(); });
        connect("notify::favicon", [](Tab* tab) { tab->showIcon(); });
        // Behind this handler the view is taken apart.
        connect("close", [](Tab* tab) { tab->m_tabs.close(tab->widget()); });
        g_signal_connect(m_view, "load-changed", G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, Tab* tab) {
                             if (event == WEBKIT_LOAD_COMMITTED) {
                                 tab->m_isProblem = std::exchange(tab->m_isProblemComing, false);
                                 if (!tab->m_isProblem)
                                     tab->m_tabs.m_handlers.onVisit(shownAddress(tab->m_view));
                             }
                             tab->refresh();
                         }),
                         this);
        g_signal_connect(m_view, "create", G_CALLBACK(+[](WebKitWebView* opener, WebKitNavigationAction*, Tab* tab) {
                             return tab->m_tabs.add(opener, TabPlace::inFront).widget();
                         }),
                         this);
        g_signal_connect(m_view, "decide-policy",
                         G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                                        Tab* tab) -> gboolean { return tab->decide(decision, type); }),
                         this);
        watchProblems();
    }

    void watchProblems() {
        g_signal_connect(
            m_view, "load-failed",
            G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, const char* url, GError* error, Tab* tab) -> gboolean {
                const auto problem = loadProblem(url, *error);
                if (problem)
                    tab->show(url, *problem);
                return TRUE;
            }),
            this);
        g_signal_connect(m_view, "load-failed-with-tls-errors",
                         G_CALLBACK(+[](WebKitWebView*, const char* url, GTlsCertificate*, GTlsCertificateFlags errors,
                                        Tab* tab) -> gboolean {
                             tab->show(url, certificateProblem(url, errors));
                             return TRUE;
                         }),
                         this);
        g_signal_connect(m_view, "web-process-terminated",
                         G_CALLBACK(+[](WebKitWebView* view, WebKitWebProcessTerminationReason, Tab* tab) {
                             const char* const url = webkit_web_view_get_uri(view);
                             tab->show(url ? url : "about:blank",
                                       {"This page has stopped", "The process that showed it has ended."});
                         }),
                         this);
    }

    /// Links that are asked for in a tab of their own, and what is no page.
    gboolean decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
        if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
            if (webkit_response_policy_decision_is_mime_type_supported(WEBKIT_RESPONSE_POLICY_DECISION(decision)))
                return FALSE;
            webkit_policy_decision_download(decision);
            return TRUE;
        }
        if (type != WEBKIT_POLICY_DECISION_TYPE_NAVIGATION_ACTION)
            return FALSE;
        WebKitNavigationAction* const action =
            webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
        const bool wantsTab = webkit_navigation_action_get_mouse_button(action) == GDK_BUTTON_MIDDLE ||
                              (webkit_navigation_action_get_modifiers(action) & GDK_CONTROL_MASK) != 0;
        if (webkit_navigation_action_get_navigation_type(action) != WEBKIT_NAVIGATION_TYPE_LINK_CLICKED || !wantsTab)
            return FALSE;
        m_tabs.open(webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)), TabPlace::behind);
        webkit_policy_decision_ignore(decision);
        return TRUE;
    }

    void showIcon() {
        cairo_surface_t* const surface = webkit_web_view_get_favicon(m_view);
        const auto icon = surface ? scaled(surface) : nullptr;
        if (icon)
            gtk_image_set_from_pixbuf(GTK_IMAGE(m_icon), icon.get());
        else
            gtk_image_set_from_icon_name(GTK_IMAGE(m_icon), "web-browser-symbolic", GTK_ICON_SIZE_MENU);
    }

    BrowserTabs& m_tabs;
    WebKitWebView* m_view;
    GtkWidget* m_label = nullptr;
    GtkWidget* m_icon = nullptr;
    GtkWidget* m_spinner = nullptr;
    GtkWidget* m_title = nullptr;
    GtkWidget* m_close = nullptr;
    /// Whether the page says why another one is not there, or is about to.
    bool m_isProblem = false;
    bool m_isProblemComing = false;
};

BrowserTabs::BrowserTabs(Handlers handlers)
    : m_handlers(std::move(handlers))
    , m_notebook(GTK_NOTEBOOK(gtk_notebook_new())) {
    // The icons of pages, in the user's cache.
    webkit_web_context_set_favicon_database_directory(webkit_web_context_get_default(), nullptr);
    gtk_notebook_set_show_tabs(m_notebook, FALSE);
    gtk_notebook_set_show_border(m_notebook, FALSE);
    gtk_notebook_set_scrollable(m_notebook, TRUE);
    g_signal_connect_data(m_notebook, "switch-page",
                          G_CALLBACK(+[](BrowserTabs* self) { self->m_handlers.onChange(); }), this, nullptr,
                          static_cast<GConnectFlags>(G_CONNECT_SWAPPED | G_CONNECT_AFTER));
    gtk_widget_add_events(widget(), GDK_BUTTON_PRESS_MASK);
}

BrowserTabs::~BrowserTabs() = default;

void BrowserTabs::letGo() {
    g_signal_handlers_disconnect_by_data(m_notebook, this);
    m_tabs.clear();
}

WebKitWebView* BrowserTabs::current() const {
    GtkWidget* const page = gtk_notebook_get_nth_page(m_notebook, gtk_notebook_get_current_page(m_notebook));
    return page ? WEBKIT_WEB_VIEW(page) : nullptr;
}

std::string BrowserTabs::currentTitle() const {
    return shownTitle(current());
}

std::string BrowserTabs::currentAddress() const {
    return shownAddress(current());
}

BrowserTabs::Tab* BrowserTabs::tabOf(GtkWidget* view) const {
    const auto tab = std::ranges::find(m_tabs, view, [](const auto& known) { return known->widget(); });
    return tab == m_tabs.end() ? nullptr : tab->get();
}

BrowserTabs::Tab& BrowserTabs::add(WebKitWebView* related, TabPlace place) {
    Tab& tab = *m_tabs.emplace_back(std::make_unique<Tab>(*this, related));
    const int index = gtk_notebook_append_page(m_notebook, tab.widget(), tab.label());
    gtk_container_child_set(GTK_CONTAINER(m_notebook), tab.widget(), "tab-expand", TRUE, "reorderable", TRUE, nullptr);
    if (place == TabPlace::inFront) {
        gtk_notebook_set_current_page(m_notebook, index);
        gtk_widget_grab_focus(tab.widget());
    }
    tab.refresh();
    updateTabs();
    return tab;
}

void BrowserTabs::updateTabs() {
    gtk_notebook_set_show_tabs(m_notebook, gtk_notebook_get_n_pages(m_notebook) > 1);
}

void BrowserTabs::open(const std::string& address, TabPlace place) {
    WebKitWebView* const view = add(nullptr, place).view();
    if (address.empty())
        webkit_web_view_load_html(view, startPage(), nullptr);
    else
        webkit_web_view_load_uri(view, address.c_str());
}

void BrowserTabs::load(const std::string& address) {
    if (address.empty())
        webkit_web_view_load_html(current(), startPage(), nullptr);
    else
        webkit_web_view_load_uri(current(), address.c_str());
}

void BrowserTabs::close(GtkWidget* view) {
    Tab* const tab = tabOf(view);
    if (!tab)
        return;
    if (m_tabs.size() == 1) {
        m_handlers.onLastClosed();
        return;
    }
    if (!shownAddress(tab->view()).empty()) {
        m_closed.emplace_back(webkit_web_view_get_session_state(tab->view()));
        if (m_closed.size() > longestClosed)
            m_closed.erase(m_closed.begin());
    }
    std::erase_if(m_tabs, [tab](const auto& known) { return known.get() == tab; });
    gtk_widget_destroy(view);
    updateTabs();
    m_handlers.onChange();
}

void BrowserTabs::reopenClosed() {
    if (m_closed.empty())
        return;
    const auto state = std::move(m_closed.back());
    m_closed.pop_back();
    WebKitWebView* const view = add(nullptr, TabPlace::inFront).view();
    webkit_web_view_restore_session_state(view, state.get());
    WebKitBackForwardListItem* const item =
        webkit_back_forward_list_get_current_item(webkit_web_view_get_back_forward_list(view));
    if (item)
        webkit_web_view_go_to_back_forward_list_item(view, item);
}

void BrowserTabs::forgetClosed() {
    m_closed.clear();
}

void BrowserTabs::step(int direction) {
    const int count = gtk_notebook_get_n_pages(m_notebook);
    gtk_notebook_set_current_page(m_notebook, (gtk_notebook_get_current_page(m_notebook) + direction + count) % count);
}

void BrowserTabs::select(int number) {
    constexpr int lastTab = 8;
    const int count = gtk_notebook_get_n_pages(m_notebook);
    if (number == lastTab)
        gtk_notebook_set_current_page(m_notebook, count - 1);
    else if (number < count)
        gtk_notebook_set_current_page(m_notebook, number);
}

} // namespace corvanta::lab
