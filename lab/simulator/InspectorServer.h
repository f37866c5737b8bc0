// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

namespace corvanta::lab {

/// Names a free port of the loopback interface in this process's environment for WebKit's inspector server, and returns
/// it. Call before WebKit is used.
[[nodiscard]] std::uint16_t chooseInspectorPort();

/// Whether this process listens on that port. Another program may have taken it after it was chosen.
[[nodiscard]] bool isListening(std::uint16_t port);

} // namespace corvanta::lab
