// SPDX-License-Identifier: MIT
// What is on the device's screen, and how its parts work together.
#include "DeviceWindow.h"

#include <gtk/gtk.h>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

void setRectangle(GdkRectangle* target, const QRect& source) {
    *target = {source.x(), source.y(), source.width(), source.height()};
}

} // namespace

void DeviceWindow::makeCommands() {
    m_commands = {.rotateLeft = [this] { setOrientation(turnedLeft(m_look.orientation)); },
                  .rotateRight = [this] { setOrientation(turnedRight(m_look.orientation)); },
                  .toggleAppearance =
                      [this] {
                          m_events.changeSettings([isDark = !m_look.isDark](DeviceSettings& settings) {
                              settings.appearance = isDark ? u"dark"_s : u"light"_s;
                          });
                      },
                  .toggleReducedMotion =
                      [this] {
                          m_events.changeSettings([isReduced = !m_isMotionReduced](DeviceSettings& settings) {
                              settings.reduceMotion = isReduced;
                          });
                      },
                  .toggleKeyboard = [this] { showKeyboard(!m_keyboard->isShown()); },
                  .newPage =
                      [this] {
                          m_pages->open(u"about:blank"_s);
                          m_bar->editAddress();
                      },
                  .editAddress = [this] { m_bar->editAddress(); },
                  .showPages = [this] { m_overview->isShown() ? m_overview->hide() : m_overview->show(); },
                  .closePage = [this] { m_pages->closeCurrent(); },
                  .reload = [this] { m_pages->reload(); },
                  .isDark = [this] { return m_look.isDark; },
                  .isMotionReduced = [this] { return m_isMotionReduced; },
                  .isKeyboardShown = [this] { return m_keyboard->isShown(); }};
}

void DeviceWindow::makePages(const Runtime& runtime) {
    BrowserPages::Events events{.changed =
                                    [this] {
                                        if (m_bar) {
                                            m_bar->update();
                                        }
                                    },
                                .viewportAsked = [this] { layOut(); },
                                .edited =
                                    [this](bool isEditing, bool byHand) {
                                        if (!isEditing || byHand) {
                                            showKeyboard(isEditing);
                                        }
                                    },
                                .opened =
                                    [this](WebPage& page) {
                                        m_overview->hide();
                                        m_requests->attend(page);
                                    },
                                .closing = [this](WebPage& page) { m_requests->forget(page); },
                                .ready = std::move(m_events.ready)};
    m_pages = std::make_unique<BrowserPages>(m_type, runtime, std::move(events));
    m_bar = std::make_unique<BrowserBar>(m_type, *m_pages, m_commands.showPages);
    m_overview = std::make_unique<PageOverview>(*m_pages);
    m_sheets = std::make_unique<SheetLayer>();
    m_locationPermission = std::make_unique<LocationPermission>(*m_sheets, [this](LocationAccess access) {
        m_events.changeSettings([access](DeviceSettings& settings) { settings.setLocationAccess(access); });
    });
    m_requests = std::make_unique<PageRequests>(*m_sheets, *m_locationPermission, m_pages->context());
    m_keyboard =
        std::make_unique<Keyboard>([this](unsigned keyValue) { type(keyValue); }, [this] { showKeyboard(false); });
}

void DeviceWindow::makeLayers() {
    m_canvas = gtk_drawing_area_new();
    gtk_widget_add_events(m_canvas, GDK_BUTTON_PRESS_MASK);
    gtk_container_add(GTK_CONTAINER(m_content), m_canvas);
    m_corners = gtk_drawing_area_new();
    // A window of its own would keep the mouse from what is below.
    gtk_widget_set_has_window(m_corners, FALSE);
    m_menuButton = makeDeviceMenuButton(m_commands);
    for (GtkWidget* layer : {m_pages->widget(), m_bar->widget(), m_keyboard->widget(), m_overview->widget(),
                             m_sheets->widget(), m_corners, m_menuButton}) {
        gtk_overlay_add_overlay(GTK_OVERLAY(m_content), layer);
    }
    gtk_overlay_set_overlay_pass_through(GTK_OVERLAY(m_content), m_corners, TRUE);
    const auto mapped = +[](GtkWidget*, gpointer window) { static_cast<DeviceWindow*>(window)->raiseCorners(); };
    for (GtkWidget* layer : {m_keyboard->widget(), m_overview->widget(), m_sheets->widget()}) {
        g_signal_connect_after(layer, "map", G_CALLBACK(mapped), this);
    }
    m_bar->update();

    const auto place = +[](GtkOverlay*, GtkWidget* child, GdkRectangle* area, gpointer window) -> gboolean {
        auto* self = static_cast<DeviceWindow*>(window);
        // Asked while the overlay is given its size, so this is where a new size is met first.
        self->followSize(
            {gtk_widget_get_allocated_width(self->m_content), gtk_widget_get_allocated_height(self->m_content)});
        if (child == self->m_menuButton) {
            return FALSE;
        }
        setRectangle(area, self->placeOf(child));
        return TRUE;
    };
    g_signal_connect(m_content, "get-child-position", G_CALLBACK(place), this);
    const auto draw = +[](GtkWidget*, cairo_t* context, gpointer window) -> gboolean {
        const auto* self = static_cast<DeviceWindow*>(window);
        drawDevice(context, self->m_type, self->m_layout, self->m_area, self->m_look);
        return TRUE;
    };
    g_signal_connect(m_canvas, "draw", G_CALLBACK(draw), this);
    const auto pressed = +[](GtkWidget* canvas, GdkEvent* event, gpointer window) -> gboolean {
        if (gdk_event_triggers_context_menu(event) == FALSE) {
            return FALSE;
        }
        openDeviceMenu(static_cast<DeviceWindow*>(window)->m_commands, canvas, event);
        return TRUE;
    };
    g_signal_connect(m_canvas, "button-press-event", G_CALLBACK(pressed), this);
    const auto drawCorners = +[](GtkWidget*, cairo_t* context, gpointer window) -> gboolean {
        const auto* self = static_cast<DeviceWindow*>(window);
        drawOverScreen(context, self->m_type, self->m_layout, self->m_look);
        drawScreenCorners(context, self->m_type, self->m_layout, self->m_area, self->m_look);
        return TRUE;
    };
    g_signal_connect(m_corners, "draw", G_CALLBACK(drawCorners), this);
    gtk_widget_show_all(m_content);
}

