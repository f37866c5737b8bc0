// SPDX-License-Identifier: MIT
#include "TouchInput.h"

#include <gtk/gtk.h>

namespace {

/// Any address: the toolkit tells fingers apart by it and does not look behind it.
char finger = 0;

GdkEventType touchType(GdkEventType type) {
    switch (type) {
    case GDK_BUTTON_PRESS:
        return GDK_TOUCH_BEGIN;
    case GDK_BUTTON_RELEASE:
        return GDK_TOUCH_END;
    default:
        return GDK_TOUCH_UPDATE;
    }
}

void touch(GtkWidget* view, GdkEvent* mouse) {
    GdkEvent* event = gdk_event_new(touchType(mouse->type));
    event->touch.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(view)));
    event->touch.time = gdk_event_get_time(mouse);
    gdk_event_get_coords(mouse, &event->touch.x, &event->touch.y);
    gdk_event_get_root_coords(mouse, &event->touch.x_root, &event->touch.y_root);
    event->touch.sequence = reinterpret_cast<GdkEventSequence*>(&finger);
    // A touch that says that it moves the pointer would be turned back into a mouse before gestures see it.
    event->touch.emulating_pointer = FALSE;
    gdk_event_set_device(event, gdk_event_get_device(mouse));
    gdk_event_set_source_device(event, gdk_event_get_source_device(mouse));
    gdk_event_set_screen(event, gtk_widget_get_screen(view));
    gtk_main_do_event(event);
    gdk_event_free(event);
}

gboolean handleEvent(GtkWidget* view, GdkEvent* event, gpointer) {
    static constexpr char isDown[] = "corvanta-finger-is-down";
    auto* const object = G_OBJECT(view);
    switch (event->type) {
    case GDK_BUTTON_PRESS:
        gtk_widget_grab_focus(view);
        if (event->button.button == GDK_BUTTON_PRIMARY) {
            g_object_set_data(object, isDown, object);
            touch(view, event);
        }
        return TRUE;
    case GDK_BUTTON_RELEASE:
        if (event->button.button == GDK_BUTTON_PRIMARY && g_object_steal_data(object, isDown) != nullptr) {
            touch(view, event);
        }
        return TRUE;
    case GDK_MOTION_NOTIFY:
        if (g_object_get_data(object, isDown) != nullptr) {
            touch(view, event);
        }
        return TRUE;
    case GDK_2BUTTON_PRESS:
    case GDK_3BUTTON_PRESS:
    case GDK_ENTER_NOTIFY:
    case GDK_LEAVE_NOTIFY:
        return TRUE;
    default:
        return FALSE;
    }
}

} // namespace

// The gestures of a finger are for touches that say that they move the pointer, which those from here must not.
extern "C" G_MODULE_EXPORT gboolean gdk_event_get_pointer_emulated(GdkEvent* event) {
    return event->type >= GDK_TOUCH_BEGIN && event->type <= GDK_TOUCH_CANCEL ? TRUE : FALSE;
}

namespace corvanta::lab {

void touchWithMouse(GtkWidget* view) {
    g_signal_connect(view, "event", G_CALLBACK(handleEvent), nullptr);
}

} // namespace corvanta::lab
