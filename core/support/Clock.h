// SPDX-License-Identifier: MIT
#pragma once

#include "support/Cancellation.h"
#include "support/Date.h"

#include <QCoroTask>

#include <QUuid>

#include <chrono>

namespace corvanta {

enum class SleepResult { elapsed, cancelled };

/// The one source of time, of sleeping and of fresh identities.
///
/// Production uses SystemClock; tests a virtual clock that never sleeps. Used on the main thread only.
class Clock {
public:
    using Duration = std::chrono::nanoseconds;
    using TimePoint = std::chrono::time_point<std::chrono::steady_clock, Duration>;

    Clock() = default;
    Clock(const Clock&) = delete;
    Clock& operator=(const Clock&) = delete;
    virtual ~Clock() = default;

    /// Monotonic time; its origin means nothing.
    [[nodiscard]] virtual TimePoint now() const = 0;

    /// Suspends until `duration` has passed or `token` is cancelled, whichever is first, and says which it was.
    ///
    /// A duration of zero or less ends at the next turn of the event loop; a token that is already cancelled likewise,
    /// as `cancelled`. Never resumes the caller from inside the cancelling call.
    [[nodiscard]] virtual QCoro::Task<SleepResult> sleepFor(Duration duration, CancellationToken token = {}) = 0;

    /// The wall clock's time.
    [[nodiscard]] virtual Date wallClockNow() const = 0;

    /// A random UUID that was never handed out before.
    [[nodiscard]] virtual QUuid freshUUID() = 0;
};

} // namespace corvanta
