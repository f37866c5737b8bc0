// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace corvanta::lab::testing {

/// The windows on the test's desktop, as the window manager knows them.
class ClientWindows {
public:
    using Window = std::uint32_t;

    struct Size {
        int width;
        int height;
        bool operator==(const Size&) const = default;
    };

    ClientWindows();
    ~ClientWindows();

    /// The windows whose title begins with `start`.
    [[nodiscard]] std::vector<Window> titled(const std::string& start) const;
    [[nodiscard]] bool isIconified(Window window) const;
    [[nodiscard]] std::optional<Window> active() const;
    [[nodiscard]] Size size(Window window) const;
    /// The process that has the window; nothing when it does not tell.
    [[nodiscard]] std::optional<int> process(Window window) const;

    /// As the frame's close button does.
    void close(Window window) const;
    void resize(Window window, Size size) const;
    /// Whether anybody could take pointer and keyboard right now; they are given back at once.
    [[nodiscard]] bool inputIsFree() const;

private:
    struct Connection;
    std::unique_ptr<Connection> m_connection;
};

} // namespace corvanta::lab::testing
