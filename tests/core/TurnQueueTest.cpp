// SPDX-License-Identifier: MIT
#include "support/TurnQueue.h"

#include "FakeError.h"
#include "TaskWaiting.h"
#include "VirtualClock.h"

#include <gtest/gtest.h>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using testing::VirtualClock;
using testing::WatchedTask;

class TurnQueueTest : public ::testing::Test {
protected:
    /// Takes a turn of one second and notes its beginning in small and its end in capital letters.
    [[nodiscard]] WatchedTask<void> work(char note) { return WatchedTask(run(&turns, &clock, &notes, note)); }

    /// The same, but for an error at the end.
    [[nodiscard]] WatchedTask<void> fail(char note) { return WatchedTask(runAndFail(&turns, &clock, &notes, note)); }

    VirtualClock clock;
    std::string notes;
    TurnQueue turns;

private:
    static QCoro::Task<void> run(TurnQueue* turns, VirtualClock* clock, std::string* notes, char note) {
        const auto turn = co_await turns->next();
        notes->push_back(note);
        co_await clock->sleepFor(1s);
        notes->push_back(static_cast<char>(note - 'a' + 'A'));
    }

    static QCoro::Task<void> runAndFail(TurnQueue* turns, VirtualClock* clock, std::string* notes, char note) {
        const auto turn = co_await turns->next();
        notes->push_back(note);
        co_await clock->sleepFor(1s);
        throw testing::FakeError(u"The kettle is empty."_s);
    }
};

TEST_F(TurnQueueTest, GivesTheFirstTurnAtOnce) {
    const auto first = work('a');
    EXPECT_EQ(notes, "a");
    clock.advance(1s);
    EXPECT_TRUE(first.isDone());
}

TEST_F(TurnQueueTest, GivesOneTurnAtATimeInTheOrderOfAsking) {
    const auto first = work('a');
    const auto second = work('b');
    const auto third = work('c');
    EXPECT_EQ(notes, "a");
    clock.advance(1s);
    EXPECT_EQ(notes, "aAb");
    clock.advance(1s);
    EXPECT_EQ(notes, "aAbBc");
    clock.advance(1s);
    EXPECT_EQ(notes, "aAbBcC");
    EXPECT_TRUE(first.isDone() && second.isDone() && third.isDone());
}

TEST_F(TurnQueueTest, LetsALatecomerWaitBehindWhoeverWaitsAlready) {
    const auto first = work('a');
    const auto second = work('b');
    clock.advance(1s);
    const auto late = work('c');
    EXPECT_EQ(notes, "aAb");
    clock.advance(1s);
    EXPECT_EQ(notes, "aAbBc");
    clock.advance(1s);
    EXPECT_TRUE(late.isDone());
}

TEST_F(TurnQueueTest, IsFreeAgainAfterTheLastTurn) {
    const auto first = work('a');
    clock.advance(1s);
    ASSERT_TRUE(first.isDone());
    const auto second = work('b');
    EXPECT_EQ(notes, "aAb");
    clock.advance(1s);
    EXPECT_TRUE(second.isDone());
}

TEST_F(TurnQueueTest, PassesTheTurnOnAfterAnException) {
    const auto failing = fail('a');
    const auto next = work('b');
    clock.advance(1s);
    EXPECT_NE(failing.error(), nullptr);
    EXPECT_EQ(notes, "ab");
    clock.advance(1s);
    EXPECT_TRUE(next.isDone());
    EXPECT_EQ(next.error(), nullptr);
}

TEST_F(TurnQueueTest, IsFreeAgainAfterAnException) {
    const auto failing = fail('a');
    clock.advance(1s);
    ASSERT_NE(failing.error(), nullptr);
    const auto next = work('b');
    EXPECT_EQ(notes, "ab");
    clock.advance(1s);
    EXPECT_TRUE(next.isDone());
}

TEST_F(TurnQueueTest, PassesTheTurnOnAlsoOnceTheQueueItselfHasGone) {
    const auto first = work('a');
    const auto second = work('b');
    turns = TurnQueue();
    clock.advance(2s);
    EXPECT_EQ(notes, "aAbB");
    EXPECT_TRUE(second.isDone());
}

} // namespace
} // namespace corvanta
