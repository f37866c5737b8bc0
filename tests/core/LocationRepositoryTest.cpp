// SPDX-License-Identifier: MIT
#include "locations/LocationRepository.h"

#include "MemoryPreferencesStore.h"
#include "Printing.h"
#include "VirtualClock.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <limits>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class LocationRepositoryTest : public ::testing::Test {
protected:
    [[nodiscard]] static QStringList names(const std::vector<StoredLocation>& list) {
        QStringList result;
        for (const StoredLocation& location : list)
            result.append(location.name);
        return result;
    }

    static constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

    testing::MemoryPreferencesStore defaults;
    testing::VirtualClock clock;
    QString favoritesKey = u"favoriteLocations"_s;
    QString recentsKey = u"recentLocations"_s;
    LocationRepository repository{defaults, favoritesKey, recentsKey, 10, clock};
};

TEST_F(LocationRepositoryTest, LoadsEmptyListsWithoutStoredData) {
    EXPECT_TRUE(repository.loadFavorites().empty());
    EXPECT_TRUE(repository.loadRecents().empty());
}

TEST_F(LocationRepositoryTest, AddsAFavoriteAsGivenWithAFreshIdentityAndTheTime) {
    clock.advance(5s);
    const auto list = repository.addFavorite(u"  "_s, {91, -200});
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(
        list[0],
        (StoredLocation{QUuid(u"00000000-0000-4000-8000-000000000001"_s), u"  "_s, {91, -200}, clock.wallClockNow()}));
    EXPECT_EQ(repository.loadFavorites(), list);
    EXPECT_TRUE(repository.loadRecents().empty());
}

TEST_F(LocationRepositoryTest, KeepsEqualFavoritesTheLaterOneFirst) {
    const auto first = repository.addFavorite(u"Home"_s, {1, 2});
    const auto both = repository.addFavorite(u"Home"_s, {1, 2});
    ASSERT_EQ(both.size(), 2U);
    EXPECT_EQ(both[1], first[0]);
    EXPECT_NE(both[0].id, first[0].id);
}

TEST_F(LocationRepositoryTest, LimitsNoFavorites) {
    for (int count = 0; count < 25; ++count)
        repository.addFavorite(QString::number(count), {0, 0});
    EXPECT_EQ(repository.loadFavorites().size(), 25U);
}

TEST_F(LocationRepositoryTest, DeletesAFavoriteByItsIdentity) {
    repository.addFavorite(u"a"_s, {0, 0});
    const QUuid middle = repository.addFavorite(u"b"_s, {0, 0}).front().id;
    repository.addFavorite(u"c"_s, {0, 0});
    EXPECT_EQ(names(repository.deleteFavorite(middle)), (QStringList{u"c"_s, u"a"_s}));
    EXPECT_EQ(names(repository.loadFavorites()), (QStringList{u"c"_s, u"a"_s}));
}

TEST_F(LocationRepositoryTest, RewritesTheFavoritesAlsoForAnUnknownIdentity) {
    const auto list = repository.addFavorite(u"a"_s, {0, 0});
    EXPECT_EQ(repository.deleteFavorite(QUuid::createUuid()), list);
    EXPECT_EQ(defaults.writtenKeys(), (std::vector<QString>{favoritesKey, favoritesKey}));
}

TEST_F(LocationRepositoryTest, ReplacesARecentWithinTheTolerance) {
    repository.recordRecent(u"old"_s, {10, 20});
    EXPECT_EQ(names(repository.recordRecent(u"new"_s, {10.0000005, 20})), QStringList{u"new"_s});
}

TEST_F(LocationRepositoryTest, KeepsARecentBeyondTheTolerance) {
    repository.recordRecent(u"old"_s, {10, 20});
    EXPECT_EQ(names(repository.recordRecent(u"new"_s, {10.000002, 20})), (QStringList{u"new"_s, u"old"_s}));
    EXPECT_EQ(repository.recordRecent(u"east"_s, {10, 20.000002}).size(), 3U);
}

