// SPDX-License-Identifier: MIT
#pragma once

#include "SafariSettings.h"

#include <gtk/gtk.h>

namespace corvanta::lab {

/// The window of Safari > Settings…, with its pane "Advanced". Shown once at a time. Main thread only.
class SettingsWindow {
public:
    explicit SettingsWindow(SafariSettings& settings);
    SettingsWindow(const SettingsWindow&) = delete;
    SettingsWindow& operator=(const SettingsWindow&) = delete;
    ~SettingsWindow();

    /// Brings the window forward, with the focus on the switch of the developer features.
    void present(GtkWindow* over);
    /// Shows the settings as they are now.
    void refresh();

private:
    void build(GtkWindow* over);
    void store(bool enabled);

    SafariSettings& m_settings;
    GtkWidget* m_window = nullptr;
    GtkWidget* m_switch = nullptr;
    GtkWidget* m_problem = nullptr;
};

} // namespace corvanta::lab
