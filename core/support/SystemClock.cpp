// SPDX-License-Identifier: MIT
#include "support/SystemClock.h"

#include <QTimer>

#include <algorithm>
#include <coroutine>
#include <utility>

namespace corvanta {

namespace {

/// Suspends the awaiting coroutine until its timer fires; cancelling makes the timer fire at the next turn.
class TimerAwaiter {
public:
    TimerAwaiter(std::chrono::milliseconds duration, const CancellationToken& token) {
        m_timer.setSingleShot(true);
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.setInterval(duration);
        m_registration = token.onCancel([this] {
            m_result = SleepResult::cancelled;
            m_timer.setInterval(0);
        });
    }

    [[nodiscard]] bool await_ready() const noexcept { return false; }

    void await_suspend(std::coroutine_handle<> handle) {
        QObject::connect(&m_timer, &QTimer::timeout, [handle] { handle.resume(); });
        m_timer.start();
    }

    [[nodiscard]] SleepResult await_resume() const noexcept { return m_result; }

private:
    QTimer m_timer;
    CancellationToken::Registration m_registration;
    SleepResult m_result = SleepResult::elapsed;
};

} // namespace

Clock::TimePoint SystemClock::now() const {
    return std::chrono::time_point_cast<Duration>(std::chrono::steady_clock::now());
}

QCoro::Task<SleepResult> SystemClock::sleepFor(Duration duration, CancellationToken token) {
    const auto whole = std::chrono::ceil<std::chrono::milliseconds>(std::max(duration, Duration::zero()));
    co_return co_await TimerAwaiter(whole, token);
}

Date SystemClock::wallClockNow() const {
    constexpr std::chrono::sys_days referenceDate = std::chrono::January / 1 / 2001;
    const std::chrono::duration<double> elapsed = std::chrono::system_clock::now() - referenceDate;
    return {elapsed.count()};
}

QUuid SystemClock::freshUUID() {
    return QUuid::createUuid();
}

} // namespace corvanta
