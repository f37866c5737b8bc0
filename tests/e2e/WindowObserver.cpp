// SPDX-License-Identifier: MIT
#include "WindowObserver.h"

#include <QByteArray>

#include <xcb/xcb.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <span>

namespace corvanta::testing {

namespace {

/// The one who asks acts on a person's behalf.
constexpr std::uint32_t fromPager = 2;

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

    /// Asks the window manager for something that concerns the window.
    void ask(xcb_window_t window, const char* what, const std::array<std::uint32_t, 5>& values) const {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = atom(what);
        std::ranges::copy(values, event.data.data32);
        xcb_send_event(connection, 0, screen->root,
                       XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                       reinterpret_cast<const char*>(&event));
        xcb_flush(connection);
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
    // Static gravity, all four values given, asked by a pager on a person's behalf.
    constexpr std::uint32_t flags = 10U | (0xfU << 8U) | (2U << 12U);
    m_connection->ask(window, "_NET_MOVERESIZE_WINDOW",
                      {flags, static_cast<std::uint32_t>(client.x()), static_cast<std::uint32_t>(client.y()),
                       static_cast<std::uint32_t>(client.width()), static_cast<std::uint32_t>(client.height())});
}

void WindowObserver::close(std::uint32_t window) const {
    m_connection->ask(window, "_NET_CLOSE_WINDOW", {XCB_CURRENT_TIME, fromPager});
}

std::uint32_t WindowObserver::activeWindow() const {
    const auto active = m_connection->numbers(m_connection->screen->root, "_NET_ACTIVE_WINDOW");
    return active.empty() ? 0 : active.front();
}

void WindowObserver::activate(std::uint32_t window) const {
    m_connection->ask(window, "_NET_ACTIVE_WINDOW", {fromPager, XCB_CURRENT_TIME});
}

bool WindowObserver::isPointerFree() const {
    xcb_connection_t* const connection = m_connection->connection;
    const auto cookie = xcb_grab_pointer(connection, 0, m_connection->screen->root, 0, XCB_GRAB_MODE_ASYNC,
                                         XCB_GRAB_MODE_ASYNC, XCB_WINDOW_NONE, XCB_CURSOR_NONE, XCB_CURRENT_TIME);
    xcb_ungrab_pointer(connection, XCB_CURRENT_TIME);
    const Owned<xcb_grab_pointer_reply_t> reply(xcb_grab_pointer_reply(connection, cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
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
