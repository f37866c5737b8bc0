// SPDX-License-Identifier: MIT
#include "SafariApplication.h"

#include "AddressText.h"
#include "MenuBuilder.h"
#include "ProgramEnvironment.h"

#include <cstdio>

namespace corvanta::lab {

SafariApplication::SafariApplication()
    : m_application(gtk_application_new("com.apple.Safari", G_APPLICATION_HANDLES_COMMAND_LINE)) {
    GApplication* const application = G_APPLICATION(m_application.get());
    const GOptionEntry entries[] = {
        {"background", 0, 0, G_OPTION_ARG_NONE, nullptr, "Start iconified, without taking the focus", nullptr},
        {"version", 0, 0, G_OPTION_ARG_NONE, nullptr, "Print the version and leave", nullptr},
        {G_OPTION_REMAINING, 0, 0, G_OPTION_ARG_STRING_ARRAY, nullptr, nullptr, "[URL…]"},
        {},
    };
    g_application_add_main_option_entries(application, entries);
    g_application_set_option_context_summary(application,
                                             "A small browser that opens the Web Inspector on the pages of "
                                             "booted devices.");
    g_signal_connect(application, "handle-local-options", G_CALLBACK(+[](GApplication*, GVariantDict* options) -> gint {
                         if (!g_variant_dict_contains(options, "version"))
                             return -1;
                         std::printf("Safari %s\n", CORVANTA_VERSION);
                         return 0;
                     }),
                     nullptr);
    g_signal_connect_swapped(application, "startup", G_CALLBACK(+[](SafariApplication* self) { self->startUp(); }),
                             this);
    g_signal_connect_swapped(application, "shutdown", G_CALLBACK(+[](SafariApplication* self) { self->shutDown(); }),
                             this);
    g_signal_connect(
        application, "command-line",
        G_CALLBACK(+[](GApplication*, GApplicationCommandLine* commandLine, SafariApplication* self) -> gint {
            self->handleCommandLine(commandLine);
            return 0;
        }),
        this);
}

SafariApplication::~SafariApplication() = default;

int SafariApplication::run(int argc, char** argv) {
    return g_application_run(G_APPLICATION(m_application.get()), argc, argv);
}

void SafariApplication::startUp() {
    setUpIcon();
    m_colorScheme.emplace(g_application_get_dbus_connection(G_APPLICATION(m_application.get())));
    m_settings.emplace([this] { applySettings(); });
    m_settingsWindow.emplace(*m_settings);
    if (GDBusConnection* const bus = g_application_get_dbus_connection(G_APPLICATION(m_application.get()))) {
        m_developer.emplace(bus, *m_settings);
        m_developer->menu().append(makeSeparatorItem());
        m_developer->menu().append(makeActionItem("Empty Caches", [this] {
            if (m_browser)
                m_browser->emptyCaches();
        }));
        m_developer->menu().append(makeActionItem(
            "Developer Settings…", [this] { m_settingsWindow->present(m_browser ? m_browser->window() : nullptr); }));
    } else {
        g_warning("There is no session bus: devices are not listed.");
    }
}

void SafariApplication::shutDown() {
    m_settingsWindow.reset();
    if (m_browser)
        m_browser->setDevelopItem(nullptr);
    m_developer.reset();
    m_browser.reset();
    m_settings.reset();
    m_colorScheme.reset();
}

void SafariApplication::handleCommandLine(GApplicationCommandLine* commandLine) {
    GVariantDict* const options = g_application_command_line_get_options_dict(commandLine);
    const bool staysInBackground = g_variant_dict_contains(options, "background") != FALSE;
    const bool isFirst = !m_browser;
    if (isFirst) {
        m_browser.emplace(m_application.get(),
                          BrowserWindow::Handlers{
                              .showSettings = [this] { m_settingsWindow->present(m_browser->window()); },
                              .showAbout = [this] { showAbout(); },
                              .quit = [this] { g_application_quit(G_APPLICATION(m_application.get())); },
                          });
        applySettings();
    }
    const char** addresses = nullptr;
    bool hasOpened = false;
    if (g_variant_dict_lookup(options, G_OPTION_REMAINING, "^a&s", &addresses)) {
        for (const char* const* text = addresses; *text; ++text) {
            if (const std::string address = addressFromText(*text); !address.empty()) {
                m_browser->openTab(address);
                hasOpened = true;
            }
        }
        g_free(addresses);
    }
    if (isFirst && !hasOpened)
        m_browser->openTab({});
    m_browser->setDeveloperHint(!m_settings->values().developerFeatures);
    if (isFirst)
        m_browser->show(staysInBackground ? Appearance::inBackground : Appearance::inFront);
    else if (!staysInBackground)
        m_browser->present();
}

void SafariApplication::applySettings() {
    if (m_browser)
        m_browser->setDeveloperHint(!m_settings->values().developerFeatures);
    if (m_browser && m_developer)
        m_browser->setDevelopItem(m_settings->values().developerFeatures ? m_developer->menu().item() : nullptr);
    if (m_developer)
        m_developer->applySettings();
    if (m_settingsWindow)
        m_settingsWindow->refresh();
}

void SafariApplication::showAbout() {
    gtk_show_about_dialog(m_browser->window(), "program-name", "Safari", "version", CORVANTA_VERSION, "comments",
                          "The device lab's browser. It opens the Web Inspector on the pages of booted devices.",
                          "logo-icon-name", "dev.corvanta.Lab.Safari", "license-type", GTK_LICENSE_MIT_X11, nullptr);
}

} // namespace corvanta::lab
