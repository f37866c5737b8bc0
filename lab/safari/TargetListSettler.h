// SPDX-License-Identifier: MIT
#pragma once

#include "InspectableTarget.h"

#include <chrono>
#include <optional>

namespace corvanta {

/// Turns a device's stream of page lists into settled ones, so that a menu never shows what was true for an instant
/// only.
///
/// A change is due once nothing has changed for `quietTime`. A page that has just been opened and has no address yet is
/// waited for longer, since its address follows at once; but no change waits longer than `longestWait`.
/// Time is handed in; the class never sleeps.
class TargetListSettler {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds quietTime{50};
    static constexpr std::chrono::milliseconds longestWait{200};

    /// What the device says now.
    void update(InspectableTargets targets, TimePoint now);

    /// When the pending change is to be taken; nothing while there is none.
    [[nodiscard]] std::optional<TimePoint> due() const;

    /// The settled list if a change is due, nothing otherwise.
    [[nodiscard]] std::optional<InspectableTargets> take(TimePoint now);

private:
    [[nodiscard]] bool hasNewPageWithoutAddress() const;

    InspectableTargets m_settled;
    InspectableTargets m_pending;
    std::optional<TimePoint> m_firstChange;
    TimePoint m_lastChange;
};

} // namespace corvanta
