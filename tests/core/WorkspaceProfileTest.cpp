// SPDX-License-Identifier: MIT
#include "workspace/WorkspaceProfile.h"

#include "Printing.h"
#include "support/JsonEncoding.h"

#include <gtest/gtest.h>

#include <QJsonObject>

#include <limits>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;

WorkspaceProfile fullProfile() {
    return {
        .selectedDeviceUDID = u"UDID-1"_s,
        .pageURL = u"https://example.com/a?b=/c"_s,
        .coordinate = Coordinate{37.33182, -122.03118},
        .locationName = u"Café “Nord”"_s,
        .columnRatios = {0.2, 0.3, 0.5},
        .lastUsedAt = {785'000'000.123456},
    };
}

TEST(WorkspaceProfile, IsFreshWithItsDefaults) {
    const WorkspaceProfile profile = WorkspaceProfile::fresh({12.5});
    EXPECT_EQ(profile.selectedDeviceUDID, std::nullopt);
    EXPECT_EQ(profile.pageURL, u"http://localhost:3000");
    EXPECT_EQ(profile.coordinate, std::nullopt);
    EXPECT_EQ(profile.locationName, u"Dropped Pin");
    EXPECT_EQ(profile.columnRatios, (ColumnRatios{0.25, 0.3, 0.45}));
    EXPECT_EQ(profile.lastUsedAt, Date{12.5});
}

TEST(WorkspaceProfile, HasOneKeyForEachField) {
    EXPECT_EQ(encodeJson(fullProfile()).keys(),
              (QStringList{u"columnRatios"_s, u"coordinate"_s, u"lastUsedAt"_s, u"locationName"_s, u"pageURL"_s,
                           u"selectedDeviceUDID"_s}));
}

TEST(WorkspaceProfile, LeavesAbsentFieldsOut) {
    EXPECT_EQ(encodeJson(WorkspaceProfile::fresh({})).keys(),
              (QStringList{u"columnRatios"_s, u"lastUsedAt"_s, u"locationName"_s, u"pageURL"_s}));
}

TEST(WorkspaceProfile, ReadsWhatItWrote) {
    for (const WorkspaceProfile& profile : {fullProfile(), WorkspaceProfile::fresh({1.25})})
        EXPECT_EQ(decodeWorkspaceProfile(JsonDecoder::parse(jsonDocument(encodeJson(profile)))), profile);
}

TEST(WorkspaceProfile, ReadsAnyKeyOrderEscapedSlashesAndNulls) {
    const WorkspaceProfile profile = decodeWorkspaceProfile(JsonDecoder::parse(
        R"({"lastUsedAt":7,"columnRatios":{"inspector":5,"controls":2,"simulator":3},"coordinate":null,)"
        R"("pageURL":"http:\/\/a\/b","selectedDeviceUDID":null,"locationName":"","later":[1]})"));
    EXPECT_EQ(profile, (WorkspaceProfile{std::nullopt, u"http://a/b"_s, std::nullopt, QString(), {2, 3, 5}, {7}}));
}

TEST(WorkspaceProfile, NeedsEachOfItsFourRequiredKeys) {
    for (const QString& key : {u"pageURL"_s, u"locationName"_s, u"columnRatios"_s, u"lastUsedAt"_s}) {
        QJsonObject object = encodeJson(fullProfile());
        object.remove(key);
        EXPECT_THROW((void)decodeWorkspaceProfile(JsonDecoder(object)), JsonDecodingError) << key.toStdString();
        object.insert(key, QJsonValue::Null);
        EXPECT_THROW((void)decodeWorkspaceProfile(JsonDecoder(object)), JsonDecodingError) << key.toStdString();
    }
}

TEST(WorkspaceProfile, RefusesAnOptionalFieldOfAnotherType) {
    QJsonObject object = encodeJson(fullProfile());
    object.insert(u"coordinate"_s, QJsonObject{{u"latitude"_s, 1}});
    EXPECT_THROW((void)decodeWorkspaceProfile(JsonDecoder(object)), JsonDecodingError);
    object = encodeJson(fullProfile());
    object.insert(u"selectedDeviceUDID"_s, 5);
    EXPECT_THROW((void)decodeWorkspaceProfile(JsonDecoder(object)), JsonDecodingError);
}

TEST(WorkspaceProfile, RefusesToWriteNumbersThatAreNotFinite) {
    WorkspaceProfile profile = fullProfile();
    profile.columnRatios.simulator = std::numeric_limits<double>::infinity();
    EXPECT_THROW((void)encodeJson(profile), JsonEncodingError);
}

} // namespace
} // namespace corvanta
