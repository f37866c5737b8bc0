// SPDX-License-Identifier: MIT
#pragma once

#include "support/Clock.h"

namespace corvanta {

/// The real time of this machine; sleeps on the event loop of the calling thread with millisecond timers.
class SystemClock final : public Clock {
public:
    [[nodiscard]] TimePoint now() const override;
    [[nodiscard]] QCoro::Task<SleepResult> sleepFor(Duration duration, CancellationToken token = {}) override;
    [[nodiscard]] Date wallClockNow() const override;
    [[nodiscard]] QUuid freshUUID() override;
};

} // namespace corvanta
