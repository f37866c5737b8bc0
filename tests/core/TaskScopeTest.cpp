// SPDX-License-Identifier: MIT
#include "support/TaskScope.h"

#include "FakeError.h"
#include "TaskWaiting.h"
#include "TestMessages.h"
#include "VirtualClock.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using testing::MessageCollector;
using testing::VirtualClock;
using testing::WatchedTask;

QCoro::Task<void> noteAfter(VirtualClock* clock, Clock::Duration duration, std::string* notes, char note) {
    co_await clock->sleepFor(duration);
    notes->push_back(note);
}

QCoro::Task<void> failAfter(VirtualClock* clock, Clock::Duration duration) {
    co_await clock->sleepFor(duration);
    throw testing::FakeError(u"The kettle is empty."_s);
}

QCoro::Task<void> failAtOnce() {
    throw testing::FakeError(u"The kettle is empty."_s);
    co_return;
}

/// Joins, and then starts another task.
QCoro::Task<void> continueAfterJoin(TaskScope* scope, VirtualClock* clock, std::string* notes) {
    co_await scope->join();
    notes->push_back('j');
    scope->start(noteAfter(clock, 1s, notes, 'x'));
}

class TaskScopeTest : public ::testing::Test {
protected:
    [[nodiscard]] WatchedTask<void> join() { return WatchedTask(scope.join()); }

    VirtualClock clock;
    std::string notes;
    TaskScope scope;
};

TEST_F(TaskScopeTest, JoinsAtOnceWhenItIsEmpty) {
    EXPECT_EQ(scope.size(), 0U);
    EXPECT_TRUE(join().isDone());
}

TEST_F(TaskScopeTest, CountsATaskUntilItHasEnded) {
    scope.start(noteAfter(&clock, 1s, &notes, 'a'));
    scope.start(noteAfter(&clock, 2s, &notes, 'b'));
    EXPECT_EQ(scope.size(), 2U);
    clock.advance(1s);
    EXPECT_EQ(scope.size(), 1U);
    clock.advance(1s);
    EXPECT_EQ(scope.size(), 0U);
    EXPECT_EQ(notes, "ab");
}

TEST_F(TaskScopeTest, JoinsOnceTheLastTaskHasEnded) {
    scope.start(noteAfter(&clock, 2s, &notes, 'a'));
    scope.start(noteAfter(&clock, 1s, &notes, 'b'));
    const auto joined = join();
    clock.advance(2s - 1ms);
    EXPECT_FALSE(joined.isDone());
    clock.advance(1ms);
    EXPECT_TRUE(joined.isDone());
}

TEST_F(TaskScopeTest, JoinsWhoeverWaits) {
    scope.start(noteAfter(&clock, 1s, &notes, 'a'));
    const auto one = join();
    const auto two = join();
    clock.advance(1s);
    EXPECT_TRUE(one.isDone());
    EXPECT_TRUE(two.isDone());
}

TEST_F(TaskScopeTest, WaitsForATaskThatIsStartedMeanwhile) {
    scope.start(noteAfter(&clock, 1s, &notes, 'a'));
    const auto joined = join();
    scope.start(noteAfter(&clock, 2s, &notes, 'b'));
    clock.advance(1s);
    EXPECT_FALSE(joined.isDone());
    clock.advance(1s);
    EXPECT_TRUE(joined.isDone());
}

TEST_F(TaskScopeTest, WaitsForATaskThatAnotherWaiterStartsAtTheEnd) {
    scope.start(noteAfter(&clock, 1s, &notes, 'a'));
    const WatchedTask<void> first(continueAfterJoin(&scope, &clock, &notes));
    const auto second = join();
    clock.advance(1s);
    EXPECT_EQ(notes, "aj");
    EXPECT_FALSE(second.isDone());
    clock.advance(1s);
    EXPECT_EQ(notes, "ajx");
    EXPECT_TRUE(second.isDone());
}

TEST_F(TaskScopeTest, ReportsATaskThatThrowsAndCountsItAsEnded) {
    const MessageCollector collector;
    scope.start(failAfter(&clock, 1s));
    scope.start(noteAfter(&clock, 2s, &notes, 'a'));
    const auto joined = join();
    clock.advance(1s);
    EXPECT_THAT(collector.messages(),
                ElementsAre("critical: A background task ended with an error: The kettle is empty."));
    EXPECT_EQ(scope.size(), 1U);
    EXPECT_FALSE(joined.isDone());
    clock.advance(1s);
    EXPECT_TRUE(joined.isDone());
    EXPECT_EQ(collector.messages().size(), 1U);
}

TEST_F(TaskScopeTest, ReportsATaskThatThrowsBeforeItFirstWaits) {
    const MessageCollector collector;
    scope.start(failAtOnce());
    EXPECT_THAT(collector.messages(),
                ElementsAre("critical: A background task ended with an error: The kettle is empty."));
    EXPECT_EQ(scope.size(), 0U);
    EXPECT_TRUE(join().isDone());
}

TEST(TaskScope, LeavesItsTasksRunningWhenItGoes) {
    VirtualClock clock;
    std::string notes;
    std::optional<TaskScope> scope(std::in_place);
    scope->start(noteAfter(&clock, 1s, &notes, 'a'));
    scope.reset();
    clock.advance(1s);
    EXPECT_EQ(notes, "a");
}

} // namespace
} // namespace corvanta
