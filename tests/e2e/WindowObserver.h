// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>
#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace corvanta::testing {

/// A managed top-level window as a person sees it.
struct ObservedWindow {
    std::uint32_t id = 0;
    int processID = 0;
    QString title;
    /// On screen, origin at the top-left: title bar and borders included, client-side shadows excluded.
    QRect frame;
};

/// Looks at the X server's windows; independent of the application's own code for that.
class WindowObserver {
public:
    WindowObserver();
    ~WindowObserver();
    WindowObserver(const WindowObserver&) = delete;
    WindowObserver& operator=(const WindowObserver&) = delete;

    /// The window manager's clients, iconified ones included.
    [[nodiscard]] std::vector<ObservedWindow> windows() const;

    /// The first whose title begins with the text.
    [[nodiscard]] std::optional<ObservedWindow> window(const QString& titleBeginning) const;

    /// The part of the screen that windows may cover.
    [[nodiscard]] QRect workArea() const;

    /// Asks the window manager to give the window this frame, as a person does who drags it there.
    void place(std::uint32_t window, const QRect& frame) const;

    /// Asks the window manager to close the window, as a person does who presses the button in its title bar.
    void close(std::uint32_t window) const;

    /// The window that the keyboard goes to, 0 when it goes to none of the window manager's clients.
    [[nodiscard]] std::uint32_t activeWindow() const;

    /// Asks the window manager to give the window the keyboard.
    void activate(std::uint32_t window) const;

    /// Whether nobody else holds the pointer; takes hold of it for an instant to find out.
    [[nodiscard]] bool isPointerFree() const;

    /// Begins to watch for windows that appear without the window manager: menus, tooltips, drop-down lists.
    void watchPopups();

    /// How many of those have appeared since `watchPopups`.
    [[nodiscard]] int popupsSeen();

private:
    struct Connection;
    std::unique_ptr<Connection> m_connection;
    int m_popups = 0;
};

} // namespace corvanta::testing
