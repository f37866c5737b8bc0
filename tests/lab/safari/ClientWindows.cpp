// SPDX-License-Identifier: MIT
#include "ClientWindows.h"

#include <xcb/xcb_ewmh.h>

#include <algorithm>
#include <stdexcept>

namespace corvanta::lab::testing {

struct ClientWindows::Connection {
    xcb_connection_t* xcb = nullptr;
    xcb_ewmh_connection_t ewmh{};
    int screen = 0;
};

ClientWindows::ClientWindows()
    : m_connection(std::make_unique<Connection>()) {
    m_connection->xcb = xcb_connect(nullptr, &m_connection->screen);
    if (xcb_connection_has_error(m_connection->xcb) != 0)
        throw std::runtime_error("no X server");
    xcb_ewmh_init_atoms_replies(&m_connection->ewmh, xcb_ewmh_init_atoms(m_connection->xcb, &m_connection->ewmh),
                                nullptr);
}

ClientWindows::~ClientWindows() {
    xcb_ewmh_connection_wipe(&m_connection->ewmh);
    xcb_disconnect(m_connection->xcb);
}

std::vector<ClientWindows::Window> ClientWindows::titled(const std::string& start) const {
    auto* const ewmh = &m_connection->ewmh;
    std::vector<Window> windows;
    xcb_ewmh_get_windows_reply_t list;
    if (xcb_ewmh_get_client_list_reply(ewmh, xcb_ewmh_get_client_list(ewmh, m_connection->screen), &list, nullptr) == 0)
        return windows;
    for (std::uint32_t index = 0; index < list.windows_len; ++index) {
        const Window window = list.windows[index];
        xcb_ewmh_get_utf8_strings_reply_t title;
        if (xcb_ewmh_get_wm_name_reply(ewmh, xcb_ewmh_get_wm_name(ewmh, window), &title, nullptr) == 0)
            continue;
        if (std::string(title.strings, title.strings_len).starts_with(start))
            windows.push_back(window);
        xcb_ewmh_get_utf8_strings_reply_wipe(&title);
    }
    xcb_ewmh_get_windows_reply_wipe(&list);
    return windows;
}

bool ClientWindows::isIconified(Window window) const {
    auto* const ewmh = &m_connection->ewmh;
    xcb_ewmh_get_atoms_reply_t states;
    if (xcb_ewmh_get_wm_state_reply(ewmh, xcb_ewmh_get_wm_state(ewmh, window), &states, nullptr) == 0)
        return false;
    const bool isHidden = std::find(states.atoms, states.atoms + states.atoms_len, ewmh->_NET_WM_STATE_HIDDEN) !=
                          states.atoms + states.atoms_len;
    xcb_ewmh_get_atoms_reply_wipe(&states);
    return isHidden;
}

std::optional<ClientWindows::Window> ClientWindows::active() const {
    auto* const ewmh = &m_connection->ewmh;
    xcb_window_t window = XCB_WINDOW_NONE;
    if (xcb_ewmh_get_active_window_reply(ewmh, xcb_ewmh_get_active_window(ewmh, m_connection->screen), &window,
                                         nullptr) == 0)
        return std::nullopt;
    return window == XCB_WINDOW_NONE ? std::nullopt : std::optional(window);
}

ClientWindows::Size ClientWindows::size(Window window) const {
    xcb_get_geometry_reply_t* const geometry =
        xcb_get_geometry_reply(m_connection->xcb, xcb_get_geometry(m_connection->xcb, window), nullptr);
    if (!geometry)
        return {};
    const Size result{geometry->width, geometry->height};
    free(geometry); // NOLINT(*-no-malloc): xcb's replies are malloc's
    return result;
}

std::optional<int> ClientWindows::process(Window window) const {
    auto* const ewmh = &m_connection->ewmh;
    std::uint32_t process = 0;
    if (xcb_ewmh_get_wm_pid_reply(ewmh, xcb_ewmh_get_wm_pid(ewmh, window), &process, nullptr) == 0)
        return std::nullopt;
    return static_cast<int>(process);
}

void ClientWindows::close(Window window) const {
    xcb_ewmh_request_close_window(&m_connection->ewmh, m_connection->screen, window, XCB_CURRENT_TIME,
                                  XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
    xcb_flush(m_connection->xcb);
}

void ClientWindows::resize(Window window, Size size) const {
    xcb_ewmh_request_moveresize_window(
        &m_connection->ewmh, m_connection->screen, window, XCB_GRAVITY_STATIC, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
        static_cast<xcb_ewmh_moveresize_window_opt_flags_t>(XCB_EWMH_MOVERESIZE_WINDOW_WIDTH |
                                                            XCB_EWMH_MOVERESIZE_WINDOW_HEIGHT),
        0, 0, static_cast<std::uint32_t>(size.width), static_cast<std::uint32_t>(size.height));
    xcb_flush(m_connection->xcb);
}

bool ClientWindows::inputIsFree() const {
    xcb_connection_t* const xcb = m_connection->xcb;
    const xcb_window_t root = m_connection->ewmh.screens[m_connection->screen]->root;
    auto* const pointer =
        xcb_grab_pointer_reply(xcb,
                               xcb_grab_pointer(xcb, 0, root, 0, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC, XCB_NONE,
                                                XCB_NONE, XCB_CURRENT_TIME),
                               nullptr);
    auto* const keyboard = xcb_grab_keyboard_reply(
        xcb, xcb_grab_keyboard(xcb, 0, root, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC), nullptr);
    const bool isFree = pointer && pointer->status == XCB_GRAB_STATUS_SUCCESS && keyboard &&
                        keyboard->status == XCB_GRAB_STATUS_SUCCESS;
    xcb_ungrab_pointer(xcb, XCB_CURRENT_TIME);
    xcb_ungrab_keyboard(xcb, XCB_CURRENT_TIME);
    xcb_flush(xcb);
    free(pointer);  // NOLINT(*-no-malloc): xcb's replies are malloc's
    free(keyboard); // NOLINT(*-no-malloc)
    return isFree;
}

} // namespace corvanta::lab::testing
