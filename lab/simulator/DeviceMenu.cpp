// SPDX-License-Identifier: MIT
#include "DeviceMenu.h"

#include <gtk/gtk.h>

namespace corvanta::lab {

namespace {

void run(GtkMenuItem*, gpointer command) {
    (*static_cast<const std::function<void()>*>(command))();
}

void add(GtkWidget* menu, const char* label, const std::function<void()>& command, guint key = 0,
         GdkModifierType modifiers = GDK_CONTROL_MASK) {
    GtkWidget* item = gtk_menu_item_new_with_label(label);
    if (key != 0) {
        gtk_accel_label_set_accel(GTK_ACCEL_LABEL(gtk_bin_get_child(GTK_BIN(item))), key, modifiers);
    }
    g_signal_connect(item, "activate", G_CALLBACK(run), const_cast<std::function<void()>*>(&command));
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
}

void addCheck(GtkWidget* menu, const char* label, bool isOn, const std::function<void()>& command, guint key = 0,
              GdkModifierType modifiers = GDK_CONTROL_MASK) {
    GtkWidget* item = gtk_check_menu_item_new_with_label(label);
    gtk_check_menu_item_set_active(GTK_CHECK_MENU_ITEM(item), isOn ? TRUE : FALSE);
    if (key != 0) {
        gtk_accel_label_set_accel(GTK_ACCEL_LABEL(gtk_bin_get_child(GTK_BIN(item))), key, modifiers);
    }
    g_signal_connect(item, "activate", G_CALLBACK(run), const_cast<std::function<void()>*>(&command));
    gtk_menu_shell_append(GTK_MENU_SHELL(menu), item);
}

constexpr auto controlShift = static_cast<GdkModifierType>(GDK_CONTROL_MASK | GDK_SHIFT_MASK);

} // namespace

void openDeviceMenu(const DeviceCommands& commands, GtkWidget* over, const GdkEvent* event) {
    GtkWidget* menu = gtk_menu_new();
    const auto separate = [menu] { gtk_menu_shell_append(GTK_MENU_SHELL(menu), gtk_separator_menu_item_new()); };
    add(menu, "Rotate Left", commands.rotateLeft, GDK_KEY_Left);
    add(menu, "Rotate Right", commands.rotateRight, GDK_KEY_Right);
    separate();
    addCheck(menu, "Dark Appearance", commands.isDark(), commands.toggleAppearance, GDK_KEY_a, controlShift);
    addCheck(menu, "Reduce Motion", commands.isMotionReduced(), commands.toggleReducedMotion);
    addCheck(menu, "Software Keyboard", commands.isKeyboardShown(), commands.toggleKeyboard, GDK_KEY_k);
    separate();
    add(menu, "New Page", commands.newPage, GDK_KEY_t);
    add(menu, "Open Address…", commands.editAddress, GDK_KEY_l);
    add(menu, "Show All Pages", commands.showPages, GDK_KEY_backslash, controlShift);
    add(menu, "Reload Page", commands.reload, GDK_KEY_r);
    add(menu, "Close Page", commands.closePage, GDK_KEY_w);
    const auto closed = +[](GtkMenuShell* shell, gpointer) {
        // The item that was chosen is activated after this.
        const auto destroy = +[](gpointer finished) -> gboolean {
            gtk_widget_destroy(GTK_WIDGET(finished));
            return G_SOURCE_REMOVE;
        };
        g_idle_add(destroy, shell);
    };
    g_signal_connect(menu, "selection-done", G_CALLBACK(closed), nullptr);
    // Not to the button: the toolkit tells nobody on the accessibility bus of a button's menu.
    gtk_menu_attach_to_widget(GTK_MENU(menu), gtk_widget_get_toplevel(over), nullptr);
    gtk_widget_show_all(menu);
    if (GTK_IS_BUTTON(over)) {
        gtk_menu_popup_at_widget(GTK_MENU(menu), over, GDK_GRAVITY_SOUTH_EAST, GDK_GRAVITY_NORTH_EAST, event);
    } else {
        gtk_menu_popup_at_pointer(GTK_MENU(menu), event);
    }
}

GtkWidget* makeDeviceMenuButton(const DeviceCommands& commands) {
    GtkWidget* button = gtk_button_new_from_icon_name("view-more-symbolic", GTK_ICON_SIZE_MENU);
    gtk_style_context_add_class(gtk_widget_get_style_context(button), "device-menu");
    gtk_widget_set_focus_on_click(button, FALSE);
    gtk_widget_set_halign(button, GTK_ALIGN_END);
    gtk_widget_set_valign(button, GTK_ALIGN_START);
    gtk_widget_set_tooltip_text(button, "Device");
    atk_object_set_name(gtk_widget_get_accessible(button), "Device");
    const auto clicked = +[](GtkWidget* pressed, gpointer data) {
        GdkEvent* event = gtk_get_current_event();
        openDeviceMenu(*static_cast<const DeviceCommands*>(data), pressed, event);
        if (event != nullptr) {
            gdk_event_free(event);
        }
    };
    g_signal_connect(button, "clicked", G_CALLBACK(clicked), const_cast<DeviceCommands*>(&commands));
    return button;
}

bool handleShortcut(const DeviceCommands& commands, const GdkEventKey& event, bool isEditing) {
    const guint modifiers = event.state & gtk_accelerator_get_default_mod_mask();
    const guint key = gdk_keyval_to_lower(event.keyval);
    const std::function<void()>* command = nullptr;
    if (modifiers == GDK_CONTROL_MASK) {
        command = key == GDK_KEY_Left && !isEditing    ? &commands.rotateLeft
                  : key == GDK_KEY_Right && !isEditing ? &commands.rotateRight
                  : key == GDK_KEY_k                   ? &commands.toggleKeyboard
                  : key == GDK_KEY_t                   ? &commands.newPage
                  : key == GDK_KEY_l                   ? &commands.editAddress
                  : key == GDK_KEY_r                   ? &commands.reload
                  : key == GDK_KEY_w                   ? &commands.closePage
                                                       : nullptr;
    } else if (modifiers == controlShift) {
        command = key == GDK_KEY_a                                 ? &commands.toggleAppearance
                  : key == GDK_KEY_backslash || key == GDK_KEY_bar ? &commands.showPages
                                                                   : nullptr;
    }
    if (command == nullptr) {
        return false;
    }
    (*command)();
    return true;
}

} // namespace corvanta::lab
