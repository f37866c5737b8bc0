// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace corvanta::lab {

/// Text of pages, servers and other programs, as the lab's windows, menus and tool tips show it: valid UTF-8, without
/// characters that turn the direction of what stands behind them, with spaces for those that control, and cut with "…"
/// behind `most` characters, so that nothing lays out what nobody reads. An ordinary text stays as it is. The toolkit
/// must still be told that it is no mark-up.
[[nodiscard]] std::string shownLine(std::string_view text, std::size_t most = 400);

/// The same for what may take several lines: line feeds stay.
[[nodiscard]] std::string shownText(std::string_view text, std::size_t most = 4'000);

} // namespace corvanta::lab
