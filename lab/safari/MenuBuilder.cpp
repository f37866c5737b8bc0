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
    m_last = entry;
    return *this;
}

MenuBuilder& MenuBuilder::separator() {
    gtk_menu_shell_append(m_menu, makeSeparatorItem());
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

GtkWidget* makePlainItem(const char* title) {
    GtkWidget* const item = makeLeafMenuItem(title);
    gtk_widget_show(item);
    return item;
}

GtkWidget* makeSubmenuItem(const char* title) {
    GtkWidget* const item = gtk_menu_item_new_with_label(title);
    gtk_widget_show(item);
    return item;
}

GtkWidget* makeSeparatorItem() {
    GtkWidget* const item = gtk_separator_menu_item_new();
    gtk_widget_show(item);
    return item;
}

void relabel(GtkWidget* item, const std::string& title) {
    if (title != gtk_menu_item_get_label(GTK_MENU_ITEM(item)))
        gtk_menu_item_set_label(GTK_MENU_ITEM(item), title.c_str());
}

} // namespace corvanta::lab
