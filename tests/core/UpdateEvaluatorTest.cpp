// SPDX-License-Identifier: MIT
#include "updates/UpdateEvaluator.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <unordered_set>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

URL url(QStringView text) {
    return URL::parse(text).value_or(URL());
}

using Rule = UpdateManifestError::Case;

UpdateManifest validManifest() {
    return {
        .version = u"1.4.0"_s,
        .build = 27,
        .downloadURL = url(u"https://downloads.example/Corvanta.dmg"),
        .releaseNotes = u"Faster."_s,
        .sha256 = u"0123456789abcdef"_s.repeated(4),
    };
}

/// The rule that `manifest` breaks; nothing when it is valid.
std::optional<Rule> brokenRule(const UpdateManifest& manifest) {
    try {
        UpdateEvaluator::validate(manifest);
        return std::nullopt;
    } catch (const UpdateManifestError& error) {
        return error.value();
    }
}

struct TextCase {
    const char* name;
    QString text;
    bool isValid;
};

void PrintTo(const TextCase& value, std::ostream* stream) {
    *stream << value.name;
}

class UpdateVersion : public ::testing::TestWithParam<TextCase> {};

TEST_P(UpdateVersion, IsThreeNumbersWithDotsBetween) {
    UpdateManifest manifest = validManifest();
    manifest.version = GetParam().text;
    EXPECT_EQ(brokenRule(manifest), GetParam().isValid ? std::nullopt : std::optional(Rule::invalidVersion));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UpdateVersion,
    ::testing::Values(TextCase{"three", u"1.2.3"_s, true}, TextCase{"zeros", u"0.0.0"_s, true},
                      TextCase{"leadingZeros", u"01.002.3"_s, true}, TextCase{"signs", u"+1.-2.-0"_s, true},
                      TextCase{"largestPiece", u"1.2.9223372036854775807"_s, true},
                      TextCase{"smallestPiece", u"-9223372036854775808.2.3"_s, true},
                      TextCase{"overflow", u"1.2.9223372036854775808"_s, false},
                      TextCase{"underflow", u"-9223372036854775809.2.3"_s, false}, TextCase{"empty", u""_s, false},
                      TextCase{"one", u"1"_s, false}, TextCase{"two", u"1.2"_s, false},
                      TextCase{"four", u"1.2.3.4"_s, false}, TextCase{"emptyMiddle", u"1..3"_s, false},
                      TextCase{"emptyFirst", u".2.3"_s, false}, TextCase{"emptyLast", u"1.2."_s, false},
                      TextCase{"dotBehind", u"1.2.3."_s, false}, TextCase{"dotsAlone", u".."_s, false},
                      TextCase{"letterPiece", u"1.2.x"_s, false}, TextCase{"leadingLetter", u"v1.2.3"_s, false},
                      TextCase{"suffix", u"1.2.3-beta"_s, false}, TextCase{"space", u"1.2. 3"_s, false},
                      TextCase{"lineBreak", u"1.2.3\n"_s, false}, TextCase{"signAlone", u"1.+.3"_s, false},
                      TextCase{"twoSigns", u"1.+-2.3"_s, false}, TextCase{"comma", u"1,2,3"_s, false},
                      TextCase{"fullWidthDot", u"1\uFF0E2\uFF0E3"_s, false},
                      TextCase{"fullWidthDigit", u"1.\uFF12.3"_s, false}),
    testing::CaseName());

struct BuildCase {
    const char* name;
    std::int64_t build;
    bool isValid;
};

void PrintTo(const BuildCase& value, std::ostream* stream) {
    *stream << value.name;
}

class UpdateBuild : public ::testing::TestWithParam<BuildCase> {};

TEST_P(UpdateBuild, IsAtLeastOne) {
    UpdateManifest manifest = validManifest();
    manifest.build = GetParam().build;
    EXPECT_EQ(brokenRule(manifest), GetParam().isValid ? std::nullopt : std::optional(Rule::invalidBuild));
}

INSTANTIATE_TEST_SUITE_P(Cases, UpdateBuild,
                         ::testing::Values(BuildCase{"one", 1, true},
                                           BuildCase{"largest", std::numeric_limits<std::int64_t>::max(), true},
                                           BuildCase{"zero", 0, false}, BuildCase{"minusOne", -1, false},
                                           BuildCase{"smallest", std::numeric_limits<std::int64_t>::min(), false}),
                         testing::CaseName());

