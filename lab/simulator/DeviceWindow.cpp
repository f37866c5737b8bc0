// SPDX-License-Identifier: MIT
#include "DeviceWindow.h"

#include "EngineHost.h"

#include "ScreenCapture.h"

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

constexpr char windowStyle[] = ".browser-bar { background: transparent; color: #0a66d6; }"
                               ".browser-bar button { min-width: 0; min-height: 0; padding: 0; margin: 0; border: none;"
                               "  background: transparent; box-shadow: none; color: #0a66d6; -gtk-icon-shadow: none; }"
                               ".browser-bar button:hover { color: #003f91; }"
                               ".browser-bar button:focus { outline: 2px solid #0a66d6; outline-offset: -2px; }"
                               ".browser-bar button:disabled { color: #b4b4bb; }"
                               ".browser-bar label { color: #1c1c1e; min-width: 0; min-height: 0; }"
                               ".browser-bar .address { background: #e4e4e9; }"
                               ".start-page label { color: #636366; margin: 0 12px; }"
                               ".start-page .start-page-title { color: #1c1c1e; font-size: 20px; font-weight: 600; }"
                               ".page-message { background: #ffffff; color: #1c1c1e; padding: 8px; }";

void addStyle() {
    GtkCssProvider* provider = gtk_css_provider_new();
    gtk_css_provider_load_from_data(provider, windowStyle, -1, nullptr);
    gtk_style_context_add_provider_for_screen(gdk_screen_get_default(), GTK_STYLE_PROVIDER(provider),
                                              GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
    g_object_unref(provider);
}

void setRectangle(GdkRectangle* target, const QRect& source) {
    *target = {source.x(), source.y(), source.width(), source.height()};
}

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

DeviceWindow::DeviceWindow(const DeviceType& type, const Runtime& runtime, const QString& deviceName,
                           std::function<void()> ready, std::function<void(bool)> shown)
    : m_type(type)
    , m_shown(std::move(shown)) {
    addStyle();
    m_content = gtk_overlay_new();
    g_object_ref_sink(m_content);
    gtk_widget_set_size_request(m_content, minimumSize.width(), minimumSize.height());
    m_canvas = gtk_drawing_area_new();
    gtk_container_add(GTK_CONTAINER(m_content), m_canvas);

    presentAs(type);
    m_pages = std::make_unique<BrowserPages>(type, runtime,
                                             BrowserPages::Events{.changed =
                                                                      [this] {
                                                                          if (m_bar) {
                                                                              m_bar->update();
                                                                          }
                                                                      },
                                                                  .viewportAsked = [this] { layOut(); },
                                                                  .edited = [](bool, bool) {},
                                                                  .ready = std::move(ready)});
    m_bar = std::make_unique<BrowserBar>(type, *m_pages);
    m_corners = gtk_drawing_area_new();
    gtk_overlay_add_overlay(GTK_OVERLAY(m_content), m_pages->widget());
    gtk_overlay_add_overlay(GTK_OVERLAY(m_content), m_bar->widget());
    gtk_overlay_add_overlay(GTK_OVERLAY(m_content), m_corners);
    gtk_overlay_set_overlay_pass_through(GTK_OVERLAY(m_content), m_corners, TRUE);
    m_bar->update();

    const auto place = +[](GtkOverlay*, GtkWidget* child, GdkRectangle* area, gpointer window) -> gboolean {
        auto* self = static_cast<DeviceWindow*>(window);
        // Asked while the overlay is given its size, so this is where a new size is met first.
        self->followSize(
            {gtk_widget_get_allocated_width(self->m_content), gtk_widget_get_allocated_height(self->m_content)});
        if (child == self->m_pages->widget()) {
            setRectangle(area, self->m_layout.page);
        } else if (child == self->m_bar->widget()) {
            setRectangle(area, self->m_layout.bar);
        } else {
            setRectangle(area, QRect(QPoint(0, 0), self->m_area));
        }
        return TRUE;
    };
    g_signal_connect(m_content, "get-child-position", G_CALLBACK(place), this);
    const auto draw = +[](GtkWidget*, cairo_t* context, gpointer window) -> gboolean {
        const auto* self = static_cast<DeviceWindow*>(window);
        drawDevice(context, self->m_type, self->m_layout, self->m_area, self->m_statusBar);
        return TRUE;
    };
    g_signal_connect(m_canvas, "draw", G_CALLBACK(draw), this);
    const auto drawCorners = +[](GtkWidget*, cairo_t* context, gpointer window) -> gboolean {
        const auto* self = static_cast<DeviceWindow*>(window);
        drawScreenCorners(context, self->m_type, self->m_layout);
        return TRUE;
    };
    g_signal_connect(m_corners, "draw", G_CALLBACK(drawCorners), this);
    gtk_widget_show_all(m_content);

    const QSize full = type.screen + fullSizeExtra;
    m_hidden = gtk_offscreen_window_new();
    // It is nobody's window: tools that list windows must not meet it.
    atk_object_set_role(gtk_widget_get_accessible(m_hidden), ATK_ROLE_REDUNDANT_OBJECT);
    gtk_window_set_default_size(GTK_WINDOW(m_hidden), full.width(), full.height());
    followSize(full);
    moveContentTo(m_hidden);
    gtk_widget_show(m_hidden);
    makeWindow(u"%1 – %2"_s.arg(deviceName, runtime.name));
    scheduleClock();
}

DeviceWindow::~DeviceWindow() {
    if (m_clock != 0) {
        g_source_remove(m_clock);
    }
    if (m_rescale != 0) {
        g_source_remove(m_rescale);
    }
    g_signal_handlers_disconnect_by_data(m_window, this);
    g_signal_handlers_disconnect_by_data(m_content, this);
    g_signal_handlers_disconnect_by_data(m_canvas, this);
    g_signal_handlers_disconnect_by_data(m_corners, this);
    m_bar.reset();
    GtkWidget* pages = m_pages->widget();
    m_pages.reset();
    gtk_widget_destroy(pages);
    gtk_widget_destroy(m_window);
    gtk_widget_destroy(m_hidden);
    g_object_unref(m_content);
}

void DeviceWindow::makeWindow(const QString& title) {
    m_window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
    const QByteArray text = title.toUtf8();
    gtk_window_set_title(GTK_WINDOW(m_window), text.constData());
    gtk_window_set_icon_name(GTK_WINDOW(m_window), "phone");
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
    m_shown(true);
}

void DeviceWindow::present() {
    gtk_window_present_with_time(GTK_WINDOW(m_window), gdk_x11_get_server_time(gtk_widget_get_window(m_window)));
}

void DeviceWindow::hide() {
    gtk_widget_hide(m_window);
    moveContentTo(m_hidden);
    m_shown(false);
}

void DeviceWindow::apply(const DeviceSettings& settings) {
    // The engine tells pages the appearance of the toolkit.
    g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme",
                 settings.appearance == u"dark" ? TRUE : FALSE, nullptr);
    m_pages->location().setAllowed(settings.allowsLocation());
    m_statusBar = StatusBarContent::of(settings.statusBar);
    gtk_widget_queue_draw(m_canvas);
}

