// SPDX-License-Identifier: MIT
#include "WindowObserver.h"

#include <QByteArray>

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <span>

namespace corvanta::testing {

namespace {

template<typename Reply>
using Owned = std::unique_ptr<Reply, decltype([](Reply* reply) { std::free(reply); })>;

} // namespace

struct WindowObserver::Connection {
    xcb_connection_t* connection = xcb_connect(nullptr, nullptr);
    xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection)).data;

    ~Connection() { xcb_disconnect(connection); }

    [[nodiscard]] xcb_atom_t atom(const char* name) const {
        const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
        const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection, cookie, nullptr));
        return reply ? reply->atom : XCB_ATOM_NONE;
    }

    [[nodiscard]] QByteArray property(xcb_window_t window, const char* name) const {
        constexpr std::uint32_t longestValue = 4096;
        const auto cookie = xcb_get_property(connection, 0, window, atom(name), XCB_ATOM_ANY, 0, longestValue);
        const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection, cookie, nullptr));
        if (!reply)
            return {};
        return {static_cast<const char*>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }

    [[nodiscard]] std::vector<std::uint32_t> numbers(xcb_window_t window, const char* name) const {
        const QByteArray bytes = property(window, name);
        std::vector<std::uint32_t> values(static_cast<std::size_t>(bytes.size()) / sizeof(std::uint32_t));
        if (!values.empty())
            std::memcpy(values.data(), bytes.constData(), values.size() * sizeof(std::uint32_t));
        return values;
    }

    [[nodiscard]] QMargins margins(xcb_window_t window, const char* name) const {
        const auto sides = numbers(window, name); // left, right, top, bottom
        if (sides.size() < 4)
            return {};
        return {static_cast<int>(sides[0]), static_cast<int>(sides[2]), static_cast<int>(sides[1]),
                static_cast<int>(sides[3])};
    }

    [[nodiscard]] QRect frame(xcb_window_t window) const {
        const Owned<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
        const Owned<xcb_translate_coordinates_reply_t> origin(xcb_translate_coordinates_reply(
            connection, xcb_translate_coordinates(connection, window, screen->root, 0, 0), nullptr));
        if (!geometry || !origin)
            return {};
        const QRect client(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
        return client.marginsAdded(margins(window, "_NET_FRAME_EXTENTS"))
            .marginsRemoved(margins(window, "_GTK_FRAME_EXTENTS"));
    }
};

WindowObserver::WindowObserver()
    : m_connection(std::make_unique<Connection>()) {}

WindowObserver::~WindowObserver() = default;

std::vector<ObservedWindow> WindowObserver::windows() const {
    std::vector<ObservedWindow> result;
    for (const std::uint32_t id : m_connection->numbers(m_connection->screen->root, "_NET_CLIENT_LIST")) {
        const auto processIDs = m_connection->numbers(id, "_NET_WM_PID");
        result.push_back({.id = id,
                          .processID = processIDs.empty() ? 0 : static_cast<int>(processIDs.front()),
                          .title = QString::fromUtf8(m_connection->property(id, "_NET_WM_NAME")),
                          .frame = m_connection->frame(id)});
    }
    return result;
}

std::optional<ObservedWindow> WindowObserver::window(const QString& titleBeginning) const {
    for (const ObservedWindow& window : windows()) {
        if (window.title.startsWith(titleBeginning))
            return window;
    }
    return std::nullopt;
}

QRect WindowObserver::workArea() const {
    const auto area = m_connection->numbers(m_connection->screen->root, "_NET_WORKAREA");
    if (area.size() < 4)
        return {};
    return {static_cast<int>(area[0]), static_cast<int>(area[1]), static_cast<int>(area[2]), static_cast<int>(area[3])};
}

void WindowObserver::place(std::uint32_t window, const QRect& frame) const {
    const QRect client = frame.marginsRemoved(m_connection->margins(window, "_NET_FRAME_EXTENTS"));
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = m_connection->atom("_NET_MOVERESIZE_WINDOW");
    // Static gravity, all four values given, asked by a pager on a person's behalf.
    constexpr std::uint32_t flags = 10U | (0xfU << 8U) | (2U << 12U);
    event.data.data32[0] = flags;
    event.data.data32[1] = static_cast<std::uint32_t>(client.x());
    event.data.data32[2] = static_cast<std::uint32_t>(client.y());
    event.data.data32[3] = static_cast<std::uint32_t>(client.width());
    event.data.data32[4] = static_cast<std::uint32_t>(client.height());
    xcb_send_event(m_connection->connection, 0, m_connection->screen->root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
    xcb_flush(m_connection->connection);
}

void WindowObserver::watchPopups() {
    const std::array<std::uint32_t, 1> events{XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
    xcb_change_window_attributes(m_connection->connection, m_connection->screen->root, XCB_CW_EVENT_MASK,
                                 events.data());
    xcb_flush(m_connection->connection);
    m_popups = 0;
}

int WindowObserver::popupsSeen() {
    constexpr std::uint8_t eventTypeMask = 0x7f;
    while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection->connection)}) {
        if ((event->response_type & eventTypeMask) != XCB_MAP_NOTIFY)
            continue;
        const auto* const mapped = reinterpret_cast<const xcb_map_notify_event_t*>(event.get());
        // The window manager's own frames are unmanaged too, but say nothing about themselves.
        if (mapped->override_redirect != 0 && !m_connection->property(mapped->window, "WM_CLASS").isEmpty())
            ++m_popups;
    }
    return m_popups;
}

} // namespace corvanta::testing
