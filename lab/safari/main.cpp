// SPDX-License-Identifier: MIT
#include "SafariApplication.h"

#include <csignal>

int main(int argc, char** argv) {
    // X11 is where other programs may place windows.
    g_setenv("GDK_BACKEND", "x11", TRUE);
    // A device's address in the environment would make Safari's own pages inspectable under the device's port.
    g_unsetenv("WEBKIT_INSPECTOR_SERVER");
    // An inspector that has just left must not take Safari with it.
    std::signal(SIGPIPE, SIG_IGN);
    g_set_prgname("com.apple.Safari");
    g_set_application_name("Safari");
    corvanta::lab::SafariApplication application;
    return application.run(argc, argv);
}
