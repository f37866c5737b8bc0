// SPDX-License-Identifier: MIT
#include "MenuBuilder.h"

#include "LeafMenuItem.h"

#include <memory>
#include <utility>

namespace corvanta::lab {

MenuBuilder::MenuBuilder(GtkMenuShell* bar, const char* title, GtkAccelGroup* accelerators)
    : m_root(gtk_menu_item_new_with_label(title))
    , m_menu(GTK_MENU_SHELL(gtk_menu_new()))
    , m_accelerators(accelerators) {
    gtk_menu_item_set_submenu(GTK_MENU_ITEM(m_root), GTK_WIDGET(m_menu));
    gtk_widget_show(m_root);
    gtk_menu_shell_append(bar, m_root);
}

MenuBuilder& MenuBuilder::item(const char* title, const char* shortcut, Action action) {
    GtkWidget* const entry = makeActionItem(title, std::move(action));
    if (shortcut) {
        guint key = 0;
        GdkModifierType modifiers{};
        gtk_accelerator_parse(shortcut, &key, &modifiers);
        gtk_widget_add_accelerator(entry, "activate", m_accelerators, key, modifiers, GTK_ACCEL_VISIBLE);
    }
    gtk_widget_show(entry);
    gtk_menu_shell_append(m_menu, entry);
    return *this;
}

MenuBuilder& MenuBuilder::separator() {
    GtkWidget* const line = gtk_separator_menu_item_new();
    gtk_widget_show(line);
    gtk_menu_shell_append(m_menu, line);
    return *this;
}

GtkWidget* makeActionItem(const char* title, MenuBuilder::Action action) {
    GtkWidget* const item = makeLeafMenuItem(title);
    auto owned = std::make_unique<MenuBuilder::Action>(std::move(action));
    g_signal_connect_data(item, "activate", G_CALLBACK(+[](GtkMenuItem*, MenuBuilder::Action* run) { (*run)(); }),
                          owned.release(),
                          [](gpointer data, GClosure*) { delete static_cast<MenuBuilder::Action*>(data); }, {});
    return item;
}

} // namespace corvanta::lab