class UpdateDownloadURL : public ::testing::TestWithParam<TextCase> {};

TEST_P(UpdateDownloadURL, HasTheSchemeHTTPS) {
    UpdateManifest manifest = validManifest();
    manifest.downloadURL = url(GetParam().text);
    EXPECT_EQ(brokenRule(manifest), GetParam().isValid ? std::nullopt : std::optional(Rule::insecureDownloadURL));
}

INSTANTIATE_TEST_SUITE_P(Cases, UpdateDownloadURL,
                         ::testing::Values(TextCase{"https", u"https://a.example/b"_s, true},
                                           TextCase{"upperCase", u"HTTPS://a.example/b"_s, true},
                                           TextCase{"mixedCase", u"hTtPs://a.example/b"_s, true},
                                           TextCase{"http", u"http://a.example/b"_s, false},
                                           TextCase{"ftp", u"ftp://a.example/b"_s, false},
                                           TextCase{"file", u"file:///etc/passwd"_s, false},
                                           TextCase{"javascript", u"javascript:alert(1)"_s, false},
                                           TextCase{"longer", u"httpss://a.example/b"_s, false},
                                           TextCase{"noScheme", u"a.example/b"_s, false},
                                           TextCase{"networkPath", u"//a.example/b"_s, false},
                                           TextCase{"httpsInThePath", u"http://a.example/https://b"_s, false}),
                         testing::CaseName());

class UpdateChecksum : public ::testing::TestWithParam<TextCase> {};

TEST_P(UpdateChecksum, IsSixtyFourHexadecimalDigits) {
    UpdateManifest manifest = validManifest();
    manifest.sha256 = GetParam().text;
    EXPECT_EQ(brokenRule(manifest), GetParam().isValid ? std::nullopt : std::optional(Rule::invalidChecksum));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, UpdateChecksum,
    ::testing::Values(TextCase{"lowerCase", u"0123456789abcdef"_s.repeated(4), true},
                      TextCase{"upperCase", u"0123456789ABCDEF"_s.repeated(4), true},
                      TextCase{"mixedCase", u"0123456789AbCdEf"_s.repeated(4), true}, TextCase{"empty", u""_s, false},
                      TextCase{"sixtyThree", u"a"_s.repeated(63), false},
                      TextCase{"sixtyFive", u"a"_s.repeated(65), false},
                      TextCase{"otherLetter", u"a"_s.repeated(63) + u"g"_s, false},
                      TextCase{"space", u"a"_s.repeated(63) + u" "_s, false},
                      TextCase{"lineBreakBehind", u"a"_s.repeated(64) + u"\n"_s, false},
                      TextCase{"prefix", u"0x"_s + u"a"_s.repeated(62), false},
                      // As many code units as digits are wanted, but one character fewer.
                      TextCase{"combiningMarkInPlaceOfADigit", u"a"_s.repeated(63) + u"\u0301"_s, false},
                      // As many characters as digits are wanted, but one code unit more.
                      TextCase{"combiningMarkOnADigit", u"a"_s.repeated(64) + u"\u0301"_s, false},
                      TextCase{"characterOutsideTheBasicPlane", u"a"_s.repeated(63) + u"\U0001F600"_s, false},
                      TextCase{"fullWidthDigit", u"a"_s.repeated(63) + u"\uFF11"_s, false},
                      TextCase{"fullWidthLetter", u"a"_s.repeated(63) + u"\uFF21"_s, false}),
    testing::CaseName());

TEST(UpdateEvaluator, ReportsOnlyTheFirstRuleThatIsBroken) {
    UpdateManifest manifest{
        .version = u"1.2"_s,
        .build = 0,
        .downloadURL = url(u"http://a.example/"),
        .releaseNotes = {},
        .sha256 = u"none"_s,
    };
    EXPECT_EQ(brokenRule(manifest), Rule::invalidVersion);
    manifest.version = u"1.2.3"_s;
    EXPECT_EQ(brokenRule(manifest), Rule::invalidBuild);
    manifest.build = 1;
    EXPECT_EQ(brokenRule(manifest), Rule::insecureDownloadURL);
    manifest.downloadURL = validManifest().downloadURL;
    EXPECT_EQ(brokenRule(manifest), Rule::invalidChecksum);
    manifest.sha256 = validManifest().sha256;
    EXPECT_EQ(brokenRule(manifest), std::nullopt);
}