void DeviceWindow::raiseCorners() {
    if (m_raise != 0) {
        return;
    }
    // What is shown comes above everything in the end, also above the corners of the screen.
    const auto raise = +[](gpointer window) -> gboolean {
        auto* self = static_cast<DeviceWindow*>(window);
        self->m_raise = 0;
        for (GtkWidget* widget : {self->m_corners, self->m_menuButton}) {
            if (gtk_widget_get_realized(widget) != FALSE) {
                gdk_window_raise(gtk_widget_get_window(widget));
            }
        }
        gtk_widget_queue_draw(self->m_content);
        return G_SOURCE_REMOVE;
    };
    m_raise = g_idle_add(raise, this);
}

QRect DeviceWindow::placeOf(const GtkWidget* child) const {
    if (child == m_pages->widget()) {
        return m_layout.page;
    }
    if (child == m_bar->widget()) {
        return m_layout.bar;
    }
    if (child == m_keyboard->widget()) {
        return m_layout.keyboard;
    }
    if (child == m_sheets->widget()) {
        return m_layout.screen.toAlignedRect();
    }
    if (child == m_overview->widget()) {
        const int top = static_cast<int>(m_layout.statusBar.bottom());
        const QRect screen = m_layout.screen.toAlignedRect();
        return {screen.left(), top, screen.width(), screen.bottom() - top + 1};
    }
    return {QPoint(0, 0), m_area};
}

void DeviceWindow::showKeyboard(bool isShown) {
    if (m_keyboard && m_keyboard->isShown() != isShown) {
        m_keyboard->setShown(isShown);
        tellKeyboard();
    }
}

void DeviceWindow::tellKeyboard() {
    if (WebPage* page = m_pages->front()) {
        page->coverByKeyboard(m_keyboard->isShown() ? m_layout.page.bottom() + 1 - m_layout.keyboard.top() : 0);
    }
}

void DeviceWindow::type(unsigned keyValue) {
    GtkWidget* top = gtk_widget_get_toplevel(m_content);
    GtkWidget* focused = GTK_IS_WINDOW(top) ? gtk_window_get_focus(GTK_WINDOW(top)) : nullptr;
    if (focused == nullptr) {
        return;
    }
    GdkKeymap* keymap = gdk_keymap_get_for_display(gdk_display_get_default());
    GdkKeymapKey* keys = nullptr;
    int count = 0;
    gdk_keymap_get_entries_for_keyval(keymap, keyValue, &keys, &count);
    for (const GdkEventType kind : {GDK_KEY_PRESS, GDK_KEY_RELEASE}) {
        GdkEvent* event = gdk_event_new(kind);
        event->key.window = GDK_WINDOW(g_object_ref(gtk_widget_get_window(focused)));
        event->key.send_event = TRUE;
        event->key.time = gtk_get_current_event_time();
        event->key.keyval = keyValue;
        event->key.state = count > 0 && (keys[0].level & 1) != 0 ? GDK_SHIFT_MASK : 0;
        event->key.hardware_keycode = count > 0 ? static_cast<guint16>(keys[0].keycode) : 0;
        event->key.group = 0;
        gdk_event_set_device(event, gdk_seat_get_keyboard(gdk_display_get_default_seat(gdk_display_get_default())));
        gtk_widget_event(focused, event);
        gdk_event_free(event);
    }
    g_free(keys);
}

} // namespace corvanta::lab
