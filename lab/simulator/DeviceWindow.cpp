// SPDX-License-Identifier: MIT
#include "DeviceWindow.h"

#include "DeviceStyle.h"
#include "EngineHost.h"
#include "ScreenCapture.h"
#include "ShownText.h"

#include <QTime>

#include <gdk/gdkx.h>
#include <gtk/gtk.h>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

constexpr QSize minimumSize{220, 300};
/// Free space around the device and its border at full size.
constexpr QSize fullSizeExtra{90, 90};

/// The largest size of the device's own aspect that leaves room on the main screen.
QSize firstSize(const QSize& full) {
    GdkMonitor* monitor = gdk_display_get_primary_monitor(gdk_display_get_default());
    if (monitor == nullptr) {
        monitor = gdk_display_get_monitor(gdk_display_get_default(), 0);
    }
    GdkRectangle area{0, 0, 1280, 800};
    if (monitor != nullptr) {
        gdk_monitor_get_workarea(monitor, &area);
    }
    const QSize limit(area.width * 8 / 10, area.height * 85 / 100);
    return full.width() <= limit.width() && full.height() <= limit.height() ? full
                                                                            : full.scaled(limit, Qt::KeepAspectRatio);
}

} // namespace

DeviceWindow::DeviceWindow(const DeviceType& type, const Runtime& runtime, const QString& deviceName, Events events)
    : m_type(type)
    , m_runtimeName(runtime.name)
    , m_events(std::move(events)) {
    char* themeName = nullptr;
    g_object_get(gtk_settings_get_default(), "gtk-theme-name", &themeName, nullptr);
    m_themeName = themeName;
    g_free(themeName);
    addDeviceStyle();
    presentAs(type);
    makeCommands();
    m_content = gtk_overlay_new();
    g_object_ref_sink(m_content);
    gtk_widget_set_size_request(m_content, minimumSize.width(), minimumSize.height());
    makePages(runtime);
    makeLayers();

    m_hidden = gtk_offscreen_window_new();
    // It is nobody's window: tools that list windows must not meet it.
    atk_object_set_role(gtk_widget_get_accessible(m_hidden), ATK_ROLE_REDUNDANT_OBJECT);
    // Asked for, as an offscreen window forgets its default size, and with room for the device on its side: in a small
    // window the engine would not draw a page's text as small as it is on the device.
    const int side = DeviceLayout::sideAtFullSize(type);
    gtk_widget_set_size_request(m_hidden, side, side);
    followSize({side, side});
    moveContentTo(m_hidden);
    gtk_widget_show(m_hidden);
    makeWindow();
    setDeviceName(deviceName);
    scheduleClock();
}

DeviceWindow::~DeviceWindow() {
    if (m_clock != 0) {
        g_source_remove(m_clock);
    }
    if (m_rescale != 0) {
        g_source_remove(m_rescale);
    }
    if (m_raise != 0) {
        g_source_remove(m_raise);
    }
    for (GtkWidget* widget : {m_window, m_content, m_canvas, m_corners}) {
        g_signal_handlers_disconnect_by_data(widget, this);
    }
    for (GtkWidget* layer : {m_keyboard->widget(), m_overview->widget(), m_sheets->widget()}) {
        g_signal_handlers_disconnect_by_data(layer, this);
    }
    m_bar.reset();
    GtkWidget* pages = m_pages->widget();
    m_sheets->abandonAll();
    m_pages.reset();
    m_requests.reset();
    m_locationPermission.reset();
    m_keyboard.reset();
    gtk_widget_destroy(pages);
    gtk_widget_destroy(m_window);
    gtk_widget_destroy(m_hidden);
    g_object_unref(m_content);
}

void DeviceWindow::setDeviceName(const QString& deviceName) {
    gtk_window_set_title(GTK_WINDOW(m_window),
                         shownLine(u"%1 – %2"_s.arg(deviceName, m_runtimeName).toStdString()).c_str());
}

