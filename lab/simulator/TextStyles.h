// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <array>
#include <vector>

namespace corvanta::lab {

/// A font of the system that follows the text size, as style sheets name it behind `-apple-system-`.
struct TextStyle {
    const char* name = "";
    /// In CSS pixels for each of `contentSizes()`.
    std::array<int, 12> sizes{};

    /// In CSS pixels; for a size that is none, as on a new device.
    [[nodiscard]] int sizeAt(const QString& contentSize) const;
};

/// Every one that a style sheet may name, with the sizes that are published for the system.
[[nodiscard]] const std::vector<TextStyle>& textStyles();

} // namespace corvanta::lab
