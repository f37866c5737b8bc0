// SPDX-License-Identifier: MIT
#include "shell/AppIdentity.h"

#include "Printing.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

QString support(const QString& address) {
    const auto url = AppIdentity::supportEmailURL(address);
    return url ? url->absoluteString() : u"nothing"_s;
}

TEST(AppIdentity, ShowsVersionAndBuildNumber) {
    EXPECT_EQ(AppIdentity::versionLine(u"1.4"_s, u"27"_s), u"Corvanta 1.4 (27)");
}

TEST(AppIdentity, IsALocalDevelopmentVersionUnlessTheBuildNamesOne) {
    EXPECT_EQ(AppIdentity::versionLine({}, {}), u"Corvanta Development (Local)");
    EXPECT_EQ(AppIdentity::versionLine(u"1.4"_s, {}), u"Corvanta 1.4 (Local)");
    EXPECT_EQ(AppIdentity::versionLine({}, u"27"_s), u"Corvanta Development (27)");
}

TEST(AppIdentity, TakesItsValuesFromTheBuild) {
    const QString buildNumber = QStringLiteral(CORVANTA_TEST_BUILD_NUMBER);
    EXPECT_EQ(AppIdentity::version(), QStringLiteral(CORVANTA_TEST_VERSION));
    EXPECT_EQ(AppIdentity::buildNumber(), buildNumber.isEmpty() ? u"Local"_s : buildNumber);
    EXPECT_EQ(AppIdentity::websiteURL().absoluteString(), QStringLiteral(CORVANTA_TEST_WEBSITE_URL));
    EXPECT_EQ(AppIdentity::updateManifestURL().absoluteString(), QStringLiteral(CORVANTA_TEST_UPDATE_MANIFEST_URL));
    EXPECT_EQ(AppIdentity::supportEmailURL(), AppIdentity::supportEmailURL(QStringLiteral(CORVANTA_TEST_SUPPORT)));
}

TEST(AppIdentity, FindsTheUpdateManifestOverHTTPS) {
    EXPECT_EQ(AppIdentity::updateManifestURL().scheme(), u"https"_s);
    EXPECT_EQ(AppIdentity::updateManifestURL().path(), u"/updates.json");
}

TEST(AppIdentity, WritesToTheSupportWithASubject) {
    EXPECT_EQ(support(u"support@corvanta.example"_s), u"mailto:support@corvanta.example?subject=Corvanta%20Support");
}

TEST(AppIdentity, EncodesWhatWouldEndTheSupportAddress) {
    EXPECT_EQ(support(u"a?b#c@d.example"_s), u"mailto:a%3Fb%23c@d.example?subject=Corvanta%20Support");
    EXPECT_EQ(support(u"50%41@d.example"_s), u"mailto:50%2541@d.example?subject=Corvanta%20Support");
}

TEST(AppIdentity, HasNoSupportAddressWhereItMakesNoURL) {
    EXPECT_EQ(support(u""_s), u"nothing");
    EXPECT_EQ(support(u"//support@corvanta.example"_s), u"nothing");
}

} // namespace
} // namespace corvanta
