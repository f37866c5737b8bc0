// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

#include <cstdint>
#include <optional>

namespace corvanta {

/// The whole of `text` as a base-10 number: one sign (`+` or `-`) or none, then ASCII digits. Nothing for any other
/// text, white space included, and for a number that 64 bits do not hold.
[[nodiscard]] std::optional<std::int64_t> decimalInteger(QStringView text);

} // namespace corvanta
