// SPDX-License-Identifier: MIT
#include "BrowserWindow.h"

#include "MenuBuilder.h"

#include <utility>

namespace corvanta::lab {

namespace {

constexpr int developPosition = 5;
constexpr double smallestZoom = 0.3;
constexpr double largestZoom = 5;

} // namespace

BrowserWindow::BrowserWindow(GtkApplication* application, Handlers handlers)
    : m_handlers(std::move(handlers))
    , m_window(gtk_application_window_new(application))
    , m_menuBar(gtk_menu_bar_new())
    , m_accelerators(gtk_accel_group_new())
    , m_addressBar(addressHandlers())
    , m_tabs(tabHandlers()) {
    // Its own menu bar is the one that is on the accessibility bus; the shell must not move it elsewhere.
    gtk_application_window_set_show_menubar(GTK_APPLICATION_WINDOW(m_window), FALSE);
    gtk_window_set_default_size(window(), 1024, 720);
    gtk_window_add_accel_group(window(), m_accelerators.get());
    // Letting the window go by itself would take the menus away from under those who keep them up to date.
    g_signal_connect_swapped(m_window, "delete-event", G_CALLBACK(+[](BrowserWindow* self) -> gboolean {
                                 self->m_handlers.quit();
                                 return TRUE;
                             }),
                             this);
    watchKeys();
    buildMenus();
    GtkWidget* const column = gtk_box_new(GTK_ORIENTATION_VERTICAL, 0);
    gtk_box_pack_start(GTK_BOX(column), m_menuBar, FALSE, FALSE, 0);
    gtk_box_pack_start(GTK_BOX(column), m_addressBar.widget(), FALSE, FALSE, 0);
    gtk_box_pack_start(GTK_BOX(column), buildDeveloperHint(), FALSE, FALSE, 0);
    gtk_box_pack_start(GTK_BOX(column), m_tabs.widget(), TRUE, TRUE, 0);
    gtk_container_add(GTK_CONTAINER(m_window), column);
    gtk_widget_show_all(column);
    gtk_widget_hide(m_developerHint);
}

BrowserWindow::~BrowserWindow() {
    // The tabs let go of their pages first.
    g_object_ref(m_window);
    g_signal_handlers_disconnect_by_data(m_window, this);
    m_tabs.letGo();
    gtk_widget_destroy(m_window);
    g_object_unref(m_window);
}

AddressBar::Handlers BrowserWindow::addressHandlers() {
    return {.goBack = [this] { webkit_web_view_go_back(currentView()); },
            .goForward = [this] { webkit_web_view_go_forward(currentView()); },
            .reload = [this] { webkit_web_view_reload(currentView()); },
            .stop = [this] { webkit_web_view_stop_loading(currentView()); },
            .newTab = [this] { openNewTab(); },
            .open = [this](const std::string& address) { m_tabs.load(address); },
            .leave = [this] { gtk_widget_grab_focus(GTK_WIDGET(currentView())); }};
}

BrowserTabs::Handlers BrowserWindow::tabHandlers() {
    return {.onChange = [this] { refresh(); },
            .onVisit =
                [this](const std::string& url) {
                    m_history.visit(url);
                    refresh();
                },
            .onTitle =
                [this](const std::string& url, const std::string& title) {
                    m_history.retitle(url, title);
                    refresh();
                },
            .onLastClosed = [this] { gtk_window_close(window()); }};
}

void BrowserWindow::buildMenus() {
    GtkMenuShell* const bar = GTK_MENU_SHELL(m_menuBar);
    GtkAccelGroup* const keys = m_accelerators.get();

    MenuBuilder(bar, "Safari", keys)
        .item("About Safari", nullptr, m_handlers.showAbout)
        .separator()
        .item("Settings…", "<Primary>comma", m_handlers.showSettings)
        .separator()
        .item("Quit Safari", "<Primary>q", m_handlers.quit);
    MenuBuilder(bar, "File", keys)
        .item("New Tab", "<Primary>t", [this] { openNewTab(); })
        .item("Open Location…", "<Primary>l", [this] { m_addressBar.focus(); })
        .separator()
        .item("Close Tab", "<Primary>w", [this] { m_tabs.closeCurrent(); })
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
        .item("Reload Page", "<Primary>r", [this] { webkit_web_view_reload(currentView()); })
        .item("Stop", "<Primary>period", [this] { webkit_web_view_stop_loading(currentView()); })
        .separator()
        .item("Actual Size", "<Primary>0", [this] { zoom(0); })
        .item("Zoom In", "<Primary>plus", [this] { zoom(1.1); })
        .item("Zoom Out", "<Primary>minus", [this] { zoom(1 / 1.1); });
    buildHistoryMenu();
    MenuBuilder(bar, "Window", keys)
        .item("Minimize", "<Primary>m", [this] { gtk_window_iconify(window()); })
        .separator()
        .item("Show Previous Tab", "<Primary>Page_Up", [this] { m_tabs.step(-1); })
        .item("Show Next Tab", "<Primary>Page_Down", [this] { m_tabs.step(1); });
    MenuBuilder(bar, "Help", keys).item("Safari Help", nullptr, [this] { openTab({}); });
}

void BrowserWindow::buildHistoryMenu() {
    m_historyMenu.emplace(GTK_MENU_SHELL(m_menuBar), m_accelerators.get(),
                          HistoryMenu::Handlers{
                              .goBack = [this] { webkit_web_view_go_back(currentView()); },
                              .goForward = [this] { webkit_web_view_go_forward(currentView()); },
                              .goHome = [this] { m_tabs.load({}); },
                              .reopenClosedTab = [this] { m_tabs.reopenClosed(); },
                              .clear =
                                  [this] {
                                      m_history.clear();
                                      m_tabs.forgetClosed();
                                      refresh();
                                  },
                              .open = [this](const std::string& url) { m_tabs.load(url); },
                          });
}

void BrowserWindow::watchKeys() {
    g_signal_connect(m_window, "key-press-event",
                     G_CALLBACK(+[](GtkWidget*, GdkEventKey* event, BrowserWindow* self) -> gboolean {
                         return self->takeKey(*event);
                     }),
                     this);
}

bool BrowserWindow::takeKey(const GdkEventKey& event) {
    // The toolkit's shortcuts cannot have the Tab key, and there is no item for each number.
    const auto modifiers = static_cast<GdkModifierType>(event.state & gtk_accelerator_get_default_mod_mask());
    const bool hasShift = (modifiers & GDK_SHIFT_MASK) != 0;
    if ((modifiers & ~GDK_SHIFT_MASK) != GDK_CONTROL_MASK)
        return false;
    if (event.keyval == GDK_KEY_Tab || event.keyval == GDK_KEY_ISO_Left_Tab || event.keyval == GDK_KEY_KP_Tab) {
        m_tabs.step(hasShift ? -1 : 1);
        return true;
    }
    if (hasShift || event.keyval < GDK_KEY_1 || event.keyval > GDK_KEY_9)
        return false;
    m_tabs.select(static_cast<int>(event.keyval - GDK_KEY_1));
    return true;
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
                             self->m_handlers.showSettings();
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
        gtk_window_set_focus_on_map(window(), FALSE);
        gtk_window_iconify(window());
        gtk_widget_show(m_window);
    } else {
        gtk_window_present(window());
    }
}

