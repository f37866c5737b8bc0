// SPDX-License-Identifier: MIT
#include "support/TurnQueue.h"

#include "FakeError.h"
#include "TaskWaiting.h"
#include "VirtualClock.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

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

    /// Takes a turn, notes it and ends at once.
    [[nodiscard]] WatchedTask<void> glance(char note) { return WatchedTask(runAtOnce(&turns, &notes, note)); }

    /// Takes a turn of one second, passes it on and notes afterwards that it did.
    [[nodiscard]] WatchedTask<void> workAndPass(char note) {
        return WatchedTask(runAndPass(&turns, &clock, &notes, note));
    }

    VirtualClock clock;
    std::string notes;
    TurnQueue turns;

private:
    static char capital(char note) { return static_cast<char>(note - 'a' + 'A'); }

    static QCoro::Task<void> run(TurnQueue* turns, VirtualClock* clock, std::string* notes, char note) {
        [[maybe_unused]] const TurnQueue::Turn turn = co_await turns->next();
        notes->push_back(note);
        co_await clock->sleepFor(1s);
        notes->push_back(capital(note));
    }

    static QCoro::Task<void> runAndPass(TurnQueue* turns, VirtualClock* clock, std::string* notes, char note) {
        TurnQueue::Turn turn = co_await turns->next();
        notes->push_back(note);
        co_await clock->sleepFor(1s);
        turn.pass();
        turn.pass();
        notes->push_back(capital(note));
    }

    static QCoro::Task<void> runAtOnce(TurnQueue* turns, std::string* notes, char note) {
        [[maybe_unused]] const TurnQueue::Turn turn = co_await turns->next();
        notes->push_back(note);
    }

    static QCoro::Task<void> runAndFail(TurnQueue* turns, VirtualClock* clock, std::string* notes, char note) {
        [[maybe_unused]] const TurnQueue::Turn turn = co_await turns->next();
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

TEST_F(TurnQueueTest, PassesTheTurnOnOnceWhenItIsTold) {
    const auto first = workAndPass('a');
    const auto second = work('b');
    const auto third = work('c');
    clock.advance(1s);
    EXPECT_EQ(notes, "abA");
    clock.advance(1s);
    EXPECT_EQ(notes, "abABc");
    clock.advance(1s);
    EXPECT_TRUE(first.isDone() && second.isDone() && third.isDone());
}

TEST_F(TurnQueueTest, LetsOperationsThatEndAtOncePassWithoutALatecomerBetweenThem) {
    const auto first = work('a');
    const auto second = glance('b');
    const auto third = glance('c');
    const auto fourth = work('d');
    const auto fifth = glance('e');
    clock.advance(1s);
    EXPECT_EQ(notes, "aAbcd");
    clock.advance(1s);
    EXPECT_EQ(notes, "aAbcdDe");
    EXPECT_EQ(glance('f').error(), nullptr);
    EXPECT_EQ(notes, "aAbcdDef");
    EXPECT_TRUE(first.isDone() && second.isDone() && third.isDone() && fourth.isDone() && fifth.isDone());
}

TEST_F(TurnQueueTest, PassesAlongALineOfAnyLength) {
    constexpr std::size_t length = 100'000;
    const auto first = work('a');
    std::vector<WatchedTask<void>> line;
    line.reserve(length);
    for (std::size_t place = 0; place < length; ++place)
        line.push_back(glance('b'));
    clock.advance(1s);
    EXPECT_EQ(notes.size(), length + 2);
    EXPECT_TRUE(line.back().isDone());
}

} // namespace
} // namespace corvanta
