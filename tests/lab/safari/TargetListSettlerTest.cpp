// SPDX-License-Identifier: MIT
#include "TargetListSettler.h"

#include <gtest/gtest.h>

namespace corvanta::lab {

namespace {

using namespace std::chrono_literals;

constexpr TargetListSettler::TimePoint start{};
const InspectableTargets nothing{};
const InspectableTargets one{{{1, 1}, "", "http://one.test/"}};
const InspectableTargets both{{{1, 1}, "", "http://one.test/"}, {{1, 2}, "", "http://two.test/"}};
const InspectableTargets withBlank{{{1, 1}, "", "http://one.test/"}, {{1, 2}, "", "about:blank"}};

} // namespace

TEST(TargetListSettler, HasNothingToSayAtFirst) {
    TargetListSettler settler;

    EXPECT_FALSE(settler.due());
    EXPECT_FALSE(settler.take(start + 1h));
}

TEST(TargetListSettler, TakesAListAfterTheQuietTime) {
    TargetListSettler settler;
    settler.update(one, start);

    EXPECT_FALSE(settler.take(start + 49ms));
    EXPECT_EQ(settler.take(start + 50ms), one);
    EXPECT_FALSE(settler.take(start + 1h));
}

TEST(TargetListSettler, WaitsAgainAfterAFurtherChange) {
    TargetListSettler settler;
    settler.update(one, start);
    settler.update(both, start + 40ms);

    EXPECT_FALSE(settler.take(start + 60ms));
    EXPECT_EQ(settler.take(start + 90ms), both);
}

TEST(TargetListSettler, DoesNotWaitAgainForARepeatedList) {
    TargetListSettler settler;
    settler.update(one, start);
    settler.update(one, start + 40ms);

    EXPECT_EQ(settler.take(start + 50ms), one);
}

TEST(TargetListSettler, ForgetsAChangeThatWasTakenBack) {
    TargetListSettler settler;
    settler.update(one, start);
    ASSERT_TRUE(settler.take(start + 50ms));
    settler.update(both, start + 100ms);
    settler.update(one, start + 110ms);

    EXPECT_FALSE(settler.due());
}

TEST(TargetListSettler, WaitsNoLongerThanItsLimit) {
    TargetListSettler settler;
    for (int step = 0; step <= 20; ++step)
        settler.update(step % 2 == 0 ? one : both, start + step * 10ms);

    EXPECT_EQ(settler.due(), start + 200ms);
    EXPECT_EQ(settler.take(start + 200ms), one);
}

TEST(TargetListSettler, LeavesOutANewPageUntilItHasAnAddress) {
    TargetListSettler settler;
    settler.update(withBlank, start);
    EXPECT_EQ(settler.take(start + 50ms), one);
    settler.update(both, start + 800ms);

    EXPECT_EQ(settler.take(start + 850ms), both);
}

TEST(TargetListSettler, HasNothingToSayOfAPageThatIsLeftOut) {
    TargetListSettler settler;
    settler.update(one, start);
    ASSERT_TRUE(settler.take(start + 50ms));
    settler.update(withBlank, start + 100ms);

    EXPECT_EQ(settler.due(), start + 5100ms);
    EXPECT_FALSE(settler.take(start + 5099ms));
}

TEST(TargetListSettler, ListsAPageWithoutAddressInTheEnd) {
    TargetListSettler settler;
    settler.update(withBlank, start);
    ASSERT_TRUE(settler.take(start + 50ms));

    EXPECT_EQ(settler.take(start + 5000ms), withBlank);
    EXPECT_FALSE(settler.due());
}

TEST(TargetListSettler, ForgetsAPageThatClosesWithoutAnAddress) {
    TargetListSettler settler;
    settler.update(one, start);
    ASSERT_TRUE(settler.take(start + 50ms));
    settler.update(withBlank, start + 100ms);
    settler.update(one, start + 200ms);

    EXPECT_FALSE(settler.due());
}

TEST(TargetListSettler, KeepsAPageThatBecomesBlank) {
    TargetListSettler settler;
    settler.update(both, start);
    ASSERT_TRUE(settler.take(start + 50ms));
    settler.update(withBlank, start + 100ms);

    EXPECT_EQ(settler.take(start + 150ms), withBlank);
}

TEST(TargetListSettler, SettlesOnNoPages) {
    TargetListSettler settler;
    settler.update(one, start);
    ASSERT_TRUE(settler.take(start + 50ms));
    settler.update(nothing, start + 100ms);

    EXPECT_EQ(settler.take(start + 150ms), nothing);
}

} // namespace corvanta::lab
