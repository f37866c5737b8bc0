// SPDX-License-Identifier: MIT
#include "workspace/URLNormalizer.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <optional>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

QString normalized(QStringView input) {
    return URLNormalizer::normalize(input).absoluteString();
}

/// The error with which `input` is refused; nothing when it is accepted.
std::optional<URLNormalizationError> refusal(QStringView input) {
    try {
        (void)URLNormalizer::normalize(input);
        return std::nullopt;
    } catch (const URLNormalizationError& error) {
        return error;
    }
}

TEST(URLNormalizer, RefusesEmptyAndBlankInput) {
    EXPECT_EQ(refusal(u""), URLNormalizationError::empty());
    EXPECT_EQ(refusal(u" \t\r\n\u00A0\u2028"), URLNormalizationError::empty());
    EXPECT_EQ(refusal(u" ")->errorDescription(), u"Enter a webpage URL.");
}

TEST(URLNormalizer, CompletesABareHostWithTheScheme) {
    EXPECT_EQ(normalized(u"localhost:3000"), u"http://localhost:3000");
    EXPECT_EQ(normalized(u"example.com/path?q=1"), u"http://example.com/path?q=1");
    EXPECT_EQ(normalized(u"192.168.0.2"), u"http://192.168.0.2");
    EXPECT_EQ(normalized(u"[::1]:8080"), u"http://[::1]:8080");
}

TEST(URLNormalizer, DropsSurroundingBlanks) {
    EXPECT_EQ(normalized(u" \thttps://example.com\n"), u"https://example.com");
}

TEST(URLNormalizer, KeepsTheCaseOfTheScheme) {
    EXPECT_EQ(normalized(u"HTTPS://Example.COM"), u"HTTPS://Example.COM");
}

TEST(URLNormalizer, KeepsPathQueryPortAndFragmentAsTyped) {
    EXPECT_EQ(normalized(u"http://user@a:80/b/../%41?x=%2F#Top"), u"http://user@a:80/b/../%41?x=%2F#Top");
    EXPECT_EQ(normalized(u"http://a/"), u"http://a/");
}

TEST(URLNormalizer, EncodesWhatAnAddressMayNotHold) {
    EXPECT_EQ(normalized(u"localhost/a b"), u"http://localhost/a%20b");
    EXPECT_EQ(normalized(u"bücher.example/é"), u"http://xn--bcher-kva.example/%C3%A9");
}

TEST(URLNormalizer, RefusesOtherSchemesInLowerCase) {
    EXPECT_EQ(refusal(u"ftp://example.com"), URLNormalizationError::unsupportedScheme(u"ftp"_s));
    EXPECT_EQ(refusal(u"FTP://example.com"), URLNormalizationError::unsupportedScheme(u"ftp"_s));
    EXPECT_EQ(refusal(u"ftp://example.com")->errorDescription(), u"The ftp URL scheme is not supported.");
}

TEST(URLNormalizer, RefusesAnAddressWithoutAHost) {
    EXPECT_EQ(refusal(u"http://"), URLNormalizationError::invalid(u"http://"_s));
    EXPECT_EQ(refusal(u"http://")->errorDescription(), u"http:// is not a valid webpage URL.");
    EXPECT_EQ(refusal(u"http:///path"), URLNormalizationError::invalid(u"http:///path"_s));
    EXPECT_EQ(refusal(u"http://:80"), URLNormalizationError::invalid(u"http://:80"_s));
    EXPECT_EQ(refusal(u"http://user@"), URLNormalizationError::invalid(u"http://user@"_s));
    EXPECT_EQ(refusal(u"/path"), URLNormalizationError::invalid(u"/path"_s));
}

TEST(URLNormalizer, TakesASchemeNameFromAnAddressThatHoldsAnother) {
    EXPECT_EQ(refusal(u"localhost:3000/?next=http://x"), URLNormalizationError::unsupportedScheme(u"localhost"_s));
}

TEST(URLNormalizer, RefusesAnAddressWithoutASchemeThatHoldsAnother) {
    EXPECT_EQ(refusal(u"/a?next=http://x"), URLNormalizationError::invalid(u"/a?next=http://x"_s));
    EXPECT_EQ(refusal(u"://x"), URLNormalizationError::invalid(u"://x"_s));
}

TEST(URLNormalizer, NamesTheTrimmedInputInARefusal) {
    EXPECT_EQ(refusal(u"  a b  "), URLNormalizationError::invalid(u"a b"_s));
    EXPECT_EQ(refusal(u" localhost:port "), URLNormalizationError::invalid(u"localhost:port"_s));
}

TEST(URLNormalizer, TakesASchemeWithoutSlashesAsAHost) {
    EXPECT_EQ(refusal(u"mailto:a@b"), std::nullopt);
    EXPECT_EQ(normalized(u"mailto:a@b"), u"http://mailto:a@b");
    EXPECT_EQ(refusal(u"javascript:alert(1)"), URLNormalizationError::invalid(u"javascript:alert(1)"_s));
}

TEST(URLNormalizationError, SuggestsTheSameInEveryCase) {
    const QString suggestion = u"Use an HTTP or HTTPS address, for example http://localhost:3000."_s;
    EXPECT_EQ(URLNormalizationError::unsupportedScheme(u"ftp"_s).recoverySuggestion(), suggestion);
    EXPECT_EQ(URLNormalizationError::invalid(u"x"_s).recoverySuggestion(), suggestion);
    EXPECT_EQ(URLNormalizationError::empty().recoverySuggestion(), suggestion);
}

TEST(URLNormalizationError, IsEqualForTheSameCaseAndPayloadOnly) {
    EXPECT_EQ(URLNormalizationError::invalid(u"x"_s), URLNormalizationError::invalid(u"x"_s));
    EXPECT_FALSE(URLNormalizationError::invalid(u"x"_s) == URLNormalizationError::invalid(u"y"_s));
    EXPECT_FALSE(URLNormalizationError::invalid(u"x"_s) == URLNormalizationError::unsupportedScheme(u"x"_s));
}

} // namespace
} // namespace corvanta
