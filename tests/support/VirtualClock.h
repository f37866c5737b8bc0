// SPDX-License-Identifier: MIT
#pragma once

#include "support/Clock.h"

#include <coroutine>
#include <map>
#include <utility>
#include <vector>

namespace corvanta::testing {

/// A clock that moves only when the test says so.
///
/// Sleepers wake in the order of their due times, those due together in the order in which they went to sleep.
/// A cancelled sleeper wakes at the next `advance` or `settle`, never from inside the cancelling call.
class VirtualClock final : public Clock {
public:
    VirtualClock();
    ~VirtualClock() override;

    [[nodiscard]] TimePoint now() const override { return m_now; }

    [[nodiscard]] QCoro::Task<SleepResult> sleepFor(Duration duration, CancellationToken token = {}) override;
    [[nodiscard]] Date wallClockNow() const override;
    /// 00000000-0000-4000-8000-000000000001 and so on.
    [[nodiscard]] QUuid freshUUID() override;

    /// Lets time pass, waking each sleeper at its own time.
    void advance(Duration duration);

    /// Wakes whoever is due now, and whoever becomes due by that, without letting time pass.
    void settle() { advance(Duration::zero()); }

    /// Lets time pass to the next due time and wakes one sleeper; false when nobody sleeps.
    bool step();

    [[nodiscard]] std::size_t sleepers() const { return m_sleepers.size(); }

    /// Every duration that was asked for, in order.
    [[nodiscard]] const std::vector<Duration>& requestedSleeps() const { return m_requestedSleeps; }

    void forgetRequestedSleeps() { m_requestedSleeps.clear(); }

    /// The time since the clock was made.
    [[nodiscard]] Duration elapsed() const { return m_now - TimePoint{}; }

private:
    struct Sleeper;
    class Awaiter;
    using Key = std::pair<TimePoint, unsigned long>;

    void wakeFirst();

    TimePoint m_now;
    unsigned long m_nextKey = 0;
    unsigned m_nextUUID = 1;
    std::map<Key, Sleeper*> m_sleepers;
    std::vector<Duration> m_requestedSleeps;
};

} // namespace corvanta::testing
