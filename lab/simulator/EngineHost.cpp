// SPDX-License-Identifier: MIT
#include "EngineHost.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <cstring>
#include <dlfcn.h>
#include <link.h>

namespace {

struct Presented {
    int scale = 0;
    int width = 0;
    int height = 0;
    ElfW(Addr) engineStart = 0;
    ElfW(Addr) engineEnd = 0;
};

Presented presented;

int findEngine(dl_phdr_info* library, std::size_t, void*) {
    if (library->dlpi_name == nullptr || std::strstr(library->dlpi_name, "libwebkit2gtk") == nullptr) {
        return 0;
    }
    presented.engineStart = library->dlpi_addr;
    for (int index = 0; index < library->dlpi_phnum; ++index) {
        const ElfW(Phdr)& part = library->dlpi_phdr[index];
        presented.engineEnd = std::max(presented.engineEnd, library->dlpi_addr + part.p_vaddr + part.p_memsz);
    }
    return 1;
}

bool isEngine(const void* caller) {
    const auto address = reinterpret_cast<ElfW(Addr)>(caller);
    return presented.scale > 0 && address >= presented.engineStart && address < presented.engineEnd;
}

/// The toolkit's own function of that name.
template<typename Function>
Function* toolkit(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

} // namespace

namespace corvanta::lab {

void presentAs(const DeviceType& type) {
    presented.width = type.screen.width();
    presented.height = type.screen.height();
    presented.scale = static_cast<int>(type.scale);
    dl_iterate_phdr(findEngine, nullptr);
}

} // namespace corvanta::lab

// The dynamic linker finds these before the toolkit's.
extern "C" {

G_MODULE_EXPORT gint gtk_widget_get_scale_factor(GtkWidget* widget) {
    static auto* const original = toolkit<gint(GtkWidget*)>("gtk_widget_get_scale_factor");
    return isEngine(__builtin_return_address(0)) ? presented.scale : original(widget);
}

G_MODULE_EXPORT GdkSeatCapabilities gdk_seat_get_capabilities(GdkSeat* seat) {
    static auto* const original = toolkit<GdkSeatCapabilities(GdkSeat*)>("gdk_seat_get_capabilities");
    return isEngine(__builtin_return_address(0))
               ? static_cast<GdkSeatCapabilities>(GDK_SEAT_CAPABILITY_TOUCH | GDK_SEAT_CAPABILITY_KEYBOARD)
               : original(seat);
}

G_MODULE_EXPORT void gdk_monitor_get_geometry(GdkMonitor* monitor, GdkRectangle* geometry) {
    static auto* const original = toolkit<void(GdkMonitor*, GdkRectangle*)>("gdk_monitor_get_geometry");
    if (isEngine(__builtin_return_address(0))) {
        // Its screen is upright to a page however the device is held.
        *geometry = {0, 0, presented.width, presented.height};
    } else {
        original(monitor, geometry);
    }
}

G_MODULE_EXPORT void gdk_monitor_get_workarea(GdkMonitor* monitor, GdkRectangle* area) {
    static auto* const original = toolkit<void(GdkMonitor*, GdkRectangle*)>("gdk_monitor_get_workarea");
    if (isEngine(__builtin_return_address(0))) {
        *area = {0, 0, presented.width, presented.height};
    } else {
        original(monitor, area);
    }
}
}
