// SPDX-License-Identifier: MIT
#include "support/URL.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

struct Case {
    std::string name;
    QString typed;
    QString absoluteString;
    std::optional<QString> host;
    QString path;

    friend void PrintTo(const Case& row, std::ostream* stream) { *stream << row.name; }
};

class URLSpelling : public ::testing::TestWithParam<Case> {};

TEST_P(URLSpelling, IsAsExpected) {
    const auto url = URL::parse(GetParam().typed);
    ASSERT_TRUE(url);
    EXPECT_EQ(url->absoluteString(), GetParam().absoluteString);
    EXPECT_EQ(url->host(), GetParam().host);
    EXPECT_EQ(url->path(), GetParam().path);
}

INSTANTIATE_TEST_SUITE_P(
    , URLSpelling,
    ::testing::Values(
        Case{"Plain", u"http://localhost:3000"_s, u"http://localhost:3000"_s, u"localhost"_s, u""_s},
        Case{"KeepsCase", u"HTTPS://Example.COM/A/b"_s, u"HTTPS://Example.COM/A/b"_s, u"Example.COM"_s, u"/A/b"_s},
        Case{"KeepsTrailingSlash", u"http://a/docs/"_s, u"http://a/docs/"_s, u"a"_s, u"/docs/"_s},
        Case{"KeepsTheDefaultPort", u"http://a:80/"_s, u"http://a:80/"_s, u"a"_s, u"/"_s},
        Case{"KeepsAnEmptyPort", u"http://a:/"_s, u"http://a:/"_s, u"a"_s, u"/"_s},
        Case{"KeepsDotSegments", u"http://a/b/../c//d"_s, u"http://a/b/../c//d"_s, u"a"_s, u"/b/../c//d"_s},
        Case{"KeepsQueryAndFragment", u"http://a/p?q=1&r=/?#top?x"_s, u"http://a/p?q=1&r=/?#top?x"_s, u"a"_s, u"/p"_s},
        Case{"KeepsEmptyQueryAndFragment", u"http://a?#"_s, u"http://a?#"_s, u"a"_s, u""_s},
        Case{"EncodesASecondHash", u"http://a#b#c"_s, u"http://a#b%23c"_s, u"a"_s, u""_s},
        Case{"KeepsUserInformation", u"http://me:pass:word@a/"_s, u"http://me:pass:word@a/"_s, u"a"_s, u"/"_s},
        Case{"EncodesUserInformation", u"http://m e@x@a"_s, u"http://m%20e%40x@a"_s, u"a"_s, u""_s},
        Case{"KeepsAnEmptyUser", u"http://@a"_s, u"http://@a"_s, u"a"_s, u""_s},
        Case{"ReadsIPv6", u"http://[::1]:8080/x"_s, u"http://[::1]:8080/x"_s, u"::1"_s, u"/x"_s},
        Case{"EncodesAZone", u"http://[fe80::1%en0]/"_s, u"http://[fe80::1%25en0]/"_s, u"fe80::1%25en0"_s, u"/"_s},
        Case{"KeepsAnEncodedZone", u"http://[fe80::1%25en0]/"_s, u"http://[fe80::1%25en0]/"_s, u"fe80::1%25en0"_s,
             u"/"_s},
        Case{"EncodesSpacesAndBraces", u"http://a/x y{z}"_s, u"http://a/x%20y%7Bz%7D"_s, u"a"_s, u"/x y{z}"_s},
        Case{"KeepsEscapes", u"http://a/%41%2f"_s, u"http://a/%41%2f"_s, u"a"_s, u"/A/"_s},
        Case{"EncodesAStrayPercent", u"http://a/100%/%4"_s, u"http://a/100%25/%254"_s, u"a"_s, u"/100%/%4"_s},
        Case{"EncodesANonASCIIPath", u"http://a/é/日"_s, u"http://a/%C3%A9/%E6%97%A5"_s, u"a"_s, u"/é/日"_s},
        Case{"EncodesBeyondTheBasicPlane", u"http://a/😀"_s, u"http://a/%F0%9F%98%80"_s, u"a"_s, u"/😀"_s},
        Case{"EncodesQueryAndFragment", u"http://a/?q=a b\"#ü"_s, u"http://a/?q=a%20b%22#%C3%BC"_s, u"a"_s, u"/"_s},
        Case{"EncodesABackslash", u"http://a/b\\c"_s, u"http://a/b%5Cc"_s, u"a"_s, u"/b\\c"_s},
        Case{"EncodesBracketsInAPath", u"http://a/b[1]"_s, u"http://a/b%5B1%5D"_s, u"a"_s, u"/b[1]"_s},
        Case{"ConvertsANonASCIIHost", u"http://bücher.example/"_s, u"http://xn--bcher-kva.example/"_s,
             u"xn--bcher-kva.example"_s, u"/"_s},
        Case{"KeepsAnUnderscoreInAHost", u"http://my_host/"_s, u"http://my_host/"_s, u"my_host"_s, u"/"_s},
        Case{"HasAnEmptyHost", u"http:///x"_s, u"http:///x"_s, u""_s, u"/x"_s},
        Case{"HasNoAuthority", u"mailto:a@b.c"_s, u"mailto:a@b.c"_s, std::nullopt, u"a@b.c"_s},
        Case{"HasOnlyAScheme", u"about:"_s, u"about:"_s, std::nullopt, u""_s},
        Case{"IsEmpty", u""_s, u""_s, std::nullopt, u""_s}),
    testing::CaseName());

