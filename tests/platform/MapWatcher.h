// SPDX-License-Identifier: MIT
#pragma once

#include <memory>

namespace corvanta::testing {

/// Counts the menus, tooltips and other windows past the window manager that appear on the screen while it lives.
class MapWatcher {
public:
    MapWatcher();
    MapWatcher(const MapWatcher&) = delete;
    MapWatcher& operator=(const MapWatcher&) = delete;
    ~MapWatcher();

    [[nodiscard]] int popUpsSeen();

private:
    struct Connection;
    std::unique_ptr<Connection> m_connection;
    int m_popUpsSeen = 0;
};

} // namespace corvanta::testing
