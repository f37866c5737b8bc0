// SPDX-License-Identifier: MIT
#include "updates/DecimalInteger.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <limits>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

struct Case {
    const char* name;
    QString text;
    std::optional<std::int64_t> number;
};

void PrintTo(const Case& value, std::ostream* stream) {
    *stream << value.name;
}

class DecimalInteger : public ::testing::TestWithParam<Case> {};

TEST_P(DecimalInteger, IsTheWholeTextOrNothing) {
    EXPECT_EQ(decimalInteger(GetParam().text), GetParam().number);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, DecimalInteger,
    ::testing::Values(Case{"zero", u"0"_s, 0}, Case{"digits", u"27"_s, 27}, Case{"leadingZeros", u"007"_s, 7},
                      Case{"plus", u"+5"_s, 5}, Case{"minus", u"-5"_s, -5}, Case{"minusZero", u"-0"_s, 0},
                      Case{"largest", u"9223372036854775807"_s, std::numeric_limits<std::int64_t>::max()},
                      Case{"smallest", u"-9223372036854775808"_s, std::numeric_limits<std::int64_t>::min()},
                      Case{"tooLarge", u"9223372036854775808"_s, std::nullopt},
                      Case{"tooSmall", u"-9223372036854775809"_s, std::nullopt}, Case{"empty", u""_s, std::nullopt},
                      Case{"plusAlone", u"+"_s, std::nullopt}, Case{"minusAlone", u"-"_s, std::nullopt},
                      Case{"twoSigns", u"+-1"_s, std::nullopt}, Case{"twoPluses", u"++1"_s, std::nullopt},
                      Case{"minusPlus", u"-+1"_s, std::nullopt}, Case{"leadingSpace", u" 1"_s, std::nullopt},
                      Case{"trailingSpace", u"1 "_s, std::nullopt}, Case{"lineBreak", u"1\n"_s, std::nullopt},
                      Case{"letterBehind", u"1a"_s, std::nullopt}, Case{"letterInFront", u"v1"_s, std::nullopt},
                      Case{"hexadecimal", u"0x1"_s, std::nullopt}, Case{"fraction", u"1.0"_s, std::nullopt},
                      Case{"exponent", u"1e3"_s, std::nullopt}, Case{"separator", u"1,000"_s, std::nullopt},
                      Case{"fullWidthDigit", u"\uFF11"_s, std::nullopt}, Case{"arabicDigit", u"\u0661"_s, std::nullopt},
                      Case{"superscript", u"\u00B2"_s, std::nullopt}, Case{"null", u"1"_s + QChar(u'\0'), std::nullopt},
                      Case{"word", u"Local"_s, std::nullopt}),
    testing::CaseName());

} // namespace
} // namespace corvanta
