// SPDX-License-Identifier: MIT
#include "workspace/ProfileRepository.h"

#include "MemoryPreferencesStore.h"
#include "Printing.h"
#include "VirtualClock.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <limits>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class ProfileRepositoryTest : public ::testing::Test {
protected:
    [[nodiscard]] WorkspaceProfile freshNow() const { return WorkspaceProfile::fresh(clock.wallClockNow()); }

    testing::MemoryPreferencesStore defaults;
    testing::VirtualClock clock;
    QString key = u"workspaceProfile"_s;
    ProfileRepository repository{defaults, key, clock};
};

TEST_F(ProfileRepositoryTest, LoadsAFreshProfileOfThisMomentWithoutStoredData) {
    clock.advance(90s);
    const WorkspaceProfile profile = repository.load();
    EXPECT_EQ(profile.pageURL, u"http://localhost:3000");
    EXPECT_EQ(profile.locationName, u"Dropped Pin");
    EXPECT_EQ(profile.columnRatios, (ColumnRatios{0.25, 0.3, 0.45}));
    EXPECT_EQ(profile.selectedDeviceUDID, std::nullopt);
    EXPECT_EQ(profile.coordinate, std::nullopt);
    EXPECT_EQ(profile.lastUsedAt, clock.wallClockNow());
    EXPECT_TRUE(defaults.writtenKeys().empty());
}

TEST_F(ProfileRepositoryTest, LoadsWhatItSaved) {
    const WorkspaceProfile profile{u"UDID"_s, u"http://a/b"_s, Coordinate{51.5, -0.1}, u"London"_s, {1, 2, 3}, {5.5}};
    repository.save(profile);
    EXPECT_EQ(repository.load(), profile);
}

TEST_F(ProfileRepositoryTest, SavesNeitherDeviceNorCoordinateWhenThereIsNone) {
    repository.save(freshNow());
    const QJsonObject object = QJsonDocument::fromJson(*defaults.data(key)).object();
    EXPECT_FALSE(object.contains(u"selectedDeviceUDID"_s));
    EXPECT_FALSE(object.contains(u"coordinate"_s));
    EXPECT_TRUE(object.contains(u"pageURL"_s));
}

TEST_F(ProfileRepositoryTest, FallsBackAsAWholeWhenARequiredKeyIsMissing) {
    const QByteArray stored = R"({"pageURL":"http://a","locationName":"Here","lastUsedAt":1})";
    defaults.setData(key, stored);
    EXPECT_EQ(repository.load(), freshNow());
    EXPECT_EQ(defaults.data(key), stored);
}

TEST_F(ProfileRepositoryTest, FallsBackForDataThatIsNoProfile) {
    for (const QByteArray& stored : {QByteArray(), QByteArray("{"), QByteArray("[]"), QByteArray("\xFF\xFE")}) {
        defaults.setData(key, stored);
        EXPECT_EQ(repository.load(), freshNow()) << stored.toStdString();
    }
}

TEST_F(ProfileRepositoryTest, ReplacesUnreadableDataAtTheNextSave) {
    defaults.setData(key, "broken");
    repository.save(freshNow());
    EXPECT_EQ(repository.load(), freshNow());
}

TEST_F(ProfileRepositoryTest, WritesNothingWhenANumberIsNotFinite) {
    repository.save(freshNow());
    const auto before = defaults.data(key);
    WorkspaceProfile profile = freshNow();
    profile.coordinate = Coordinate{std::numeric_limits<double>::quiet_NaN(), 0};
    repository.save(profile);
    EXPECT_EQ(defaults.data(key), before);
    EXPECT_EQ(defaults.writtenKeys().size(), 1U);
}

TEST_F(ProfileRepositoryTest, KeepsToItsKey) {
    ProfileRepository other(defaults, u"other"_s, clock);
    other.save(WorkspaceProfile::fresh({1}));
    EXPECT_EQ(repository.load(), freshNow());
    EXPECT_EQ(defaults.writtenKeys(), std::vector<QString>{u"other"_s});
}

} // namespace
} // namespace corvanta
