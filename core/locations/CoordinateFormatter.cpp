// SPDX-License-Identifier: MIT
#include "locations/CoordinateFormatter.h"

#include <array>
#include <charconv>
#include <string_view>

namespace corvanta::CoordinateFormatter {

namespace {

constexpr int decimals = 8;

/// Room for the longest double: a sign, 309 digits, the point and the decimals.
constexpr std::size_t longestText = 1 + 309 + 1 + decimals;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Removes the zeros at the end, except one that does not follow a digit.
std::string_view withoutTrailingZeros(std::string_view text) {
    std::size_t start = text.find_last_not_of('0') + 1;
    if (start < text.size() && (start == 0 || !isDigit(text[start - 1])))
        ++start;
    return text.substr(0, start);
}

} // namespace

QString decimalString(double value) {
    // Qt's own formatting rounds halves away from zero, the C library's depends on the locale; this does neither.
    std::array<char, longestText> buffer{};
    const auto end =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed, decimals).ptr;
    std::string_view text(buffer.data(), end);
    text = withoutTrailingZeros(text);
    if (text.ends_with('.'))
        text.remove_suffix(1);
    return QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size()));
}

QString coordinatePair(const Coordinate& coordinate) {
    return decimalString(coordinate.latitude) + u',' + decimalString(coordinate.longitude);
}

} // namespace corvanta::CoordinateFormatter
