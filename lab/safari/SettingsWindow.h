// SPDX-License-Identifier: MIT
#pragma once

#include "SafariSettings.h"

#include <gtk/gtk.h>

#include <vector>

namespace corvanta::lab {

/// The window of Safari > Settings…, with its panes "Advanced" and "Samples". Shown once at a time. Main thread only.
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
    struct Switch {
        SettingsWindow* window;
        bool SafariSettingsValues::* value;
        GtkWidget* widget = nullptr;
    };

    void build(GtkWindow* over);
    GtkWidget* addPane(GtkWidget* panes, const char* title);
    void addSwitch(GtkWidget* pane, Switch& added, const char* title, const char* explanation);
    void store(const Switch& changed);

    SafariSettings& m_settings;
    GtkWidget* m_window = nullptr;
    GtkWidget* m_problem = nullptr;
    Switch m_developerFeatures{this, &SafariSettingsValues::developerFeatures};
    Switch m_sampleContext{this, &SafariSettingsValues::sampleContext};
    Switch m_sampleExtension{this, &SafariSettingsValues::sampleExtension};
};

} // namespace corvanta::lab