struct Refusal {
    std::string name;
    QString typed;

    friend void PrintTo(const Refusal& refusal, std::ostream* stream) { *stream << refusal.name; }
};

class URLRefusal : public ::testing::TestWithParam<Refusal> {};

TEST_P(URLRefusal, IsNoAddress) {
    EXPECT_EQ(URL::parse(GetParam().typed), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(
    , URLRefusal,
    ::testing::Values(Refusal{"SpaceInHost", u"http://a b/"_s}, Refusal{"BracesInHost", u"http://a{b}/"_s},
                      Refusal{"StrayPercentInHost", u"http://a%zz/"_s},
                      Refusal{"SpaceInNonASCIIHost", u"http://ü b/"_s}, Refusal{"PortWithLetters", u"http://a:30x0/"_s},
                      Refusal{"NegativePort", u"http://a:-1/"_s}, Refusal{"TwoPorts", u"http://a:1:2/"_s},
                      Refusal{"PortInOtherDigits", u"http://a:٣/"_s}, Refusal{"OpenBracket", u"http://[::1/"_s},
                      Refusal{"ClosingBracket", u"http://::1]/"_s}, Refusal{"TextBehindBracket", u"http://[::1]x/"_s},
                      Refusal{"SpaceInBrackets", u"http://[:: 1]/"_s}, Refusal{"DigitFirstInScheme", u"1http://a"_s},
                      Refusal{"SpaceInScheme", u"ht tp://a"_s}, Refusal{"UnderscoreInScheme", u"ht_tp://a"_s}),
    testing::CaseName());

TEST(URL, KeepsTheCaseOfTheScheme) {
    EXPECT_EQ(URL::parse(u"HtTp://a")->scheme(), u"HtTp"_s);
}

TEST(URL, HasNoSchemeInARelativeReference) {
    EXPECT_EQ(URL::parse(u"//a/b")->scheme(), std::nullopt);
    EXPECT_EQ(URL::parse(u"//a/b")->host(), u"a"_s);
    EXPECT_EQ(URL::parse(u"/a:b")->scheme(), std::nullopt);
    EXPECT_EQ(URL::parse(u"user@a:80")->scheme(), std::nullopt);
}

TEST(URL, TakesEverythingBeforeTheFirstColonAsTheScheme) {
    EXPECT_EQ(URL::parse(u"localhost:3000/?next=http://x")->scheme(), u"localhost"_s);
}

TEST(URL, IsEqualToTheSameSpellingOnly) {
    EXPECT_EQ(URL::parse(u"http://a/"), URL::parse(u"http://a/"));
    EXPECT_NE(URL::parse(u"http://a/"), URL::parse(u"http://A/"));
    EXPECT_NE(URL::parse(u"http://a/"), URL::parse(u"http://a"));
}

} // namespace
} // namespace corvanta
