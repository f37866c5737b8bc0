// SPDX-License-Identifier: MIT
#pragma once

#include "MenuBuilder.h"
#include "SessionHistory.h"

#include <functional>
#include <string>
#include <vector>

namespace corvanta::lab {

/// The menu "History": the ways through the pages of the tab in front, and the pages that were seen in this session.
/// Belongs to its menu bar, which outlives it or goes with it. Main thread only.
class HistoryMenu {
public:
    struct Handlers {
        MenuBuilder::Action goBack;
        MenuBuilder::Action goForward;
        MenuBuilder::Action goHome;
        MenuBuilder::Action reopenClosedTab;
        MenuBuilder::Action clear;
        std::function<void(const std::string& url)> open;
    };

    /// What can be done now.
    struct State {
        bool canGoBack = false;
        bool canGoForward = false;
        bool canReopen = false;
    };

    HistoryMenu(GtkMenuShell* bar, GtkAccelGroup* accelerators, Handlers handlers);
    HistoryMenu(const HistoryMenu&) = delete;
    HistoryMenu& operator=(const HistoryMenu&) = delete;

    void setState(const State& state);
    /// Changes nothing that is in the menu already.
    void setVisits(const std::vector<Visit>& visits);

private:
    Handlers m_handlers;
    GtkWidget* m_menu;
    GtkWidget* m_back;
    GtkWidget* m_forward;
    GtkWidget* m_reopen;
    GtkWidget* m_clear;
    int m_firstPosition = 0;
    std::vector<Visit> m_visits;
    std::vector<GtkWidget*> m_items;
};

} // namespace corvanta::lab
