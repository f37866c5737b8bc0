// SPDX-License-Identifier: MIT
#include "ProgramEnvironment.h"

#include "GlibPointers.h"

#include <gtk/gtk.h>

namespace corvanta::lab {

void setUpProgramEnvironment() {
    // X11 is where other programs may place windows.
    g_setenv("GDK_BACKEND", "x11", TRUE);
    // A device's address in the environment would make Safari's own pages inspectable under the device's port.
    g_unsetenv("WEBKIT_INSPECTOR_SERVER");
    // Without a graphics processor the engine would draw through one that is emulated: slower, and its compiler crashes
    // now and then in a process of pages that ends. The inspector's view takes no setting of its own. "0" is another
    // choice for who has a good one.
    g_setenv("WEBKIT_DISABLE_COMPOSITING_MODE", "1", FALSE);
    g_set_prgname("com.apple.Safari");
    g_set_application_name("Safari");
}

void setUpIcon() {
    gtk_icon_theme_append_search_path(gtk_icon_theme_get_default(), besideProgram("share/icons").c_str());
    gtk_window_set_default_icon_name("dev.corvanta.Lab.Safari");
}

std::string besideProgram(const char* name) {
    const GlibPointer<char> self(g_file_read_link("/proc/self/exe", nullptr));
    const GlibPointer<char> folder(self ? g_path_get_dirname(self.get()) : g_strdup("."));
    const GlibPointer<char> path(g_build_filename(folder.get(), name, nullptr));
    return path.get();
}

} // namespace corvanta::lab
