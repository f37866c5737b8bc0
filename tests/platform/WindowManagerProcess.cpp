// SPDX-License-Identifier: MIT
#include "WindowManagerProcess.h"

#include <QtGlobal>

#include <gtest/gtest.h>

#include <xcb/xcb.h>

#include <csignal>
#include <cstdlib>
#include <string_view>

namespace corvanta::testing {

namespace {

/// Openbox says on the root window which process it is; zero for another window manager, and outside the test's own
/// desktop.
pid_t windowManagerProcess() {
    if (!qEnvironmentVariableIsSet("CORVANTA_VIRTUAL_DESKTOP"))
        return 0;
    constexpr std::string_view name = "_OPENBOX_PID";
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    const auto atomCookie = xcb_intern_atom(connection, 1, name.size(), name.data());
    auto* const atom = xcb_intern_atom_reply(connection, atomCookie, nullptr);
    const auto cookie =
        xcb_get_property(connection, 0, root, atom == nullptr ? XCB_ATOM_NONE : atom->atom, XCB_ATOM_CARDINAL, 0, 1);
    auto* const reply = xcb_get_property_reply(connection, cookie, nullptr);
    pid_t process = 0;
    if (reply != nullptr && xcb_get_property_value_length(reply) == 4)
        process = static_cast<pid_t>(*static_cast<const std::uint32_t*>(xcb_get_property_value(reply)));
    std::free(reply);
    std::free(atom);
    xcb_disconnect(connection);
    return process;
}

} // namespace

StoppedWindowManager::StoppedWindowManager()
    : m_process(windowManagerProcess()) {
    EXPECT_GT(m_process, 0) << "the window manager is not to be found";
    if (m_process > 0)
        ::kill(m_process, SIGSTOP);
}

StoppedWindowManager::~StoppedWindowManager() {
    if (m_process > 0)
        ::kill(m_process, SIGCONT);
}

} // namespace corvanta::testing
