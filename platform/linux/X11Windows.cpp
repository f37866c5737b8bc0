// SPDX-License-Identifier: MIT
#include "X11Windows.h"

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <thread>

namespace corvanta {

namespace {

using namespace std::chrono_literals;

template<typename Reply>
struct FreeDeleter {
    void operator()(Reply* reply) const { std::free(reply); }
};

template<typename Reply>
using ReplyPointer = std::unique_ptr<Reply, FreeDeleter<Reply>>;

template<typename Reply>
ReplyPointer<Reply> owned(Reply* reply) {
    return ReplyPointer<Reply>(reply);
}

struct Extents {
    int left = 0;
    int right = 0;
    int top = 0;
    int bottom = 0;
};

/// What lies between the client window and the outer frame: decorations added, shadows taken away.
struct Border {
    int left = 0;
    int top = 0;
    int horizontal = 0;
    int vertical = 0;
};

constexpr int placementTolerance = 2;
constexpr auto placementBound = 250ms;
constexpr auto placementRetry = 60ms;

bool isNear(int left, int right) {
    return std::abs(left - right) <= placementTolerance;
}

bool isAt(const PixelRect& frame, const PixelPlacement& placement) {
    if (placement.position && (!isNear(frame.x, placement.position->x) || !isNear(frame.y, placement.position->y)))
        return false;
    return !placement.extent ||
           (isNear(frame.width, placement.extent->width) && isNear(frame.height, placement.extent->height));
}

} // namespace

struct X11Windows::Connection {
    Connection() {
        int screen = 0;
        connection = xcb_connect(nullptr, &screen);
        if (xcb_connection_has_error(connection))
            return;
        isUsable = xcb_ewmh_init_atoms_replies(&ewmh, xcb_ewmh_init_atoms(connection, &ewmh), nullptr) != 0 &&
                   screen < ewmh.nb_screens;
        if (!isUsable)
            return;
        screenNumber = screen;
        root = ewmh.screens[screen]->root;
        gtkFrameExtents = atom("_GTK_FRAME_EXTENTS");
        windowManagerState = atom("WM_STATE");
    }

    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    ~Connection() {
        if (isUsable)
            xcb_ewmh_connection_wipe(&ewmh);
        xcb_disconnect(connection);
    }

    [[nodiscard]] bool works() const { return isUsable && !xcb_connection_has_error(connection); }

    [[nodiscard]] xcb_atom_t atom(const char* name) const {
        const auto cookie = xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(std::strlen(name)), name);
        const auto reply = owned(xcb_intern_atom_reply(connection, cookie, nullptr));
        return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
    }

    [[nodiscard]] std::vector<std::uint32_t> numbers(Window window, xcb_atom_t property, xcb_atom_t type) const {
        const auto cookie = xcb_get_property(connection, 0, window, property, type, 0, 1U << 16U);
        const auto reply = owned(xcb_get_property_reply(connection, cookie, nullptr));
        if (!reply || reply->format != 32)
            return {};
        const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
        return {first, first + xcb_get_property_value_length(reply.get()) / 4};
    }

    [[nodiscard]] QByteArray bytes(Window window, xcb_atom_t property) const {
        const auto cookie = xcb_get_property(connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, 1U << 16U);
        const auto reply = owned(xcb_get_property_reply(connection, cookie, nullptr));
        if (!reply || reply->format != 8)
            return {};
        return {static_cast<const char*>(xcb_get_property_value(reply.get())),
                xcb_get_property_value_length(reply.get())};
    }

    [[nodiscard]] Extents extents(Window window, xcb_atom_t property) const {
        const std::vector<std::uint32_t> values = numbers(window, property, XCB_ATOM_CARDINAL);
        if (values.size() < 4)
            return {};
        return {static_cast<int>(values[0]), static_cast<int>(values[1]), static_cast<int>(values[2]),
                static_cast<int>(values[3])};
    }

    [[nodiscard]] Border border(Window window) const {
        const Extents decoration = extents(window, ewmh._NET_FRAME_EXTENTS);
        const Extents shadow = extents(window, gtkFrameExtents);
        return {decoration.left - shadow.left, decoration.top - shadow.top,
                decoration.left + decoration.right - shadow.left - shadow.right,
                decoration.top + decoration.bottom - shadow.top - shadow.bottom};
    }

