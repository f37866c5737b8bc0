// SPDX-License-Identifier: MIT
#include "LeafMenuItem.h"

#include <gtk/gtk-a11y.h>

namespace corvanta::lab {

namespace {

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

GType leafAccessibleType() {
    static const GType type = [] {
        const GType registered = g_type_register_static_simple(
            GTK_TYPE_MENU_ITEM_ACCESSIBLE, "CorvantaLeafMenuItemAccessible", sizeof(GtkMenuItemAccessibleClass),
            nullptr, sizeof(GtkMenuItemAccessible), nullptr, {});
        const GInterfaceInfo actions{[](gpointer interface, gpointer) {
                                         originalActions =
                                             static_cast<AtkActionIface*>(g_type_interface_peek_parent(interface));
                                         static_cast<AtkActionIface*>(interface)->do_action = doAction;
                                     },
                                     nullptr, nullptr};
        g_type_add_interface_static(registered, ATK_TYPE_ACTION, &actions);
        return registered;
    }();
    return type;
}

GType leafItemType() {
    static const GType type = g_type_register_static_simple(
        GTK_TYPE_MENU_ITEM, "CorvantaLeafMenuItem", sizeof(GtkMenuItemClass),
        [](gpointer itemClass, gpointer) {
            gtk_widget_class_set_accessible_type(GTK_WIDGET_CLASS(itemClass), leafAccessibleType());
        },
        sizeof(GtkMenuItem), nullptr, {});
    return type;
}

} // namespace

GtkWidget* makeLeafMenuItem(const char* title) {
    return GTK_WIDGET(g_object_new(leafItemType(), "label", title, nullptr));
}

} // namespace corvanta::lab
