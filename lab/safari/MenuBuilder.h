// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

#include <functional>

namespace corvanta::lab {

/// Builds one menu of a menu bar, item by item, with keyboard shortcuts.
class MenuBuilder {
public:
    using Action = std::function<void()>;

    /// A menu titled `title` at the end of `bar`; shortcuts work in the windows that have `accelerators`.
    MenuBuilder(GtkMenuShell* bar, const char* title, GtkAccelGroup* accelerators);

    /// `shortcut` in GTK's notation ("<Primary>l"), or null. The action lives as long as the item.
    MenuBuilder& item(const char* title, const char* shortcut, Action action);
    MenuBuilder& separator();

    /// The item in the bar.
    [[nodiscard]] GtkWidget* root() const { return m_root; }

private:
    GtkWidget* m_root;
    GtkMenuShell* m_menu;
    GtkAccelGroup* m_accelerators;
};

/// A menu item that runs `action` when it is chosen; not yet shown.
[[nodiscard]] GtkWidget* makeActionItem(const char* title, MenuBuilder::Action action);

} // namespace corvanta::lab
