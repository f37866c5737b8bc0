// SPDX-License-Identifier: MIT
#include "LeafMenuItem.h"

#include <gtk/gtk-a11y.h>

namespace corvanta::lab {

namespace {

/// Both kinds of item have the actions of GTK's plain item.
AtkActionIface* originalActions = nullptr;

gboolean doAction(AtkAction* action, gint index) {
    GtkWidget* const item = gtk_accessible_get_widget(GTK_ACCESSIBLE(action));
    if (index != 0 || !item || gtk_widget_get_mapped(item))
        return originalActions->do_action(action, index);
    if (!gtk_widget_is_sensitive(item) || !gtk_widget_get_visible(item))
        return FALSE;
    gtk_menu_item_activate(GTK_MENU_ITEM(item));
    return TRUE;
}

GType registerAccessible(GType parent, const char* name) {
    GTypeQuery query;
    g_type_query(parent, &query);
    const GType type =
        g_type_register_static_simple(parent, name, query.class_size, nullptr, query.instance_size, nullptr, {});
    const GInterfaceInfo actions{[](gpointer interface, gpointer) {
                                     originalActions =
                                         static_cast<AtkActionIface*>(g_type_interface_peek_parent(interface));
                                     static_cast<AtkActionIface*>(interface)->do_action = doAction;
                                 },
                                 nullptr, nullptr};
    g_type_add_interface_static(type, ATK_TYPE_ACTION, &actions);
    return type;
}

template<typename ItemClass>
GType registerItem(GType parent, const char* name, GClassInitFunc initialise) {
    GTypeQuery query;
    g_type_query(parent, &query);
    return g_type_register_static_simple(parent, name, sizeof(ItemClass), initialise, query.instance_size, nullptr, {});
}

GType leafItemType() {
    static const GType type =
        registerItem<GtkMenuItemClass>(GTK_TYPE_MENU_ITEM, "CorvantaLeafMenuItem", [](gpointer itemClass, gpointer) {
            gtk_widget_class_set_accessible_type(
                GTK_WIDGET_CLASS(itemClass),
                registerAccessible(GTK_TYPE_MENU_ITEM_ACCESSIBLE, "CorvantaLeafMenuItemAccessible"));
        });
    return type;
}

GType leafCheckItemType() {
    static const GType type = registerItem<GtkCheckMenuItemClass>(
        GTK_TYPE_CHECK_MENU_ITEM, "CorvantaLeafCheckItem", [](gpointer itemClass, gpointer) {
            gtk_widget_class_set_accessible_type(
                GTK_WIDGET_CLASS(itemClass),
                registerAccessible(GTK_TYPE_CHECK_MENU_ITEM_ACCESSIBLE, "CorvantaLeafCheckItemAccessible"));
        });
    return type;
}

} // namespace

GtkWidget* makeLeafMenuItem(const char* title) {
    return GTK_WIDGET(g_object_new(leafItemType(), "label", title, nullptr));
}

GtkWidget* makeLeafCheckItem(const char* title) {
    return GTK_WIDGET(g_object_new(leafCheckItemType(), "label", title, nullptr));
}

} // namespace corvanta::lab