TEST_F(LocationRepositoryTest, KeepsTenRecentsTheNewestFirst) {
    for (int count = 1; count <= 11; ++count)
        repository.recordRecent(QString::number(count), {static_cast<double>(count), 0});
    EXPECT_EQ(names(repository.loadRecents()), QString(u"11 10 9 8 7 6 5 4 3 2"_s).split(u' '));
}

TEST_F(LocationRepositoryTest, MovesAKnownPointToTheFrontAsANewEntry) {
    const StoredLocation first = repository.recordRecent(u"first"_s, {1, 1}).front();
    repository.recordRecent(u"second"_s, {2, 2});
    clock.advance(1min);
    const auto list = repository.recordRecent(u"renamed"_s, {1, 1});
    EXPECT_EQ(names(list), (QStringList{u"renamed"_s, u"second"_s}));
    EXPECT_NE(list[0].id, first.id);
    EXPECT_EQ(list[0].createdAt, clock.wallClockNow());
}

TEST_F(LocationRepositoryTest, ReplacesEveryEntryForAPointThatIsNoNumberAndStoresNothing) {
    repository.recordRecent(u"old"_s, {1, 1});
    const auto stored = defaults.data(recentsKey);
    EXPECT_EQ(names(repository.recordRecent(u"nowhere"_s, {notANumber, 1})), QStringList{u"nowhere"_s});
    EXPECT_EQ(defaults.data(recentsKey), stored);
    EXPECT_EQ(defaults.writtenKeys().size(), 1U);
}

TEST_F(LocationRepositoryTest, ReadsAListWithOneIncompleteElementAsEmpty) {
    const QByteArray stored =
        R"([{"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","name":"a","coordinate":{"latitude":1,"longitude":2},"createdAt":3},)"
        R"({"id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F","name":"b","coordinate":{"latitude":1,"longitude":2}}])";
    defaults.setData(favoritesKey, stored);
    EXPECT_TRUE(repository.loadFavorites().empty());
    EXPECT_EQ(defaults.data(favoritesKey), stored);
    EXPECT_EQ(names(repository.addFavorite(u"c"_s, {0, 0})), QStringList{u"c"_s});
}

TEST_F(LocationRepositoryTest, ReadsDataOfAnotherShapeAsEmpty) {
    for (const QByteArray& stored :
         {QByteArray(), QByteArray("{}"), QByteArray("[1]"), QByteArray("[null]"), QByteArray("\xFF")}) {
        defaults.setData(recentsKey, stored);
        EXPECT_TRUE(repository.loadRecents().empty()) << stored.toStdString();
    }
}

TEST_F(LocationRepositoryTest, ReadsTheFormOfTheOtherCoder) {
    defaults.setData(favoritesKey,
                     R"([{"createdAt":757382400.25,"coordinate":{"longitude":-122.03118,"latitude":37.33182},)"
                     R"("name":"A\/B","id":"E621E1F8-C36C-495A-93FC-0C247A3E6E5F"}])");
    EXPECT_EQ(
        repository.loadFavorites(),
        (std::vector<StoredLocation>{
            {QUuid(u"E621E1F8-C36C-495A-93FC-0C247A3E6E5F"_s), u"A/B"_s, {37.33182, -122.03118}, {757382400.25}}}));
}

TEST_F(LocationRepositoryTest, WritesAnArrayOfObjectsWithUpperCaseIdentities) {
    repository.addFavorite(u"a"_s, {1.5, -2});
    EXPECT_EQ(defaults.data(favoritesKey), R"([{"coordinate":{"latitude":1.5,"longitude":-2},"createdAt":800000000,)"
                                           R"("id":"00000000-0000-4000-8000-000000000001","name":"a"}])");
}

TEST_F(LocationRepositoryTest, ReadsTheListAfreshEachTime) {
    LocationRepository other(defaults, favoritesKey, recentsKey, 10, clock);
    other.addFavorite(u"other"_s, {0, 0});
    EXPECT_EQ(names(repository.addFavorite(u"mine"_s, {0, 0})), (QStringList{u"mine"_s, u"other"_s}));
}

} // namespace
} // namespace corvanta
