// SPDX-License-Identifier: MIT
#pragma once

#include "BrowserWindow.h"
#include "ColorScheme.h"
#include "Developer.h"
#include "GlibPointers.h"
#include "SafariSettings.h"
#include "SettingsWindow.h"

#include <gtk/gtk.h>

#include <optional>

namespace corvanta::lab {

/// Safari's process: one instance on the session bus, one browser window, the Develop menu and the settings.
/// Main thread only.
class SafariApplication {
public:
    SafariApplication();
    SafariApplication(const SafariApplication&) = delete;
    SafariApplication& operator=(const SafariApplication&) = delete;
    ~SafariApplication();

    /// Runs until the browser window is closed or Safari is quit, or, when an instance runs already, until that one has
    /// been told what this one was started for. The process's exit status.
    int run(int argc, char** argv);

private:
    void startUp();
    void shutDown();
    void handleCommandLine(GApplicationCommandLine* commandLine);
    void applySettings();
    void showAbout();

    GlibPointer<GtkApplication> m_application;
    std::optional<ColorScheme> m_colorScheme;
    std::optional<SafariSettings> m_settings;
    std::optional<Developer> m_developer;
    std::optional<BrowserWindow> m_browser;
    std::optional<SettingsWindow> m_settingsWindow;
};

} // namespace corvanta::lab
