// SPDX-License-Identifier: MIT
#include "ShownText.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace corvanta::lab {

namespace {

using namespace std::string_literals;

struct Shown {
    const char* name;
    std::string text;
    std::string line;
};

std::ostream& operator<<(std::ostream& stream, const Shown& example) {
    return stream << example.name;
}

/// In a line of at most ten characters.
const Shown shownCases[] = {
    {"Ordinary", "Zoë’s 📱 日本", "Zoë’s 📱 日本"},
    {"Empty", "", ""},
    {"MarkUpKept", "<b>&amp;_x", "<b>&amp;_x"},
    {"JustFits", "0123456789", "0123456789"},
    {"TooLong", "0123456789a", "012345678…"},
    {"TooLongInWideCharacters", "日本日本日本日本日本日", "日本日本日本日本日…"},
    {"Controls", "a\tb\x1b[1m\x7f", "a b [1m "},
    {"ZeroByte", "a\0b"s, "a b"},
    {"Lines", "a\r\nb\u2028c\u2029d\u0085e", "a  b c d e"},
    {"DirectionLeftOut", "a\u202Eb\u202C\u2066c\u2069", "abc"},
    {"EndsWithDirection", "0123456789\u202E", "0123456789"},
    {"NotUTF8", "caf\xE9 \xFF", "caf\uFFFD \uFFFD"},
    {"CutOffCharacter", "a\xF0\x9F\x93", "a\uFFFD\uFFFD\uFFFD"},
    {"HalfCharacters", "\xED\xA0\xBD", "\uFFFD\uFFFD\uFFFD"},
};

class ShownLineTable : public ::testing::TestWithParam<Shown> {};

} // namespace

TEST_P(ShownLineTable, IsCleanAndShort) {
    constexpr std::size_t most = 10;
    EXPECT_EQ(shownLine(GetParam().text, most), GetParam().line);
}

INSTANTIATE_TEST_SUITE_P(ShownLine, ShownLineTable, ::testing::ValuesIn(shownCases),
                         [](const auto& example) { return std::string(example.param.name); });

TEST(ShownText, KeepsLineFeedsAlone) {
    EXPECT_EQ(shownText("a\nb\r\tc"), "a\nb  c");
}

TEST(ShownText, EndsWhateverItIsGiven) {
    constexpr std::size_t million = 1'000'000;
    EXPECT_LT(shownLine(std::string(million, 'x')).size(), 410U);
    EXPECT_LT(shownText(std::string(million, '\n')).size(), 4'010U);
    EXPECT_LT(shownText(std::string(million, '\xFF')).size(), 3 * 4'010U);
}

} // namespace corvanta::lab
