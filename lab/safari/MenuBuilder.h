// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

#include <functional>
#include <string>

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

    /// The item that was added last; null before the first.
    [[nodiscard]] GtkWidget* last() const { return m_last; }

    /// The item in the bar.
    [[nodiscard]] GtkWidget* root() const { return m_root; }

private:
    GtkWidget* m_root;
    GtkMenuShell* m_menu;
    GtkAccelGroup* m_accelerators;
    GtkWidget* m_last = nullptr;
};

/// A menu item that runs `action` when it is chosen; not yet shown.
[[nodiscard]] GtkWidget* makeActionItem(const char* title, MenuBuilder::Action action);

/// A shown item without an action of its own. Its title comes from a device or a page: no character of it is a mnemonic
/// or mark-up.
[[nodiscard]] GtkWidget* makePlainItem(const char* title);
[[nodiscard]] GtkWidget* makeSubmenuItem(const char* title);
[[nodiscard]] GtkWidget* makeSeparatorItem();

/// Titles the item anew; says nothing to anybody when that is its title already.
void relabel(GtkWidget* item, const std::string& title);

} // namespace corvanta::lab
