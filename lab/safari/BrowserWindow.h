// SPDX-License-Identifier: MIT
#pragma once

#include "AddressBar.h"
#include "BrowserTabs.h"
#include "GlibPointers.h"
#include "HistoryMenu.h"
#include "SessionHistory.h"

#include <gtk/gtk.h>
#include <webkit2/webkit2.h>

#include <functional>
#include <optional>
#include <string>

namespace corvanta::lab {

/// How a window first appears.
enum class Appearance {
    inFront,
    /// Iconified, without taking the focus.
    inBackground,
};

/// Safari's one browser window: menu bar, address row and the tabs. Main thread only.
class BrowserWindow {
public:
    struct Handlers {
        std::function<void()> showSettings;
        std::function<void()> showAbout;
        std::function<void()> quit;
    };

    BrowserWindow(GtkApplication* application, Handlers handlers);
    BrowserWindow(const BrowserWindow&) = delete;
    BrowserWindow& operator=(const BrowserWindow&) = delete;
    ~BrowserWindow();

    void show(Appearance appearance);
    void present();

    /// Puts the Develop item into the menu bar, or takes it out.
    void setDevelopItem(GtkWidget* item);

    /// Says below the address row that the developer features are off, with a button that opens the settings, or stops
    /// saying so. A person may close the bar; it is back when this is called again.
    void setDeveloperHint(bool isShown);

    /// The start page when `address` is empty.
    void openTab(const std::string& address);

    void emptyCaches();

    [[nodiscard]] GtkWindow* window() const { return GTK_WINDOW(m_window); }

private:
    [[nodiscard]] AddressBar::Handlers addressHandlers();
    [[nodiscard]] BrowserTabs::Handlers tabHandlers();
    void buildMenus();
    void buildHistoryMenu();
    GtkWidget* buildDeveloperHint();
    void watchKeys();
    [[nodiscard]] bool takeKey(const GdkEventKey& event);
    void openNewTab();
    void editingCommand(const char* command, const char* entrySignal);
    void zoom(double factor);
    void refresh();

    [[nodiscard]] WebKitWebView* currentView() const { return m_tabs.current(); }

    Handlers m_handlers;
    GtkWidget* m_window;
    GtkWidget* m_menuBar;
    GlibPointer<GtkAccelGroup> m_accelerators;
    SessionHistory m_history;
    AddressBar m_addressBar;
    BrowserTabs m_tabs;
    std::optional<HistoryMenu> m_historyMenu;
    GtkWidget* m_developItem = nullptr;
    GtkWidget* m_developerHint = nullptr;
};

} // namespace corvanta::lab