void DeviceWindow::makeWindow() {
    m_window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    gtk_window_set_icon_name(GTK_WINDOW(m_window), "dev.corvanta.Lab.Simulator");
    const QSize size = firstSize(m_type.screen + fullSizeExtra).expandedTo(minimumSize);
    gtk_window_set_default_size(GTK_WINDOW(m_window), size.width(), size.height());
    const auto closed = +[](GtkWidget*, GdkEvent*, gpointer window) -> gboolean {
        static_cast<DeviceWindow*>(window)->hide();
        return TRUE;
    };
    g_signal_connect(m_window, "delete-event", G_CALLBACK(closed), this);
    const auto mapped = +[](GtkWidget*, GdkEvent*, gpointer window) -> gboolean {
        auto* self = static_cast<DeviceWindow*>(window);
        for (const auto& then : std::exchange(self->m_waiting, {})) {
            then();
        }
        return FALSE;
    };
    g_signal_connect(m_window, "map-event", G_CALLBACK(mapped), this);
    const auto key = +[](GtkWidget*, GdkEventKey* event, gpointer window) -> gboolean {
        return static_cast<DeviceWindow*>(window)->handleKey(*event) ? TRUE : FALSE;
    };
    g_signal_connect(m_window, "key-press-event", G_CALLBACK(key), this);
}

void DeviceWindow::moveContentTo(GtkWidget* parent) {
    if (GtkWidget* old = gtk_widget_get_parent(m_content)) {
        gtk_container_remove(GTK_CONTAINER(old), m_content);
    }
    gtk_container_add(GTK_CONTAINER(parent), m_content);
}

void DeviceWindow::show(WindowFocus focus, std::function<void()> then) {
    const bool isBroughtForward = focus == WindowFocus::take;
    if (gtk_widget_get_mapped(m_window)) {
        if (isBroughtForward) {
            present();
        }
        then();
        return;
    }
    m_waiting.push_back(std::move(then));
    if (gtk_widget_get_visible(m_window)) {
        if (isBroughtForward) {
            gtk_window_set_focus_on_map(GTK_WINDOW(m_window), TRUE);
            gtk_window_present(GTK_WINDOW(m_window));
        }
        return;
    }
    moveContentTo(m_window);
    gtk_widget_realize(m_window);
    gtk_window_set_focus_on_map(GTK_WINDOW(m_window), isBroughtForward ? TRUE : FALSE);
    if (isBroughtForward) {
        present();
    } else {
        gtk_widget_show(m_window);
    }
    m_pages->focus();
    m_events.shown(true);
}

void DeviceWindow::present() {
    gtk_window_present_with_time(GTK_WINDOW(m_window), gdk_x11_get_server_time(gtk_widget_get_window(m_window)));
}

void DeviceWindow::hide() {
    gtk_widget_hide(m_window);
    moveContentTo(m_hidden);
    m_events.shown(false);
}

void DeviceWindow::apply(const DeviceSettings& settings) {
    m_look.isDark = settings.appearance == u"dark";
    m_look.statusBar = StatusBarContent::of(settings.statusBar);
    // The engine tells pages the appearance of the toolkit.
    g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", m_look.isDark ? TRUE : FALSE,
                 nullptr);
    GtkStyleContext* style = gtk_widget_get_style_context(m_content);
    m_look.isDark ? gtk_style_context_add_class(style, "dark") : gtk_style_context_remove_class(style, "dark");
    m_keyboard->setDark(m_look.isDark);
    g_object_set(gtk_settings_get_default(), "gtk-enable-animations", settings.reduceMotion ? FALSE : TRUE, nullptr);
    m_isMotionReduced = settings.reduceMotion;
    // So does it with the contrast, which it reads from the theme's name.
    g_object_set(gtk_settings_get_default(), "gtk-theme-name",
                 settings.increaseContrast ? "HighContrast" : m_themeName.constData(), nullptr);
    m_pages->setContentSize(settings.contentSize);
    m_pages->location().setAllowed(settings.locationAccess() != LocationAccess::denied);
    m_locationPermission->setAccess(settings.locationAccess());
    gtk_widget_queue_draw(m_content);
}

