// SPDX-License-Identifier: MIT
#include "support/Text.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <array>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

TEST(TrimmedText, RemovesEverySpaceAndLineBreakOfUnicodeAtBothEnds) {
    constexpr std::array<char16_t, 27> spaces{
        0x09,   0x0A,   0x0B,   0x0C,   0x0D,   0x20,   0x85,   0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003, 0x2004,
        0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x200B, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000, 0x20,
    };
    for (const char16_t space : spaces)
        EXPECT_EQ(trimmedText(QChar(space) + u"a b"_s + QChar(space)), u"a b") << std::hex << int(space);
}

TEST(TrimmedText, KeepsWhatOnlyLooksLikeASpace) {
    for (const char16_t character : {u'\0', u'\x1C', u'\x1F', u'\x200D', u'\x2060', u'\xFEFF'}) {
        const QString text = QChar(character) + u"a"_s;
        EXPECT_EQ(trimmedText(text), text) << std::hex << int(character);
    }
}

TEST(TrimmedText, LeavesNothingOfBlanks) {
    EXPECT_EQ(trimmedText(u" \t\n "), u"");
    EXPECT_EQ(trimmedText(u""), u"");
}

TEST(DecodeUTF8, ReadsValidBytes) {
    EXPECT_EQ(decodeUTF8("caf\xC3\xA9"), u"café"_s);
}

TEST(DecodeUTF8, ReadsNoBytesAsTheEmptyText) {
    EXPECT_EQ(decodeUTF8({}), QString());
}

TEST(DecodeUTF8, RefusesBytesThatAreNotUTF8) {
    EXPECT_EQ(decodeUTF8("A\xFF"
                         "B"),
              std::nullopt);
}

TEST(DecodeUTF8, RefusesACharacterThatIsCutOff) {
    EXPECT_EQ(decodeUTF8("caf\xC3"), std::nullopt);
}

TEST(DecodeUTF8, KeepsAByteOrderMark) {
    EXPECT_EQ(decodeUTF8("\xEF\xBB\xBFok"), QString(QChar(0xFEFF) + u"ok"_s));
}

} // namespace
} // namespace corvanta
