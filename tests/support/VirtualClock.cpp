// SPDX-License-Identifier: MIT
#include "VirtualClock.h"

#include <algorithm>

namespace corvanta::testing {

struct VirtualClock::Sleeper {
    Key key;
    std::coroutine_handle<> handle;
    SleepResult result = SleepResult::elapsed;
    bool isSuspended = false;
};

class VirtualClock::Awaiter {
public:
    Awaiter(VirtualClock& clock, Duration duration, const CancellationToken& token)
        : m_clock(clock) {
        m_sleeper.key = {clock.m_now + std::max(duration, Duration::zero()), clock.m_nextKey++};
        m_registration = token.onCancel([this] {
            m_sleeper.result = SleepResult::cancelled;
            if (m_sleeper.isSuspended)
                m_clock.m_sleepers.erase(m_sleeper.key);
            m_sleeper.key.first = m_clock.m_now;
            if (m_sleeper.isSuspended)
                m_clock.m_sleepers.emplace(m_sleeper.key, &m_sleeper);
        });
    }

    [[nodiscard]] bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> handle) {
        m_sleeper.handle = handle;
        m_sleeper.isSuspended = true;
        m_clock.m_sleepers.emplace(m_sleeper.key, &m_sleeper);
    }

    [[nodiscard]] SleepResult await_resume() const noexcept { return m_sleeper.result; }

private:
    VirtualClock& m_clock;
    Sleeper m_sleeper;
    CancellationToken::Registration m_registration;
};

VirtualClock::VirtualClock() = default;

VirtualClock::~VirtualClock() {
    // Whoever still sleeps ends as cancelled, so that no frame outlives the test.
    while (!m_sleepers.empty()) {
        m_sleepers.begin()->second->result = SleepResult::cancelled;
        wakeFirst();
    }
}

QCoro::Task<SleepResult> VirtualClock::sleepFor(Duration duration, CancellationToken token) {
    m_requestedSleeps.push_back(duration);
    co_return co_await Awaiter(*this, duration, token);
}

Date VirtualClock::wallClockNow() const {
    constexpr double startOfTests = 800'000'000;
    return {startOfTests + std::chrono::duration<double>(elapsed()).count()};
}

QUuid VirtualClock::freshUUID() {
    const unsigned number = m_nextUUID++;
    return QUuid::fromString(QStringLiteral("00000000-0000-4000-8000-%1").arg(number, 12, 10, QLatin1Char('0')));
}

void VirtualClock::wakeFirst() {
    const auto first = m_sleepers.begin();
    m_now = std::max(m_now, first->first.first);
    Sleeper* const sleeper = first->second;
    m_sleepers.erase(first);
    sleeper->isSuspended = false;
    sleeper->handle.resume();
}

void VirtualClock::advance(Duration duration) {
    const TimePoint end = m_now + duration;
    while (!m_sleepers.empty() && m_sleepers.begin()->first.first <= end)
        wakeFirst();
    m_now = std::max(m_now, end);
}

bool VirtualClock::step() {
    if (m_sleepers.empty())
        return false;
    wakeFirst();
    return true;
}

} // namespace corvanta::testing
