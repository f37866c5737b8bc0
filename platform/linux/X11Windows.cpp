// SPDX-License-Identifier: MIT
#include "X11Windows.h"

#include "X11Connection.h"

namespace corvanta {

X11Windows::X11Windows()
    : m_connection(std::make_unique<X11Connection>()) {
    QObject::connect(&m_nextLook, &QTimer::timeout, &m_nextLook, [this] { lookAtUnfinished(); });
}

X11Windows::~X11Windows() = default;

std::vector<X11Windows::Window> X11Windows::windows() const {
    const X11Connection& x = *m_connection;
    if (!x.works())
        return {};
    std::vector<Window> stacked = x.numbers(x.root, x.ewmh._NET_CLIENT_LIST_STACKING, XCB_ATOM_WINDOW);
    return stacked.empty() ? x.numbers(x.root, x.ewmh._NET_CLIENT_LIST, XCB_ATOM_WINDOW) : stacked;
}

std::optional<std::uint32_t> X11Windows::processId(Window window) const {
    const X11Connection& x = *m_connection;
    if (!x.works())
        return std::nullopt;
    const std::vector<std::uint32_t> values = x.numbers(window, x.ewmh._NET_WM_PID, XCB_ATOM_CARDINAL);
    return values.empty() ? std::nullopt : std::optional(values.front());
}

QString X11Windows::title(Window window) const {
    const X11Connection& x = *m_connection;
    if (!x.works())
        return {};
    const QByteArray name = x.bytes(window, x.ewmh._NET_WM_NAME);
    return name.isEmpty() ? QString::fromLocal8Bit(x.bytes(window, XCB_ATOM_WM_NAME)) : QString::fromUtf8(name);
}

QString X11Windows::instanceName(Window window) const {
    const X11Connection& x = *m_connection;
    if (!x.works())
        return {};
    const QByteArray both = x.bytes(window, XCB_ATOM_WM_CLASS);
    return QString::fromLocal8Bit(both.left(both.indexOf('\0')));
}

bool X11Windows::isIconified(Window window) const {
    return m_connection->works() && m_connection->isIconified(window);
}

std::optional<X11Windows::Window> X11Windows::activeWindow() const {
    const X11Connection& x = *m_connection;
    if (!x.works())
        return std::nullopt;
    const std::vector<std::uint32_t> values = x.numbers(x.root, x.ewmh._NET_ACTIVE_WINDOW, XCB_ATOM_WINDOW);
    return values.empty() || values.front() == XCB_WINDOW_NONE ? std::nullopt : std::optional(values.front());
}

std::optional<PixelRect> X11Windows::outerFrame(Window window) const {
    const X11Connection& x = *m_connection;
    if (!x.works())
        return std::nullopt;
    const std::optional<PixelRect> client = x.clientRect(window);
    return client ? std::optional(outside(*client, x.border(window))) : std::nullopt;
}

void X11Windows::activate(Window window) {
    X11Connection& x = *m_connection;
    if (!x.works())
        return;
    xcb_ewmh_request_change_active_window(&x.ewmh, x.screenNumber, window, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER,
                                          XCB_CURRENT_TIME, activeWindow().value_or(XCB_WINDOW_NONE));
    xcb_flush(x.connection);
}

void X11Windows::close(Window window) {
    X11Connection& x = *m_connection;
    if (!x.works())
        return;
    xcb_ewmh_request_close_window(&x.ewmh, x.screenNumber, window, XCB_CURRENT_TIME, XCB_EWMH_CLIENT_SOURCE_TYPE_OTHER);
    xcb_flush(x.connection);
}

std::optional<PixelRect> X11Windows::workArea() const {
    const X11Connection& x = *m_connection;
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
