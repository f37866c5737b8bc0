// SPDX-License-Identifier: MIT
#include "BrowserWindow.h"

#include "AddressText.h"
#include "MenuBuilder.h"
#include "StartPage.h"

#include <utility>

namespace corvanta::lab {

namespace {

constexpr int developPosition = 5;
constexpr double smallestZoom = 0.3;
constexpr double largestZoom = 5;

GtkWidget* toolButton(const char* icon, const char* name) {
    GtkWidget* const button = gtk_button_new_from_icon_name(icon, GTK_ICON_SIZE_BUTTON);
    gtk_button_set_relief(GTK_BUTTON(button), GTK_RELIEF_NONE);
    gtk_widget_set_tooltip_text(button, name);
    atk_object_set_name(gtk_widget_get_accessible(button), name);
    return button;
}

/// The address as the person sees it; the start page has none.
std::string shownAddress(WebKitWebView* view) {
    const char* const uri = view ? webkit_web_view_get_uri(view) : nullptr;
    return uri && g_strcmp0(uri, "about:blank") != 0 ? uri : "";
}

std::string shownTitle(WebKitWebView* view) {
    const char* const title = view ? webkit_web_view_get_title(view) : nullptr;
    if (title && *title != '\0')
        return title;
    const std::string address = shownAddress(view);
    return address.empty() ? "Start Page" : address;
}

} // namespace

BrowserWindow::BrowserWindow(GtkApplication* application, Handlers handlers)
    : m_window(gtk_application_window_new(application))
    , m_menuBar(gtk_menu_bar_new())
    , m_tabs(gtk_notebook_new())
    , m_accelerators(gtk_accel_group_new()) {
    // Its own menu bar is the one that is on the accessibility bus; the shell must not move it elsewhere.
    gtk_application_window_set_show_menubar(GTK_APPLICATION_WINDOW(m_window), FALSE);
    gtk_window_set_default_size(GTK_WINDOW(m_window), 1024, 720);
    gtk_window_set_icon_name(GTK_WINDOW(m_window), "web-browser");
    gtk_window_add_accel_group(GTK_WINDOW(m_window), m_accelerators.get());

    GtkNotebook* const notebook = GTK_NOTEBOOK(m_tabs);
    gtk_notebook_set_show_tabs(notebook, FALSE);
    gtk_notebook_set_show_border(notebook, FALSE);
    gtk_notebook_set_scrollable(notebook, TRUE);
    g_signal_connect_data(notebook, "switch-page", G_CALLBACK(+[](BrowserWindow* self) { self->refresh(); }), this,
                          nullptr, static_cast<GConnectFlags>(G_CONNECT_SWAPPED | G_CONNECT_AFTER));

    m_quit = handlers.quit;
    m_showSettings = handlers.showSettings;
    // Letting the window go by itself would take the menus away from under those who keep them up to date.
    g_signal_connect_swapped(m_window, "delete-event", G_CALLBACK(+[](BrowserWindow* self) -> gboolean {
                                 self->m_quit();
                                 return TRUE;
                             }),
                             this);
    buildMenus(handlers);
    GtkWidget* const column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_pack_start(GTK_BOX(column), m_menuBar, FALSE, FALSE, 0);
    gtk_box_pack_start(GTK_BOX(column), buildAddressRow(), FALSE, FALSE, 0);
    gtk_box_pack_start(GTK_BOX(column), buildDeveloperHint(), FALSE, FALSE, 0);
    gtk_box_pack_start(GTK_BOX(column), m_tabs, TRUE, TRUE, 0);
    gtk_container_add(GTK_CONTAINER(m_window), column);
    gtk_widget_show_all(column);
    gtk_widget_hide(m_developerHint);
}

BrowserWindow::~BrowserWindow() {
    g_signal_handlers_disconnect_by_data(m_tabs, this);
    for (int page = 0; page < gtk_notebook_get_n_pages(GTK_NOTEBOOK(m_tabs)); ++page)
        g_signal_handlers_disconnect_by_data(gtk_notebook_get_nth_page(GTK_NOTEBOOK(m_tabs), page), this);
    gtk_widget_destroy(m_window);
}

void BrowserWindow::buildMenus(const Handlers& handlers) {
    GtkMenuShell* const bar = GTK_MENU_SHELL(m_menuBar);
    GtkAccelGroup* const keys = m_accelerators.get();
    const auto onView = [this](void (*call)(WebKitWebView*)) { return [this, call] { call(currentView()); }; };

    MenuBuilder(bar, "Safari", keys)
        .item("About Safari", nullptr, handlers.showAbout)
        .separator()
        .item("Settings…", "<Primary>comma", handlers.showSettings)
        .separator()
        .item("Quit Safari", "<Primary>q", handlers.quit);
    MenuBuilder(bar, "File", keys)
        .item("New Tab", "<Primary>t", [this] { openTab({}), focusAddress(); })
        .item("Open Location…", "<Primary>l", [this] { focusAddress(); })
        .separator()
        .item("Close Tab", "<Primary>w", [this] { closeTab(GTK_WIDGET(currentView())); })
        .item("Close Window", "<Primary><Shift>w", [this] { gtk_window_close(window()); });
    MenuBuilder(bar, "Edit", keys)
        .item("Undo", "<Primary>z", [this] { editingCommand(WEBKIT_EDITING_COMMAND_UNDO, nullptr); })
        .item("Redo", "<Primary><Shift>z", [this] { editingCommand(WEBKIT_EDITING_COMMAND_REDO, nullptr); })
        .separator()
        .item("Cut", "<Primary>x", [this] { editingCommand(WEBKIT_EDITING_COMMAND_CUT, "cut-clipboard"); })
        .item("Copy", "<Primary>c", [this] { editingCommand(WEBKIT_EDITING_COMMAND_COPY, "copy-clipboard"); })
        .item("Paste", "<Primary>v", [this] { editingCommand(WEBKIT_EDITING_COMMAND_PASTE, "paste-clipboard"); })
        .item("Select All", "<Primary>a", [this] { editingCommand(WEBKIT_EDITING_COMMAND_SELECT_ALL, nullptr); });
    MenuBuilder(bar, "View", keys)
        .item("Reload Page", "<Primary>r", onView(webkit_web_view_reload))
        .item("Stop", nullptr, onView(webkit_web_view_stop_loading))
        .separator()
        .item("Actual Size", "<Primary>0", [this] { zoom(0); })
        .item("Zoom In", "<Primary>plus", [this] { zoom(1.1); })
        .item("Zoom Out", "<Primary>minus", [this] { zoom(1 / 1.1); });
    MenuBuilder(bar, "History", keys)
        .item("Back", "<Alt>Left", onView(webkit_web_view_go_back))
        .item("Forward", "<Alt>Right", onView(webkit_web_view_go_forward));
    MenuBuilder(bar, "Window", keys)
        .item("Minimize", "<Primary>m", [this] { gtk_window_iconify(window()); })
        .separator()
        .item("Show Previous Tab", "<Primary>Page_Up", [this] { gtk_notebook_prev_page(GTK_NOTEBOOK(m_tabs)); })
        .item("Show Next Tab", "<Primary>Page_Down", [this] { gtk_notebook_next_page(GTK_NOTEBOOK(m_tabs)); });
    MenuBuilder(bar, "Help", keys).item("Safari Help", nullptr, [this] { openTab({}); });
}

GtkWidget* BrowserWindow::buildAddressRow() {
    m_back = toolButton("go-previous-symbolic", "Back");
    m_forward = toolButton("go-next-symbolic", "Forward");
    m_reload = toolButton("view-refresh-symbolic", "Reload");
    m_entry = gtk_entry_new();
    gtk_entry_set_placeholder_text(GTK_ENTRY(m_entry), "Enter an address");
    gtk_entry_set_input_purpose(GTK_ENTRY(m_entry), GTK_INPUT_PURPOSE_URL);
    atk_object_set_name(gtk_widget_get_accessible(m_entry), "Address");

    const auto connect = [this](GtkWidget* widget, const char* signal, void (*call)(BrowserWindow*)) {
        g_signal_connect_swapped(widget, signal, G_CALLBACK(call), this);
    };
    connect(m_back, "clicked", [](BrowserWindow* self) { webkit_web_view_go_back(self->currentView()); });
    connect(m_forward, "clicked", [](BrowserWindow* self) { webkit_web_view_go_forward(self->currentView()); });
    connect(m_reload, "clicked", [](BrowserWindow* self) { webkit_web_view_reload(self->currentView()); });
    connect(m_entry, "activate", [](BrowserWindow* self) { self->openAddress(); });

    GtkWidget* const row = gtk_box_new(GTK_ORIENTATION_HORIZONTAL, 4);
    gtk_container_set_border_width(GTK_CONTAINER(row), 6);
    for (GtkWidget* const button : {m_back, m_forward, m_reload})
        gtk_box_pack_start(GTK_BOX(row), button, FALSE, FALSE, 0);
    gtk_box_pack_start(GTK_BOX(row), m_entry, TRUE, TRUE, 0);
    return row;
}

GtkWidget* BrowserWindow::buildDeveloperHint() {
    m_developerHint = gtk_info_bar_new();
    GtkInfoBar* const bar = GTK_INFO_BAR(m_developerHint);
    gtk_info_bar_set_message_type(bar, GTK_MESSAGE_WARNING);
    gtk_info_bar_add_button(bar, "_Open Settings…", GTK_RESPONSE_ACCEPT);
    gtk_info_bar_add_button(bar, "_Not Now", GTK_RESPONSE_CLOSE);
    GtkWidget* const text = gtk_label_new("Features for web developers are off, so there is no Develop menu. Turn on "
                                          "“Show features for web developers” in Settings › Advanced.");
    gtk_label_set_xalign(GTK_LABEL(text), 0);
    gtk_label_set_line_wrap(GTK_LABEL(text), TRUE);
    gtk_container_add(GTK_CONTAINER(gtk_info_bar_get_content_area(bar)), text);
    g_signal_connect(bar, "response", G_CALLBACK(+[](GtkWidget*, int response, BrowserWindow* self) {
                         if (response == GTK_RESPONSE_ACCEPT)
                             self->m_showSettings();
                         else
                             self->setDeveloperHint(false);
                     }),
                     this);
    return m_developerHint;
}

void BrowserWindow::setDeveloperHint(bool isShown) {
    gtk_widget_set_visible(m_developerHint, isShown ? TRUE : FALSE);
}

void BrowserWindow::show(Appearance appearance) {
    if (appearance == Appearance::inBackground) {
        gtk_window_set_focus_on_map(GTK_WINDOW(m_window), FALSE);
        gtk_window_iconify(GTK_WINDOW(m_window));
        gtk_widget_show(m_window);
    } else {
        gtk_window_present(GTK_WINDOW(m_window));
    }
}

void BrowserWindow::present() {
    gtk_window_set_focus_on_map(GTK_WINDOW(m_window), TRUE);
    gtk_window_deiconify(GTK_WINDOW(m_window));
    gtk_window_present(GTK_WINDOW(m_window));
}

void BrowserWindow::setDevelopItem(GtkWidget* item) {
    if (item == m_developItem)
        return;
    if (m_developItem)
        gtk_container_remove(GTK_CONTAINER(m_menuBar), m_developItem);
    if (item)
        gtk_menu_shell_insert(GTK_MENU_SHELL(m_menuBar), item, developPosition);
    m_developItem = item;
}

void BrowserWindow::openTab(const std::string& address) {
    WebKitWebView* const view = addView(nullptr);
    if (address.empty())
        webkit_web_view_load_html(view, startPage(), nullptr);
    else
        webkit_web_view_load_uri(view, address.c_str());
}

void BrowserWindow::emptyCaches() {
    WebKitWebsiteDataManager* const manager = webkit_web_view_get_website_data_manager(currentView());
    const auto caches =
        static_cast<WebKitWebsiteDataTypes>(WEBKIT_WEBSITE_DATA_MEMORY_CACHE | WEBKIT_WEBSITE_DATA_DISK_CACHE);
    webkit_website_data_manager_clear(manager, caches, 0, nullptr, nullptr, nullptr);
}

WebKitWebView* BrowserWindow::addView(WebKitWebView* related) {
    GtkWidget* const view = related ? webkit_web_view_new_with_related_view(related) : webkit_web_view_new();
    const auto connect = [this, view](const char* signal, void (*call)(BrowserWindow*)) {
        g_signal_connect_swapped(view, signal, G_CALLBACK(call), this);
    };
    for (const char* const property : {"notify::uri", "notify::title", "notify::is-loading"})
        connect(property, [](BrowserWindow* self) { self->refresh(); });
    connect("load-changed", [](BrowserWindow* self) { self->refresh(); });
    g_signal_connect(view, "close",
                     G_CALLBACK(+[](GtkWidget* closing, BrowserWindow* self) { self->closeTab(closing); }), this);
    g_signal_connect(view, "create",
                     G_CALLBACK(+[](WebKitWebView* opener, WebKitNavigationAction*, BrowserWindow* self) {
                         return GTK_WIDGET(self->addView(opener));
                     }),
                     this);

    GtkWidget* const label = gtk_label_new(nullptr);
    gtk_label_set_ellipsize(GTK_LABEL(label), PANGO_ELLIPSIZE_END);
    gtk_label_set_width_chars(GTK_LABEL(label), 14);
    gtk_widget_show(view);
    const int index = gtk_notebook_append_page(GTK_NOTEBOOK(m_tabs), view, label);
    gtk_container_child_set(GTK_CONTAINER(m_tabs), view, "tab-expand", TRUE, nullptr);
    gtk_notebook_set_current_page(GTK_NOTEBOOK(m_tabs), index);
    gtk_notebook_set_show_tabs(GTK_NOTEBOOK(m_tabs), index > 0);
    gtk_widget_grab_focus(view);
    refresh();
    return WEBKIT_WEB_VIEW(view);
}

void BrowserWindow::closeTab(GtkWidget* view) {
    GtkNotebook* const notebook = GTK_NOTEBOOK(m_tabs);
    if (gtk_notebook_get_n_pages(notebook) == 1) {
        gtk_window_close(window());
        return;
    }
    gtk_widget_destroy(view);
    gtk_notebook_set_show_tabs(notebook, gtk_notebook_get_n_pages(notebook) > 1);
    refresh();
}

void BrowserWindow::openAddress() {
    const std::string address = addressFromText(gtk_entry_get_text(GTK_ENTRY(m_entry)));
    if (address.empty()) {
        gtk_widget_error_bell(m_entry);
        return;
    }
    webkit_web_view_load_uri(currentView(), address.c_str());
    gtk_widget_grab_focus(GTK_WIDGET(currentView()));
}

void BrowserWindow::focusAddress() {
    gtk_widget_grab_focus(m_entry);
}

void BrowserWindow::editingCommand(const char* command, const char* entrySignal) {
    if (gtk_window_get_focus(window()) != m_entry)
        webkit_web_view_execute_editing_command(currentView(), command);
    else if (entrySignal)
        g_signal_emit_by_name(m_entry, entrySignal);
    else if (g_strcmp0(command, WEBKIT_EDITING_COMMAND_SELECT_ALL) == 0)
        gtk_editable_select_region(GTK_EDITABLE(m_entry), 0, -1);
}

void BrowserWindow::zoom(double factor) {
    const double level = factor > 0 ? webkit_web_view_get_zoom_level(currentView()) * factor : 1;
    webkit_web_view_set_zoom_level(currentView(), CLAMP(level, smallestZoom, largestZoom));
}

void BrowserWindow::refresh() {
    GtkNotebook* const notebook = GTK_NOTEBOOK(m_tabs);
    for (int index = 0; index < gtk_notebook_get_n_pages(notebook); ++index) {
        GtkWidget* const page = gtk_notebook_get_nth_page(notebook, index);
        gtk_label_set_text(GTK_LABEL(gtk_notebook_get_tab_label(notebook, page)),
                           shownTitle(WEBKIT_WEB_VIEW(page)).c_str());
    }
    WebKitWebView* const view = currentView();
    if (!view)
        return;
    gtk_window_set_title(window(), (shownTitle(view) + " — Safari").c_str());
    if (!gtk_widget_has_focus(m_entry))
        gtk_entry_set_text(GTK_ENTRY(m_entry), shownAddress(view).c_str());
    gtk_widget_set_sensitive(m_back, webkit_web_view_can_go_back(view));
    gtk_widget_set_sensitive(m_forward, webkit_web_view_can_go_forward(view));
}

WebKitWebView* BrowserWindow::currentView() const {
    GtkNotebook* const notebook = GTK_NOTEBOOK(m_tabs);
    GtkWidget* const page = gtk_notebook_get_nth_page(notebook, gtk_notebook_get_current_page(notebook));
    return page ? WEBKIT_WEB_VIEW(page) : nullptr;
}

} // namespace corvanta::lab
