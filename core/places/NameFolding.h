// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace corvanta {

/// Brings names into the form in which they are compared: lower-case words without marks and punctuation, with one
/// space between them, as UTF-8. "São Paulo" becomes "sao paulo", "St. John's" becomes "st johns".
class NameFolding {
public:
    /// The size of one entry of a table.
    static constexpr std::size_t entrySize = 16;

    NameFolding() = default;

    /// `table` says what characters beyond ASCII become: entries in the order of their characters, each the character
    /// (four bytes, little endian), the number of bytes that it becomes, and up to eleven of these. Outlives this.
    explicit NameFolding(std::span<const std::byte> table)
        : m_table(table) {}

    /// A name of the table's makers, in UTF-8: what the table does not say stays as it is. `folded` is overwritten.
    void fold(std::string_view name, std::string& folded) const;

    /// What somebody typed, with any characters there are.
    [[nodiscard]] std::string foldTyped(const QString& text) const;

private:
    [[nodiscard]] const std::byte* find(char32_t character) const;

    std::span<const std::byte> m_table;
};

} // namespace corvanta
