// SPDX-License-Identifier: MIT
#include "locations/CoordinateFormatter.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QRegularExpression>

#include <array>
#include <clocale>
#include <cstdio>
#include <limits>
#include <random>
#include <string>

namespace corvanta {
namespace {

using CoordinateFormatter::coordinatePair;
using CoordinateFormatter::decimalString;
using namespace Qt::Literals::StringLiterals;

struct Case {
    std::string name;
    double value;
    QString text;

    friend void PrintTo(const Case& row, std::ostream* stream) { *stream << row.name; }
};

class DecimalString : public ::testing::TestWithParam<Case> {};

TEST_P(DecimalString, IsAsExpected) {
    EXPECT_EQ(decimalString(GetParam().value), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    , DecimalString,
    ::testing::Values(Case{"Zero", 0, u"0.0"_s}, Case{"Ten", 10, u"10.0"_s}, Case{"Twelve", 12, u"12.0"_s},
                      Case{"NegativeWhole", -90, u"-90.0"_s}, Case{"ZeroInside", 10.5, u"10.5"_s},
                      Case{"Tenth", 0.1, u"0.1"_s}, Case{"TooSmall", 0.000000004, u"0.0"_s},
                      Case{"RoundedUp", 0.000000006, u"0.00000001"_s}, Case{"Hundred", 100.1, u"100.1"_s},
                      Case{"NegativeTooSmall", -0.000000001, u"-0.0"_s}, Case{"NegativeZero", -0.0, u"-0.0"_s},
                      Case{"NineDecimals", 1.23456789123, u"1.23456789"_s}, Case{"OutOfRange", 123.4, u"123.4"_s},
                      Case{"Place", 37.33182, u"37.33182"_s}, Case{"HalfToEven", 0.001953125, u"0.00195312"_s},
                      Case{"HalfToEvenUp", 0.005859375, u"0.00585938"_s},
                      Case{"Large", 1e22, u"10000000000000000000000.0"_s},
                      Case{"NotANumber", std::numeric_limits<double>::quiet_NaN(), u"nan"_s},
                      Case{"Infinite", std::numeric_limits<double>::infinity(), u"inf"_s},
                      Case{"NegativeInfinite", -std::numeric_limits<double>::infinity(), u"-inf"_s}),
    testing::CaseName());

TEST(CoordinateFormatter, RoundsAndTrimsAsTheCLibraryAndTheExpressionsDo) {
    std::mt19937_64 random(20260101);
    std::uniform_real_distribution<double> degrees(-180, 180);
    const QRegularExpression zeros(u"(?<=\\d)0+$"_s);
    const QRegularExpression point(u"\\.$"_s);
    for (int round = 0; round < 5000; ++round) {
        // Some values are exact halves at the ninth decimal, some are short.
        const double value = round % 3 == 0 ? static_cast<double>(round) / 512 : degrees(random);
        std::array<char, 400> buffer{};
        (void)std::snprintf(buffer.data(), buffer.size(), "%.8f", value);
        QString expected = QString::fromLatin1(buffer.data());
        expected.replace(zeros, QString()).replace(point, QString());
        ASSERT_EQ(decimalString(value), expected);
    }
}

TEST(CoordinateFormatter, FormatsTheHugestNumber) {
    EXPECT_EQ(decimalString(-std::numeric_limits<double>::max()).size(), 1 + 309 + 2);
    EXPECT_TRUE(decimalString(std::numeric_limits<double>::max()).endsWith(u".0"));
}

TEST(CoordinateFormatter, DecidesTheFifthBillionthAsTheCLibraryDoes) {
    std::array<char, 40> buffer{};
    (void)std::snprintf(buffer.data(), buffer.size(), "%.8f", 0.000000005);
    QString expected = QString::fromLatin1(buffer.data());
    if (expected == u"0.00000000")
        expected = u"0.0"_s;
    EXPECT_EQ(decimalString(0.000000005), expected);
}

TEST(CoordinateFormatter, JoinsThePairWithACommaAlone) {
    EXPECT_EQ(coordinatePair({51.5, 0}), u"51.5,0.0");
    EXPECT_EQ(coordinatePair({37.33182, -122.03118}), u"37.33182,-122.03118");
    EXPECT_EQ(coordinatePair({123.4, 200}), u"123.4,200.0");
}

TEST(CoordinateFormatter, UsesAPointUnderALocaleWithADecimalComma) {
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German));
    EXPECT_EQ(coordinatePair({51.5, -0.25}), u"51.5,-0.25");
    QLocale::setDefault(before);
}

/// Makes the C library write a decimal comma for as long as it lives, where such a locale is installed.
class DecimalComma {
public:
    DecimalComma()
        : m_before(std::setlocale(LC_NUMERIC, nullptr)) {
        for (const char* const name : {"de_DE.UTF-8", "fr_FR.UTF-8", "es_ES.UTF-8", "it_IT.UTF-8", "nl_NL.UTF-8"}) {
            if (std::setlocale(LC_NUMERIC, name) != nullptr)
                break;
        }
    }

    DecimalComma(const DecimalComma&) = delete;
    DecimalComma& operator=(const DecimalComma&) = delete;

    ~DecimalComma() { (void)std::setlocale(LC_NUMERIC, m_before.c_str()); }

    [[nodiscard]] static bool isThere() { return *std::localeconv()->decimal_point == ','; }

private:
    std::string m_before;
};

TEST(CoordinateFormatter, UsesAPointWhereTheCLibraryWritesAComma) {
    const DecimalComma comma;
    if (!DecimalComma::isThere())
        GTEST_SKIP() << "no locale with a decimal comma is installed";
    EXPECT_EQ(coordinatePair({51.5, -0.25}), u"51.5,-0.25");
    EXPECT_EQ(decimalString(12), u"12.0");
}

} // namespace
} // namespace corvanta
