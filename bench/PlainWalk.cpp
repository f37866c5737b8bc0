// SPDX-License-Identifier: MIT
// Walks over the menu bar of the program with that name on the accessibility bus, asking for each attribute by itself,
// whenever it is told to "read"; prints how many objects there were and how many milliseconds it took.
//
// usage: PlainWalk NAME
#include "support/Measuring.h"

#include <atspi/atspi.h>
#include <cstdio>
#include <iostream>
#include <string>

namespace {

AtspiAccessible* menuBarBelow(AtspiAccessible* object) {
    if (atspi_accessible_get_role(object, nullptr) == ATSPI_ROLE_MENU_BAR)
        return object;
    const int count = atspi_accessible_get_child_count(object, nullptr);
    for (int index = 0; index < count; ++index) {
        AtspiAccessible* const child = atspi_accessible_get_child_at_index(object, index, nullptr);
        if (AtspiAccessible* const found = child == nullptr ? nullptr : menuBarBelow(child))
            return found;
    }
    return nullptr;
}

AtspiAccessible* menuBarOf(const std::string& wanted) {
    AtspiAccessible* const desktop = atspi_get_desktop(0);
    const int count = atspi_accessible_get_child_count(desktop, nullptr);
    for (int index = 0; index < count; ++index) {
        AtspiAccessible* const application = atspi_accessible_get_child_at_index(desktop, index, nullptr);
        char* const name = application == nullptr ? nullptr : atspi_accessible_get_name(application, nullptr);
        const bool isWanted = name != nullptr && wanted == name;
        g_free(name);
        if (isWanted) {
            // Each attribute is asked for, as by whoever reads a menu for the first time.
            atspi_accessible_set_cache_mask(application, ATSPI_CACHE_NONE);
            return menuBarBelow(application);
        }
    }
    return nullptr;
}

int walk(AtspiAccessible* object) {
    g_free(atspi_accessible_get_name(object, nullptr));
    g_free(atspi_accessible_get_description(object, nullptr));
    if (AtspiStateSet* const states = atspi_accessible_get_state_set(object)) {
        (void)atspi_state_set_contains(states, ATSPI_STATE_SENSITIVE);
        g_object_unref(states);
    }
    const int children = atspi_accessible_get_child_count(object, nullptr);
    int count = 1;
    for (int index = 0; index < children; ++index) {
        if (AtspiAccessible* const child = atspi_accessible_get_child_at_index(object, index, nullptr)) {
            count += walk(child);
            g_object_unref(child);
        }
    }
    return count;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 64;
    atspi_init();
    AtspiAccessible* const menuBar = menuBarOf(argv[1]);
    std::puts(menuBar != nullptr ? "ready" : "missing");
    std::fflush(stdout);
    for (std::string line; menuBar != nullptr && std::getline(std::cin, line);) {
        const auto start = std::chrono::steady_clock::now();
        const int count = walk(menuBar);
        std::printf("%d %.3f\n", count, corvanta::bench::millisecondsSince(start));
        std::fflush(stdout);
    }
    return 0;
}
