// SPDX-License-Identifier: MIT
#include "MapWatcher.h"

#include <xcb/xcb.h>

#include <cstdlib>

namespace corvanta::testing {

struct MapWatcher::Connection {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);

    Connection() = default;
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    ~Connection() { xcb_disconnect(connection); }

    /// Answers once everything that happened before has been reported.
    void synchronise() const {
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }
};

MapWatcher::MapWatcher()
    : m_connection(std::make_unique<Connection>()) {
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(m_connection->connection)).data->root;
    const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection->connection, root, XCB_CW_EVENT_MASK, &events);
    m_connection->synchronise();
}

MapWatcher::~MapWatcher() = default;

int MapWatcher::popUpsSeen() {
    m_connection->synchronise();
    while (xcb_generic_event_t* const event = xcb_poll_for_event(m_connection->connection)) {
        constexpr unsigned sentByClient = 0x80;
        if ((event->response_type & ~sentByClient) == XCB_MAP_NOTIFY &&
            reinterpret_cast<const xcb_map_notify_event_t*>(event)->override_redirect != 0)
            ++m_popUpsSeen;
        std::free(event);
    }
    return m_popUpsSeen;
}

} // namespace corvanta::testing