QByteArray DeviceWindow::screenshot(const QString& format, const QString& mask, double scale) {
    const std::vector<ScreenLayer> layers{{m_pages->widget(), m_layout.page.topLeft()},
                                          {m_bar->widget(), m_layout.bar.topLeft()}};
    return captureScreen(m_canvas, layers, m_type, m_layout, {format, mask, scale > 0 ? scale : m_type.scale});
}

void DeviceWindow::followSize(QSize area) {
    if (area == m_area) {
        return;
    }
    m_area = area;
    layOut();
}

void DeviceWindow::setOrientation(Orientation orientation) {
    if (orientation == m_orientation) {
        return;
    }
    m_orientation = orientation;
    layOut();
    m_pages->turn(orientation);
}

void DeviceWindow::layOut() {
    if (!m_pages || m_area.isEmpty()) {
        return;
    }
    const WebPage* page = m_pages->front();
    m_layout = DeviceLayout::fit(m_type, m_area, m_orientation,
                                 page == nullptr ? ViewportFit::automatic : page->viewportFit());
    m_pages->setPageSize(m_layout.page.size());
    if (m_rescale == 0) {
        // Sizes asked for while sizes are given would be lost.
        const auto rescale = +[](gpointer window) -> gboolean {
            auto* self = static_cast<DeviceWindow*>(window);
            self->m_rescale = 0;
            self->m_bar->setScale(self->m_layout.zoom);
            gtk_widget_queue_resize(self->m_content);
            return G_SOURCE_REMOVE;
        };
        m_rescale = g_idle_add_full(GDK_PRIORITY_EVENTS, rescale, this, nullptr);
    }
}

bool DeviceWindow::handleKey(const GdkEventKey& event) {
    const guint modifiers = event.state & gtk_accelerator_get_default_mod_mask();
    const bool control = (modifiers & GDK_CONTROL_MASK) != 0;
    const bool shift = (modifiers & GDK_SHIFT_MASK) != 0;
    const guint key = gdk_keyval_to_lower(event.keyval);
    if (control && (key == GDK_KEY_Tab || key == GDK_KEY_ISO_Left_Tab)) {
        m_pages->step(shift || key == GDK_KEY_ISO_Left_Tab ? -1 : 1);
    } else if (control && key == GDK_KEY_w) {
        m_pages->closeCurrent();
    } else if (control && key == GDK_KEY_r) {
        m_pages->reload();
    } else if (modifiers == GDK_MOD1_MASK && key == GDK_KEY_Left) {
        m_pages->goBack();
    } else if (modifiers == GDK_MOD1_MASK && key == GDK_KEY_Right) {
        m_pages->goForward();
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
