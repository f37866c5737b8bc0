// SPDX-License-Identifier: MIT
#include "support/SystemClock.h"

#include "TaskWaiting.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace std::chrono_literals;
using testing::runTask;
using testing::WatchedTask;

TEST(SystemClock, NeverRunsBackwards) {
    const SystemClock clock;
    const auto before = clock.now();
    EXPECT_GE(clock.now(), before);
}

TEST(SystemClock, CountsTheWallClockFromTheReferenceDate) {
    // 2025-01-01 and 2100-01-01 in seconds since 2001-01-01.
    const Date now = SystemClock().wallClockNow();
    EXPECT_GT(now.secondsSinceReferenceDate, 757'382'400.0);
    EXPECT_LT(now.secondsSinceReferenceDate, 3'124'224'000.0);
}

TEST(SystemClock, HandsOutDifferentIdentities) {
    SystemClock clock;
    const QUuid first = clock.freshUUID();
    EXPECT_FALSE(first.isNull());
    EXPECT_EQ(first.version(), QUuid::Random);
    EXPECT_NE(first, clock.freshUUID());
}

TEST(SystemClock, EndsASleepOfNoLengthAtTheNextTurn) {
    SystemClock clock;
    const WatchedTask<SleepResult> sleep(clock.sleepFor(Clock::Duration::zero()));
    EXPECT_FALSE(sleep.isDone());
    EXPECT_TRUE(testing::waitUntil([&sleep] { return sleep.isDone(); }));
    EXPECT_EQ(sleep.result(), SleepResult::elapsed);
}

TEST(SystemClock, TakesANegativeDurationAsNone) {
    SystemClock clock;
    EXPECT_EQ(runTask(clock.sleepFor(std::chrono::hours(-1))), SleepResult::elapsed);
}

TEST(SystemClock, EndsACancelledSleepAtALaterTurn) {
    SystemClock clock;
    CancellationSource source;
    const WatchedTask<SleepResult> sleep(clock.sleepFor(std::chrono::hours(1), source.token()));
    source.cancel();
    EXPECT_FALSE(sleep.isDone());
    EXPECT_TRUE(testing::waitUntil([&sleep] { return sleep.isDone(); }));
    EXPECT_EQ(sleep.result(), SleepResult::cancelled);
}

TEST(SystemClock, EndsASleepWhoseTokenIsCancelledAlready) {
    SystemClock clock;
    CancellationSource source;
    source.cancel();
    EXPECT_EQ(runTask(clock.sleepFor(std::chrono::hours(1), source.token())), SleepResult::cancelled);
}

// The two that really sleep, for what no virtual clock can show: that the timers are this machine's.
TEST(SystemClock, SleepsAtLeastAsLongAsItIsTold) {
    SystemClock clock;
    for (const Clock::Duration duration : {Clock::Duration(25ms), Clock::Duration(20'300us)}) {
        const auto before = clock.now();
        EXPECT_EQ(runTask(clock.sleepFor(duration)), SleepResult::elapsed);
        EXPECT_GE(clock.now() - before, duration);
    }
}

TEST(SystemClock, CancelsASleepThatIsUnderWayAndNoOther) {
    SystemClock clock;
    CancellationSource source;
    CancellationSource other;
    const WatchedTask<SleepResult> cancelled(clock.sleepFor(std::chrono::hours(1), source.token()));
    const WatchedTask<SleepResult> untouched(clock.sleepFor(30ms, other.token()));
    EXPECT_EQ(runTask(clock.sleepFor(20ms)), SleepResult::elapsed);
    EXPECT_FALSE(cancelled.isDone());
    source.cancel();
    EXPECT_FALSE(cancelled.isDone());
    ASSERT_TRUE(testing::waitUntil([&cancelled] { return cancelled.isDone(); }));
    EXPECT_EQ(cancelled.result(), SleepResult::cancelled);
    ASSERT_TRUE(testing::waitUntil([&untouched] { return untouched.isDone(); }));
    EXPECT_EQ(untouched.result(), SleepResult::elapsed);
}

} // namespace
} // namespace corvanta
