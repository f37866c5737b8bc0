// SPDX-License-Identifier: MIT
#pragma once

#include "InspectableTarget.h"

#include <chrono>
#include <map>
#include <optional>

namespace corvanta::lab {

/// Turns a device's stream of page lists into settled ones, so that a menu never shows what was true for an instant
/// only.
///
/// A change is due once nothing has changed for `quietTime`, and never waits longer than `longestWait`. A page that has
/// just been opened and has no address yet is left out for at most `addressWait`, since its address follows at once;
/// the other pages do not wait for it. Time is handed in; the class never sleeps.
class TargetListSettler {
public:
    using TimePoint = std::chrono::steady_clock::time_point;

    static constexpr std::chrono::milliseconds quietTime{50};
    static constexpr std::chrono::milliseconds longestWait{200};
    static constexpr std::chrono::milliseconds addressWait{5000};

    /// What the device says now.
    void update(InspectableTargets targets, TimePoint now);

    /// When the pending change is to be taken; nothing while there is none.
    [[nodiscard]] std::optional<TimePoint> due() const;

    /// The settled list if a change is due, nothing otherwise.
    [[nodiscard]] std::optional<InspectableTargets> take(TimePoint now);

private:
    void show(TimePoint now);

    InspectableTargets m_settled;
    InspectableTargets m_received;
    /// What was received, without the pages that are left out.
    InspectableTargets m_shown;
    /// The pages that are left out, and until when.
    std::map<TargetIdentifier, TimePoint> m_leftOut;
    std::optional<TimePoint> m_firstChange;
    TimePoint m_lastChange;
};

} // namespace corvanta::lab
