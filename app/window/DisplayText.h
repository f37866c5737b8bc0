// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace corvanta {

/// How much of a text is shown: in one line, and where it may take several.
constexpr qsizetype longestLine = 400;
constexpr qsizetype longestText = 4'000;

/// Text from pages, tools or the network as a person gets to see it. Characters that would turn the direction of what
/// stands behind them are left out, those that control a terminal become spaces, line breaks as well where `most` is
/// that of a line, and what is longer than `most` ends with "…". An ordinary text stays as it is.
[[nodiscard]] QString displayText(const QString& text, qsizetype most = longestText);

} // namespace corvanta
