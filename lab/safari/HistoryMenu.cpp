// SPDX-License-Identifier: MIT
#include "HistoryMenu.h"

#include "ShownText.h"

#include <algorithm>
#include <utility>

namespace corvanta::lab {

namespace {

constexpr std::size_t longestTitle = 60;

} // namespace

HistoryMenu::HistoryMenu(GtkMenuShell* bar, GtkAccelGroup* accelerators, Handlers handlers)
    : m_handlers(std::move(handlers)) {
    MenuBuilder builder(bar, "History", accelerators);
    m_menu = gtk_menu_item_get_submenu(GTK_MENU_ITEM(builder.root()));
    m_back = builder.item("Back", "<Alt>Left", m_handlers.goBack).last();
    m_forward = builder.item("Forward", "<Alt>Right", m_handlers.goForward).last();
    builder.item("Home", "<Alt>Home", m_handlers.goHome).separator();
    m_reopen = builder.item("Reopen Last Closed Tab", "<Primary><Shift>t", m_handlers.reopenClosedTab).last();
    builder.separator();
    GList* const items = gtk_container_get_children(GTK_CONTAINER(m_menu));
    m_firstPosition = static_cast<int>(g_list_length(items));
    g_list_free(items);
    m_clear = builder.item("Clear History", nullptr, m_handlers.clear).last();
    gtk_widget_set_sensitive(m_clear, FALSE);
    setState({});
}

void HistoryMenu::setState(const State& state) {
    gtk_widget_set_sensitive(m_back, state.canGoBack);
    gtk_widget_set_sensitive(m_forward, state.canGoForward);
    gtk_widget_set_sensitive(m_reopen, state.canReopen);
    gtk_widget_set_sensitive(m_clear, state.canReopen || !m_visits.empty());
}

void HistoryMenu::setVisits(const std::vector<Visit>& visits) {
    if (visits == m_visits)
        return;
    m_visits = visits;
    std::ranges::for_each(std::exchange(m_items, {}), gtk_widget_destroy);
    int position = m_firstPosition;
    for (const Visit& visit : m_visits) {
        GtkWidget* const item = makeActionItem(shownLine(visit.title, longestTitle).c_str(),
                                               [this, url = visit.url] { m_handlers.open(url); });
        gtk_widget_set_tooltip_text(item, shownLine(visit.url).c_str());
        gtk_widget_show(item);
        gtk_menu_shell_insert(GTK_MENU_SHELL(m_menu), item, position++);
        m_items.push_back(item);
    }
    if (!m_visits.empty()) {
        m_items.push_back(makeSeparatorItem());
        gtk_menu_shell_insert(GTK_MENU_SHELL(m_menu), m_items.back(), position);
    }
}

} // namespace corvanta::lab