TEST(UpdateEvaluator, RefusesBuildZeroBehindAValidVersion) {
    UpdateManifest manifest = validManifest();
    manifest.build = 0;
    EXPECT_EQ(brokenRule(manifest), Rule::invalidBuild);
}

TEST(UpdateEvaluator, DoesNotJudgeTheReleaseNotes) {
    UpdateManifest manifest = validManifest();
    manifest.releaseNotes.clear();
    EXPECT_EQ(brokenRule(manifest), std::nullopt);
}

TEST(UpdateEvaluator, OffersAHigherBuild) {
    EXPECT_EQ(UpdateEvaluator::decision(validManifest(), 26), UpdateDecision::updateAvailable(validManifest()));
    EXPECT_EQ(UpdateEvaluator::decision(validManifest(), 0), UpdateDecision::updateAvailable(validManifest()));
    EXPECT_EQ(UpdateEvaluator::decision(validManifest(), std::numeric_limits<std::int64_t>::min()),
              UpdateDecision::updateAvailable(validManifest()));
}

TEST(UpdateEvaluator, TakesTheSameBuildForUpToDate) {
    EXPECT_EQ(UpdateEvaluator::decision(validManifest(), 27), UpdateDecision::upToDate());
}

TEST(UpdateEvaluator, NeverOffersALowerBuildWhateverItsVersion) {
    UpdateManifest manifest = validManifest();
    manifest.version = u"99.0.0"_s;
    EXPECT_EQ(UpdateEvaluator::decision(manifest, 28), UpdateDecision::upToDate());
}

TEST(UpdateEvaluator, OffersAHigherBuildOfALowerVersion) {
    UpdateManifest manifest = validManifest();
    manifest.version = u"0.0.1"_s;
    EXPECT_EQ(UpdateEvaluator::decision(manifest, 26), UpdateDecision::updateAvailable(manifest));
}

TEST(UpdateEvaluator, RefusesAPlainHTTPDownloadEvenOfAHigherBuild) {
    UpdateManifest manifest = validManifest();
    manifest.downloadURL = url(u"http://downloads.example/Corvanta.dmg");
    manifest.build = 100;
    try {
        (void)UpdateEvaluator::decision(manifest, 1);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const UpdateManifestError& error) {
        EXPECT_EQ(error, UpdateManifestError(Rule::insecureDownloadURL));
    }
}

TEST(UpdateEvaluator, ValidatesAlsoWhatIsNotNewer) {
    UpdateManifest manifest = validManifest();
    manifest.sha256 = u"none"_s;
    EXPECT_THROW((void)UpdateEvaluator::decision(manifest, 1000), UpdateManifestError);
}

TEST(UpdateManifestError, SaysWhichRuleIsBroken) {
    EXPECT_EQ(UpdateManifestError(Rule::invalidVersion).errorDescription(),
              u"The update server returned an invalid version.");
    EXPECT_EQ(UpdateManifestError(Rule::invalidBuild).errorDescription(),
              u"The update server returned an invalid build number.");
    EXPECT_EQ(UpdateManifestError(Rule::insecureDownloadURL).errorDescription(),
              u"The update download must use HTTPS.");
    EXPECT_EQ(UpdateManifestError(Rule::invalidChecksum).errorDescription(),
              u"The update server returned an invalid SHA-256 checksum.");
}

TEST(UpdateManifestError, SuggestsNothing) {
    for (const Rule rule : {Rule::invalidVersion, Rule::invalidBuild, Rule::insecureDownloadURL, Rule::invalidChecksum})
        EXPECT_EQ(UpdateManifestError(rule).recoverySuggestion(), std::nullopt);
}

TEST(UpdateManifestError, CanBeKeptInAHashedSet) {
    std::unordered_set<UpdateManifestError> errors;
    for (const Rule rule : {Rule::invalidVersion, Rule::invalidBuild, Rule::invalidVersion})
        errors.insert(UpdateManifestError(rule));
    EXPECT_EQ(errors.size(), 2U);
}

} // namespace
} // namespace corvanta
