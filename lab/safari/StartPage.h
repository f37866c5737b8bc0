// SPDX-License-Identifier: MIT
#pragma once

namespace corvanta::lab {

/// The page that a new tab shows: says what this program is and how to inspect a device's page. Complete HTML without
/// outside parts.
[[nodiscard]] const char* startPage();

} // namespace corvanta::lab