QByteArray DeviceWindow::screenshot(const QString& format, const QString& mask, double scale) {
    std::vector<ScreenLayer> layers;
    for (GtkWidget* widget :
         {m_pages->widget(), m_bar->widget(), m_keyboard->widget(), m_overview->widget(), m_sheets->widget()}) {
        if (gtk_widget_get_visible(widget) != FALSE) {
            layers.push_back({widget, placeOf(widget).topLeft()});
        }
    }
    return captureScreen(m_canvas, layers, m_type, m_layout, m_look, {format, mask, scale > 0 ? scale : m_type.scale});
}

void DeviceWindow::followSize(QSize area) {
    if (area == m_area) {
        return;
    }
    m_area = area;
    layOut();
}

void DeviceWindow::setOrientation(Orientation orientation) {
    if (orientation == m_look.orientation) {
        return;
    }
    const bool isTurnedOver = isLandscape(orientation) != isLandscape(m_look.orientation);
    m_look.orientation = orientation;
    if (isTurnedOver && gtk_widget_get_visible(m_window) != FALSE) {
        int width = 0;
        int height = 0;
        gtk_window_get_size(GTK_WINDOW(m_window), &width, &height);
        gtk_window_resize(GTK_WINDOW(m_window), height, width);
    }
    m_bar->setOrientation(orientation);
    layOut();
    m_pages->turn(orientation);
    tellKeyboard();
}

void DeviceWindow::layOut() {
    if (!m_pages || m_area.isEmpty()) {
        return;
    }
    const WebPage* page = m_pages->front();
    m_layout = DeviceLayout::fit(m_type, m_area, m_look.orientation,
                                 page == nullptr ? ViewportFit::automatic : page->viewportFit());
    m_pages->setPageSize(m_layout.page.size());
    if (m_rescale == 0) {
        // Sizes asked for while sizes are given would be lost.
        const auto later = +[](gpointer window) -> gboolean {
            auto* self = static_cast<DeviceWindow*>(window);
            self->m_rescale = 0;
            self->rescale();
            return G_SOURCE_REMOVE;
        };
        m_rescale = g_idle_add_full(GDK_PRIORITY_EVENTS, later, this, nullptr);
    }
}

void DeviceWindow::rescale() {
    m_bar->setScale(m_layout.zoom);
    m_overview->setScale(m_layout.zoom);
    m_sheets->setScale(m_layout.zoom);
    m_keyboard->setScale(m_layout.zoom, m_type.shape == DeviceShape::homeButton ? 0 : 24);
    tellKeyboard();
    gtk_widget_queue_resize(m_content);
}

bool DeviceWindow::handleKey(const GdkEventKey& event) {
    GtkWidget* focused = gtk_window_get_focus(GTK_WINDOW(m_window));
    const WebPage* page = m_pages->front();
    const bool isEditing = (focused != nullptr && GTK_IS_ENTRY(focused)) || (page != nullptr && page->isEditing());
    if (m_sheets->isShown()) {
        return false;
    }
    if (handleShortcut(m_commands, event, isEditing)) {
        return true;
    }
    const guint modifiers = event.state & gtk_accelerator_get_default_mod_mask();
    const bool isControl = (modifiers & GDK_CONTROL_MASK) != 0;
    if (isControl && (event.keyval == GDK_KEY_Tab || event.keyval == GDK_KEY_ISO_Left_Tab)) {
        m_pages->step((modifiers & GDK_SHIFT_MASK) != 0 || event.keyval == GDK_KEY_ISO_Left_Tab ? -1 : 1);
    } else if (modifiers == GDK_MOD1_MASK && event.keyval == GDK_KEY_Left) {
        m_pages->goBack();
    } else if (modifiers == GDK_MOD1_MASK && event.keyval == GDK_KEY_Right) {
        m_pages->goForward();
    } else if (event.keyval == GDK_KEY_Escape && m_overview->isShown()) {
        m_overview->hide();
    } else {
        return false;
    }
    return true;
}

void DeviceWindow::scheduleClock() {
    const auto tick = +[](gpointer window) -> gboolean {
        auto* self = static_cast<DeviceWindow*>(window);
        gtk_widget_queue_draw(self->m_canvas);
        self->scheduleClock();
        return G_SOURCE_REMOVE;
    };
    m_clock = g_timeout_add_seconds(static_cast<guint>(61 - QTime::currentTime().second()), tick, this);
}

} // namespace corvanta::lab
