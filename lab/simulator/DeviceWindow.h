// SPDX-License-Identifier: MIT
#pragma once

#include "BrowserBar.h"
#include "BrowserPages.h"
#include "DeviceDrawing.h"
#include "DeviceLayout.h"
#include "DeviceMenu.h"
#include "DeviceService.h"
#include "DeviceSettings.h"
#include "Keyboard.h"
#include "LocationPermission.h"
#include "PageOverview.h"
#include "PageRequests.h"
#include "SheetLayer.h"

#include <QString>

#include <functional>
#include <memory>
#include <vector>

typedef struct _GdkEventKey GdkEventKey;

namespace corvanta::lab {

/// One device on the desktop: its body, its browser and its pages. Until it is shown, and after its window was closed,
/// the same things live off the screen, so pages go on as if they were seen. Of the main thread.
class DeviceWindow {
public:
    struct Events {
        /// Once pages can be opened.
        std::function<void()> ready;
        /// Whether the window is on the desktop, at every change.
        std::function<void(bool)> shown;
        /// A person changes the device's settings on the device; they come back through `apply`.
        std::function<void(const std::function<void(DeviceSettings&)>& change)> changeSettings;
    };

    DeviceWindow(const DeviceType& type, const Runtime& runtime, const QString& deviceName, Events events);
    DeviceWindow(const DeviceWindow&) = delete;
    DeviceWindow& operator=(const DeviceWindow&) = delete;
    ~DeviceWindow();

    [[nodiscard]] BrowserPages& pages() { return *m_pages; }

    /// Puts the window on the desktop if needed and brings it forward, unless the focus is to be left where it is;
    /// `then` is called once it is mapped.
    void show(WindowFocus focus, std::function<void()> then);

    /// Takes the window off the desktop; the device goes on.
    void hide();

    /// Gives the window its title anew.
    void setDeviceName(const QString& deviceName);

    /// Shows the device as its settings say, and its pages the appearance.
    void apply(const DeviceSettings& settings);

    /// How the device is held.
    [[nodiscard]] Orientation orientation() const { return m_look.orientation; }

    void setOrientation(Orientation orientation);

    /// A picture of the screen as the bytes of a file; empty for a format that cannot be written. The mask is
    /// "ignored", "alpha" or "black"; `scale` is the picture's pixels per CSS pixel, 0 for the model's.
    [[nodiscard]] QByteArray screenshot(const QString& format, const QString& mask, double scale);

private:
    void makeCommands();
    void makePages(const Runtime& runtime);
    void makeLayers();
    void makeWindow();
    void present();
    void moveContentTo(GtkWidget* parent);
    bool handleKey(const GdkEventKey& event);
    void followSize(QSize area);
    void layOut();
    void rescale();
    void raiseCorners();
    void scheduleClock();
    void showKeyboard(bool isShown);
    void tellKeyboard();
    void type(unsigned keyValue);
    [[nodiscard]] QRect placeOf(const GtkWidget* child) const;

    DeviceType m_type;
    QString m_runtimeName;
    Events m_events;
    DeviceCommands m_commands;
    GtkWidget* m_hidden = nullptr;
    GtkWidget* m_window = nullptr;
    GtkWidget* m_content = nullptr;
    GtkWidget* m_canvas = nullptr;
    GtkWidget* m_corners = nullptr;
    GtkWidget* m_menuButton = nullptr;
    std::unique_ptr<BrowserPages> m_pages;
    std::unique_ptr<BrowserBar> m_bar;
    std::unique_ptr<PageOverview> m_overview;
    std::unique_ptr<Keyboard> m_keyboard;
    std::unique_ptr<SheetLayer> m_sheets;
    std::unique_ptr<LocationPermission> m_locationPermission;
    std::unique_ptr<PageRequests> m_requests;
    DeviceLayout m_layout;
    DeviceLook m_look;
    bool m_isMotionReduced = false;
    QByteArray m_themeName;
    QSize m_area;
    std::vector<std::function<void()>> m_waiting;
    unsigned m_clock = 0;
    unsigned m_rescale = 0;
    unsigned m_raise = 0;
};

} // namespace corvanta::lab
