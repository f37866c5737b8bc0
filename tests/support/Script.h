// SPDX-License-Identifier: MIT
#pragma once

#include "support/CancelledError.h"
#include "support/Clock.h"

#include <QCoroTask>

#include <exception>
#include <map>
#include <utility>

namespace corvanta::testing {

/// How long the operations of a fake take and whether they fail. At first all succeed at once, without suspending.
template<typename Operation>
class Script {
public:
    explicit Script(Clock& clock)
        : m_clock(clock) {}

    /// Every later call of the operation suspends for this long.
    void delay(Operation operation, Clock::Duration duration) { m_behaviours[operation].duration = duration; }

    /// Every later call of the operation ends in `error`, after its delay.
    template<typename Error>
    void fail(Operation operation, Error error) {
        m_behaviours[operation].error = std::make_exception_ptr(std::move(error));
    }

    /// Later calls of the operation succeed again.
    void succeed(Operation operation) { m_behaviours[operation].error = nullptr; }

    /// Whether an operation ends early when its token is cancelled, as at first, or goes on to its own end.
    void setHeedsCancellation(bool heeds) { m_heedsCancellation = heeds; }

    /// Everything is as at first: later calls succeed at once.
    void reset() {
        m_behaviours.clear();
        m_heedsCancellation = true;
    }

    /// What each operation does between being recorded and giving its result.
    [[nodiscard]] QCoro::Task<void> play(Operation operation, CancellationToken token = {}) {
        const Behaviour behaviour = m_behaviours[operation];
        if (!m_heedsCancellation)
            token = {};
        if (behaviour.duration > Clock::Duration::zero() &&
            co_await m_clock.sleepFor(behaviour.duration, token) == SleepResult::cancelled && token.isCancelled())
            throw CancelledError();
        if (behaviour.error)
            std::rethrow_exception(behaviour.error);
    }

private:
    struct Behaviour {
        Clock::Duration duration{};
        std::exception_ptr error;
    };

    Clock& m_clock;
    bool m_heedsCancellation = true;
    std::map<Operation, Behaviour> m_behaviours;
};

} // namespace corvanta::testing
