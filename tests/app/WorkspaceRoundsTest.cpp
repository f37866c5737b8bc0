// SPDX-License-Identifier: MIT
// Many starts and stops one after the other, which must leave nothing behind.
#include "WorkspaceCoordinatorTest.h"

#include <QDir>

#include <cstdint>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

class WorkspaceRounds : public WorkspaceCoordinatorTest {
protected:
    void runRounds(int count) {
        for (int round = 0; round < count; ++round) {
            safari.willList({});
            const auto task = start();
            clock.advance(300ms);
            ASSERT_TRUE(task.isDone());
            ASSERT_EQ(coordinator->phase(), WorkspacePhase::running);
            // The watch over the menu looks a few times.
            clock.advance(7s);
            ASSERT_EQ(coordinator->phase(), WorkspacePhase::running);
            coordinator->stopWorkspace();
            clock.advance(7s);
            ASSERT_EQ(coordinator->phase(), WorkspacePhase::idle);
            // The fakes remember what they were asked for.
            clock.forgetRequestedSleeps();
            preferences.forgetWrittenKeys();
            forget();
        }
    }

    /// Bytes that were taken from the heap and not given back; 0 where the allocator does not tell.
    static std::int64_t heapInUse() {
#ifdef __GLIBC__
        return static_cast<std::int64_t>(::mallinfo2().uordblks);
#else
        return 0;
#endif
    }

    static qsizetype descriptors() { return QDir(u"/proc/self/fd"_s).entryList(QDir::AllEntries).size(); }
};

TEST_F(WorkspaceRounds, LeaveNothingBehind) {
    constexpr int rounds = 1000;
    makeReady();
    safari.listed = {page(u"Start"_s, 0)};
    // The fake keeps each of its windows.
    safari.leavesNoWindow = true;
    ASSERT_NO_FATAL_FAILURE(runRounds(rounds / 10));
    const std::int64_t heapBefore = heapInUse();
    const qsizetype descriptorsBefore = descriptors();
    ASSERT_NO_FATAL_FAILURE(runRounds(rounds));
    RecordProperty("BytesOfARound", std::to_string((heapInUse() - heapBefore) / rounds));
    EXPECT_LE((heapInUse() - heapBefore) / rounds, 64);
    EXPECT_EQ(descriptors(), descriptorsBefore);
    EXPECT_EQ(clock.sleepers(), 0U);
}

} // namespace

} // namespace corvanta
