// SPDX-License-Identifier: MIT
#pragma once

#include "X11Windows.h"

#include <xcb/xcb.h>
#include <xcb/xcb_ewmh.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

// For the sources of X11Windows only, since it brings the server's own names with it.

namespace corvanta {

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

/// The outer frame of a client window.
inline PixelRect outside(const PixelRect& client, const PixelBorder& around) {
    return {client.x - around.left, client.y - around.top, client.width + around.horizontal,
            client.height + around.vertical};
}

/// The connection to the server, with what is asked there in common. Usable only where it `works`.
struct X11Connection {
    using Window = X11Windows::Window;

    X11Connection() {
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

    X11Connection(const X11Connection&) = delete;
    X11Connection& operator=(const X11Connection&) = delete;

    ~X11Connection() {
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

    [[nodiscard]] static Extents toExtents(const std::vector<std::uint32_t>& values) {
        if (values.size() < 4)
            return {};
        return {static_cast<int>(values[0]), static_cast<int>(values[1]), static_cast<int>(values[2]),
                static_cast<int>(values[3])};
    }

    [[nodiscard]] PixelBorder border(Window window) const {
        const Extents decoration = toExtents(numbers(window, ewmh._NET_FRAME_EXTENTS, XCB_ATOM_CARDINAL));
        const Extents shadow = toExtents(numbers(window, gtkFrameExtents, XCB_ATOM_CARDINAL));
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

    [[nodiscard]] bool isIconified(Window window) const {
        constexpr std::uint32_t iconicState = 3;
        const std::vector<std::uint32_t> state = numbers(window, windowManagerState, windowManagerState);
        return !state.empty() && state.front() == iconicState;
    }

    xcb_connection_t* connection = nullptr;
    xcb_ewmh_connection_t ewmh{};
    bool isUsable = false;
    int screenNumber = 0;
    xcb_window_t root = XCB_WINDOW_NONE;
    xcb_atom_t gtkFrameExtents = XCB_ATOM_NONE;
    xcb_atom_t windowManagerState = XCB_ATOM_NONE;
};

} // namespace corvanta
