// SPDX-License-Identifier: MIT
#pragma once

#include "ScreenFigures.h"

#include <QString>

#include <functional>

typedef struct _GtkWidget GtkWidget;
typedef struct _GtkCssProvider GtkCssProvider;

namespace corvanta::lab {

class BrowserPages;

/// The bars of the device's browser: address, back and forward, a new page and the switch between pages; on an upright
/// phone two rows, else one. Of the main thread.
class BrowserBar {
public:
    /// `showPages` is called when the overview of the pages is asked for.
    BrowserBar(const DeviceType& type, BrowserPages& pages, std::function<void()> showPages);
    BrowserBar(const BrowserBar&) = delete;
    BrowserBar& operator=(const BrowserBar&) = delete;
    ~BrowserBar();

    /// Owned by its parent widget.
    [[nodiscard]] GtkWidget* widget() const { return m_box; }

    /// Shows what the pages are now.
    void update();

    /// Draws everything for that many window pixels per CSS pixel of the device.
    void setScale(double scale);

    void setOrientation(Orientation orientation);

    /// Lets a person type an address, with the one of the page in front to begin with.
    void editAddress();

private:
    GtkWidget* addButton(const char* icon, const char* name, void (BrowserBar::*action)());
    void arrange();
    void newPage();
    void showPages();
    void goBack();
    void goForward();
    void reload();
    void endEditing();

    BrowserPages& m_pages;
    std::function<void()> m_showPages;
    bool m_isTablet = false;
    bool m_isOneRow = false;
    /// Kept free at both ends of a single row, in CSS pixels.
    int m_sideRoom = 0;
    double m_scale = 0;
    GtkCssProvider* m_style = nullptr;
    GtkWidget* m_box = nullptr;
    GtkWidget* m_pill = nullptr;
    GtkWidget* m_buttons = nullptr;
    GtkWidget* m_addressStack = nullptr;
    GtkWidget* m_addressButton = nullptr;
    GtkWidget* m_address = nullptr;
    GtkWidget* m_entry = nullptr;
    GtkWidget* m_reload = nullptr;
    GtkWidget* m_back = nullptr;
    GtkWidget* m_forward = nullptr;
    GtkWidget* m_new = nullptr;
    GtkWidget* m_switch = nullptr;
    GtkWidget* m_count = nullptr;
};

} // namespace corvanta::lab