    [[nodiscard]] std::optional<PixelRect> clientRect(Window window) const {
        const auto geometryCookie = xcb_get_geometry(connection, window);
        const auto originCookie = xcb_translate_coordinates(connection, window, root, 0, 0);
        const auto geometry = owned(xcb_get_geometry_reply(connection, geometryCookie, nullptr));
        const auto origin = owned(xcb_translate_coordinates_reply(connection, originCookie, nullptr));
        if (!geometry || !origin)
            return std::nullopt;
        return PixelRect{origin->dst_x, origin->dst_y, geometry->width, geometry->height};
    }

    /// Takes away what keeps a window from being placed; true when there was something to take away.
    bool makePlaceable(Window window) {
        const std::vector<std::uint32_t> states = numbers(window, ewmh._NET_WM_STATE, XCB_ATOM_ATOM);
        const auto has = [&](xcb_atom_t state) { return std::ranges::find(states, state) != states.end(); };
        bool changed = false;
        if (has(ewmh._NET_WM_STATE_MAXIMIZED_HORZ) || has(ewmh._NET_WM_STATE_MAXIMIZED_VERT)) {
            xcb_ewmh_request_change_wm_state(&ewmh, screenNumber, window, XCB_EWMH_WM_STATE_REMOVE,
                                             ewmh._NET_WM_STATE_MAXIMIZED_HORZ, ewmh._NET_WM_STATE_MAXIMIZED_VERT,
                                             XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
            changed = true;
        }
        if (has(ewmh._NET_WM_STATE_FULLSCREEN)) {
            xcb_ewmh_request_change_wm_state(&ewmh, screenNumber, window, XCB_EWMH_WM_STATE_REMOVE,
                                             ewmh._NET_WM_STATE_FULLSCREEN, XCB_ATOM_NONE,
                                             XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
            changed = true;
        }
        if (isIconified(window)) {
            xcb_map_window(connection, window);
            changed = true;
        }
        xcb_flush(connection);
        return changed;
    }

    [[nodiscard]] bool isIconified(Window window) const {
        constexpr std::uint32_t iconicState = 3;
        const std::vector<std::uint32_t> state = numbers(window, windowManagerState, windowManagerState);
        return !state.empty() && state.front() == iconicState;
    }

    void requestPlacement(Window window, const PixelPlacement& placement) {
        const Border around = border(window);
        std::uint32_t flags = 0;
        PixelRect client;
        if (placement.position) {
            flags |= XCB_EWMH_MOVERESIZE_WINDOW_X | XCB_EWMH_MOVERESIZE_WINDOW_Y;
            client.x = placement.position->x + around.left;
            client.y = placement.position->y + around.top;
        }
        if (placement.extent) {
            flags |= XCB_EWMH_MOVERESIZE_WINDOW_WIDTH | XCB_EWMH_MOVERESIZE_WINDOW_HEIGHT;
            client.width = std::max(1, placement.extent->width - around.horizontal);
            client.height = std::max(1, placement.extent->height - around.vertical);
        }
        // With static gravity the position is the client window's own, whatever the decorations are.
        xcb_ewmh_request_moveresize_window(
            &ewmh, screenNumber, window, XCB_GRAVITY_STATIC, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
            static_cast<xcb_ewmh_moveresize_window_opt_flags_t>(flags), static_cast<std::uint32_t>(client.x),
            static_cast<std::uint32_t>(client.y), static_cast<std::uint32_t>(client.width),
            static_cast<std::uint32_t>(client.height));
        xcb_flush(connection);
    }

    xcb_connection_t* connection = nullptr;
    xcb_ewmh_connection_t ewmh{};
    bool isUsable = false;
    int screenNumber = 0;
    xcb_window_t root = XCB_WINDOW_NONE;
    xcb_atom_t gtkFrameExtents = XCB_ATOM_NONE;
    xcb_atom_t windowManagerState = XCB_ATOM_NONE;
};

X11Windows::X11Windows()
    : m_connection(std::make_unique<Connection>()) {}

X11Windows::~X11Windows() = default;

std::vector<X11Windows::Window> X11Windows::windows() const {
    const Connection& x = *m_connection;
    if (!x.works())
        return {};
    std::vector<Window> stacked = x.numbers(x.root, x.ewmh._NET_CLIENT_LIST_STACKING, XCB_ATOM_WINDOW);
    return stacked.empty() ? x.numbers(x.root, x.ewmh._NET_CLIENT_LIST, XCB_ATOM_WINDOW) : stacked;
}

std::optional<std::uint32_t> X11Windows::processId(Window window) const {
    const Connection& x = *m_connection;
    if (!x.works())
        return std::nullopt;
    const std::vector<std::uint32_t> values = x.numbers(window, x.ewmh._NET_WM_PID, XCB_ATOM_CARDINAL);
    return values.empty() ? std::nullopt : std::optional(values.front());
}

QString X11Windows::title(Window window) const {
    const Connection& x = *m_connection;
    if (!x.works())
        return {};
    const QByteArray name = x.bytes(window, x.ewmh._NET_WM_NAME);
    return name.isEmpty() ? QString::fromLocal8Bit(x.bytes(window, XCB_ATOM_WM_NAME)) : QString::fromUtf8(name);
}

QString X11Windows::instanceName(Window window) const {
    const Connection& x = *m_connection;
    if (!x.works())
        return {};
    const QByteArray both = x.bytes(window, XCB_ATOM_WM_CLASS);
    return QString::fromLocal8Bit(both.left(both.indexOf('\0')));
}

bool X11Windows::isIconified(Window window) const {
    return m_connection->works() && m_connection->isIconified(window);
}

std::optional<X11Windows::Window> X11Windows::activeWindow() const {
    const Connection& x = *m_connection;
    if (!x.works())
        return std::nullopt;
    const std::vector<std::uint32_t> values = x.numbers(x.root, x.ewmh._NET_ACTIVE_WINDOW, XCB_ATOM_WINDOW);
    return values.empty() || values.front() == XCB_WINDOW_NONE ? std::nullopt : std::optional(values.front());
}

std::optional<PixelRect> X11Windows::outerFrame(Window window) const {
    const Connection& x = *m_connection;
    if (!x.works())
        return std::nullopt;
    const std::optional<PixelRect> client = x.clientRect(window);
    if (!client)
        return std::nullopt;
    const Border around = x.border(window);
    return PixelRect{client->x - around.left, client->y - around.top, client->width + around.horizontal,
                     client->height + around.vertical};
}

bool X11Windows::place(Window window, const PixelPlacement& placement) {
    Connection& x = *m_connection;
    if (!x.works() || !x.clientRect(window))
        return false;
    const auto end = std::chrono::steady_clock::now() + placementBound;
    x.makePlaceable(window);
    auto nextRequest = std::chrono::steady_clock::now();
    // Undoing a state changes decorations and shadows a moment later, so the request is repeated with what they are
    // then.
    bool wasRequested = false;
    for (;;) {
        const auto now = std::chrono::steady_clock::now();
        const std::optional<PixelRect> frame = outerFrame(window);
        if (!frame)
            return false;
        if (isAt(*frame, placement) && wasRequested)
            return true;
        if (now >= end)
            return false;
        if (now >= nextRequest) {
            x.requestPlacement(window, placement);
            wasRequested = true;
            nextRequest = now + placementRetry;
        }
        std::this_thread::sleep_for(1ms);
    }
}

void X11Windows::activate(Window window) {
    Connection& x = *m_connection;
    if (!x.works())
        return;
    xcb_ewmh_request_change_active_window(&x.ewmh, x.screenNumber, window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                                          XCB_CURRENT_TIME, activeWindow().value_or(XCB_WINDOW_NONE));
    xcb_flush(x.connection);
}

void X11Windows::close(Window window) {
    Connection& x = *m_connection;
    if (!x.works())
        return;
    xcb_ewmh_request_close_window(&x.ewmh, x.screenNumber, window, XCB_CURRENT_TIME, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
    xcb_flush(x.connection);
}

std::optional<PixelRect> X11Windows::workArea() const {
    const Connection& x = *m_connection;
    if (!x.works())
        return std::nullopt;
    const std::vector<std::uint32_t> desktop = x.numbers(x.root, x.ewmh._NET_CURRENT_DESKTOP, XCB_ATOM_CARDINAL);
    const std::vector<std::uint32_t> areas = x.numbers(x.root, x.ewmh._NET_WORKAREA, XCB_ATOM_CARDINAL);
    const std::size_t first = desktop.empty() ? 0 : std::size_t{desktop.front()} * 4;
    if (areas.size() < first + 4)
        return std::nullopt;
    return PixelRect{static_cast<int>(areas[first]), static_cast<int>(areas[first + 1]),
                     static_cast<int>(areas[first + 2]), static_cast<int>(areas[first + 3])};
}

} // namespace corvanta