void BrowserWindow::present() {
    gtk_window_set_focus_on_map(window(), TRUE);
    gtk_window_deiconify(window());
    gtk_window_present(window());
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
    m_tabs.open(address);
}

void BrowserWindow::openNewTab() {
    m_tabs.open({});
    m_addressBar.focus();
}

void BrowserWindow::emptyCaches() {
    WebKitWebsiteDataManager* const manager = webkit_web_view_get_website_data_manager(currentView());
    const auto caches =
        static_cast<WebKitWebsiteDataTypes>(WEBKIT_WEBSITE_DATA_MEMORY_CACHE | WEBKIT_WEBSITE_DATA_DISK_CACHE);
    webkit_website_data_manager_clear(manager, caches, 0, nullptr, nullptr, nullptr);
}

void BrowserWindow::editingCommand(const char* command, const char* entrySignal) {
    GtkWidget* const entry = m_addressBar.entry();
    if (gtk_window_get_focus(window()) != entry)
        webkit_web_view_execute_editing_command(currentView(), command);
    else if (entrySignal)
        g_signal_emit_by_name(entry, entrySignal);
    else if (g_strcmp0(command, WEBKIT_EDITING_COMMAND_SELECT_ALL) == 0)
        gtk_editable_select_region(GTK_EDITABLE(entry), 0, -1);
}

void BrowserWindow::zoom(double factor) {
    const double level = factor > 0 ? webkit_web_view_get_zoom_level(currentView()) * factor : 1;
    webkit_web_view_set_zoom_level(currentView(), CLAMP(level, smallestZoom, largestZoom));
}

void BrowserWindow::refresh() {
    WebKitWebView* const view = currentView();
    if (!view)
        return;
    const std::string title = m_tabs.currentTitle() + " — Safari";
    if (g_strcmp0(gtk_window_get_title(window()), title.c_str()) != 0)
        gtk_window_set_title(window(), title.c_str());
    const bool canGoBack = webkit_web_view_can_go_back(view) != FALSE;
    const bool canGoForward = webkit_web_view_can_go_forward(view) != FALSE;
    m_addressBar.show({.address = m_tabs.currentAddress(),
                       .isLoading = webkit_web_view_is_loading(view) != FALSE,
                       .progress = webkit_web_view_get_estimated_load_progress(view),
                       .canGoBack = canGoBack,
                       .canGoForward = canGoForward});
    m_historyMenu->setVisits(m_history.visits());
    m_historyMenu->setState({.canGoBack = canGoBack, .canGoForward = canGoForward, .canReopen = m_tabs.canReopen()});
}

} // namespace corvanta::lab
