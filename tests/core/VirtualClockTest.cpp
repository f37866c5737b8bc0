// SPDX-License-Identifier: MIT
#include "VirtualClock.h"

#include "TaskWaiting.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace corvanta {
namespace {

using namespace std::chrono_literals;
using testing::VirtualClock;
using testing::WatchedTask;

QCoro::Task<void> noteAfter(VirtualClock* clock, Clock::Duration duration, std::string* notes, char note) {
    co_await clock->sleepFor(duration);
    notes->push_back(note);
}

TEST(VirtualClock, MovesOnlyWhenToldTo) {
    VirtualClock clock;
    EXPECT_EQ(clock.elapsed(), 0ns);
    clock.advance(2s);
    EXPECT_EQ(clock.elapsed(), 2s);
    EXPECT_EQ(clock.wallClockNow().secondsSinceReferenceDate, 800'000'002.0);
}

TEST(VirtualClock, WakesSleepersInTheOrderOfTheirTimes) {
    VirtualClock clock;
    std::string notes;
    const WatchedTask<void> late(noteAfter(&clock, 3s, &notes, 'c'));
    const WatchedTask<void> early(noteAfter(&clock, 1s, &notes, 'a'));
    const WatchedTask<void> alsoEarly(noteAfter(&clock, 1s, &notes, 'b'));
    EXPECT_EQ(clock.sleepers(), 3U);
    clock.advance(2s);
    EXPECT_EQ(notes, "ab");
    clock.advance(1s);
    EXPECT_EQ(notes, "abc");
    EXPECT_EQ(clock.requestedSleeps(), (std::vector<Clock::Duration>{3s, 1s, 1s}));
}

TEST(VirtualClock, DoesNotWakeASleeperBeforeItsTime) {
    VirtualClock clock;
    const WatchedTask<SleepResult> sleep(clock.sleepFor(1s));
    clock.advance(1s - 1ns);
    EXPECT_FALSE(sleep.isDone());
    clock.advance(1ns);
    EXPECT_EQ(sleep.result(), SleepResult::elapsed);
}

TEST(VirtualClock, StepsToTheNextSleeper) {
    VirtualClock clock;
    EXPECT_FALSE(clock.step());
    const WatchedTask<SleepResult> sleep(clock.sleepFor(90min));
    EXPECT_TRUE(clock.step());
    EXPECT_TRUE(sleep.isDone());
    EXPECT_EQ(clock.elapsed(), 90min);
}

TEST(VirtualClock, WakesACancelledSleeperWhenItSettles) {
    VirtualClock clock;
    CancellationSource source;
    const WatchedTask<SleepResult> sleep(clock.sleepFor(1s, source.token()));
    source.cancel();
    EXPECT_FALSE(sleep.isDone());
    clock.settle();
    EXPECT_EQ(sleep.result(), SleepResult::cancelled);
    EXPECT_EQ(clock.elapsed(), 0ns);
}

TEST(VirtualClock, ReportsATokenThatIsCancelledAlready) {
    VirtualClock clock;
    CancellationSource source;
    source.cancel();
    const WatchedTask<SleepResult> sleep(clock.sleepFor(1s, source.token()));
    EXPECT_FALSE(sleep.isDone());
    clock.settle();
    EXPECT_EQ(sleep.result(), SleepResult::cancelled);
}

TEST(VirtualClock, EndsEverySleepWithItself) {
    auto clock = std::make_unique<VirtualClock>();
    const WatchedTask<SleepResult> sleep(clock->sleepFor(1s));
    clock.reset();
    EXPECT_EQ(sleep.result(), SleepResult::cancelled);
}

TEST(VirtualClock, NumbersItsIdentities) {
    VirtualClock clock;
    EXPECT_EQ(clock.freshUUID(), QUuid(QStringLiteral("00000000-0000-4000-8000-000000000001")));
    EXPECT_EQ(clock.freshUUID(), QUuid(QStringLiteral("00000000-0000-4000-8000-000000000002")));
}

} // namespace
} // namespace corvanta
