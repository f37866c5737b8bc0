// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>
#include <webkit2/webkit2.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace corvanta::lab {

/// Whether a new tab is shown at once.
enum class TabPlace {
    inFront,
    behind,
};

/// The browser's tabs with their pages. A page that cannot be shown says why. Main thread only.
class BrowserTabs {
public:
    struct Handlers {
        /// Something about the page in front, or which one that is.
        std::function<void()> onChange;
        /// A page has come to be shown, in any tab.
        std::function<void(const std::string& url)> onVisit;
        std::function<void(const std::string& url, const std::string& title)> onTitle;
        /// The last tab is to be closed; it still stands.
        std::function<void()> onLastClosed;
    };

    explicit BrowserTabs(Handlers handlers);
    BrowserTabs(const BrowserTabs&) = delete;
    BrowserTabs& operator=(const BrowserTabs&) = delete;
    ~BrowserTabs();

    /// No handler is called from now on. Before the widget is destroyed.
    void letGo();

    [[nodiscard]] GtkWidget* widget() const { return GTK_WIDGET(m_notebook); }

    /// The page in front; null before the first tab.
    [[nodiscard]] WebKitWebView* current() const;
    [[nodiscard]] std::string currentTitle() const;
    /// As a person is to see it: the start page has none.
    [[nodiscard]] std::string currentAddress() const;

    /// The start page when `address` is empty.
    void open(const std::string& address, TabPlace place = TabPlace::inFront);
    void load(const std::string& address);
    void close(GtkWidget* view);

    void closeCurrent() { close(GTK_WIDGET(current())); }

    [[nodiscard]] bool canReopen() const { return !m_closed.empty(); }

    /// The tab that was closed last, with its pages.
    void reopenClosed();
    void forgetClosed();

    /// The next or the previous tab, round the ends.
    void step(int direction);
    /// The tab with that number, from 0; the last one when there are fewer and `number` is 8.
    void select(int number);

private:
    class Tab;

    Tab& add(WebKitWebView* related, TabPlace place);
    [[nodiscard]] Tab* tabOf(GtkWidget* view) const;
    void updateTabs();

    struct StateDeleter {
        void operator()(WebKitWebViewSessionState* state) const { webkit_web_view_session_state_unref(state); }
    };

    static constexpr std::size_t longestClosed = 20;

    Handlers m_handlers;
    GtkNotebook* m_notebook;
    std::vector<std::unique_ptr<Tab>> m_tabs;
    std::vector<std::unique_ptr<WebKitWebViewSessionState, StateDeleter>> m_closed;
};

} // namespace corvanta::lab
