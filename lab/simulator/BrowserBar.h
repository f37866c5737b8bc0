// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceCatalogue.h"

#include <QString>

#include <functional>
#include <memory>

typedef struct _GtkWidget GtkWidget;
typedef struct _GtkCssProvider GtkCssProvider;

namespace corvanta::lab {

class BrowserPages;

/// The bars of the device's browser: address, back and forward, and the switch between pages. Of the main thread.
class BrowserBar {
public:
    BrowserBar(const DeviceType& type, BrowserPages& pages);
    BrowserBar(const BrowserBar&) = delete;
    BrowserBar& operator=(const BrowserBar&) = delete;
    ~BrowserBar();

    /// Owned by its parent widget.
    [[nodiscard]] GtkWidget* widget() const { return m_box; }

    /// Shows what the pages are now.
    void update();

    /// Draws everything for that many window pixels per CSS pixel of the device.
    void setScale(double scale);

private:
    GtkWidget* addButton(GtkWidget* box, const char* icon, const char* name, void (BrowserPages::*action)());
    GtkWidget* addStep(GtkWidget* box, const char* icon, const char* name, int distance);

    BrowserPages& m_pages;
    bool m_isTablet = false;
    GtkCssProvider* m_style = nullptr;
    GtkWidget* m_box = nullptr;
    GtkWidget* m_address = nullptr;
    GtkWidget* m_reload = nullptr;
    GtkWidget* m_back = nullptr;
    GtkWidget* m_forward = nullptr;
    GtkWidget* m_previous = nullptr;
    GtkWidget* m_count = nullptr;
    GtkWidget* m_next = nullptr;
    GtkWidget* m_close = nullptr;
    int m_iconSize = 0;
};

} // namespace corvanta::lab
