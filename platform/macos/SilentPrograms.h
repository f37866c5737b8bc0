// SPDX-License-Identifier: MIT
#pragma once

#include "support/Clock.h"

#include <chrono>
#include <map>

namespace corvanta {

/// The programs that have just let a question time out. Whoever asks them again at once would be held again.
class SilentPrograms {
public:
    /// How long a program is left in peace.
    static constexpr auto rest = std::chrono::seconds(2);

    explicit SilentPrograms(const Clock& clock)
        : m_clock(clock) {}

    /// The program with that process identifier has not answered in time.
    void add(int processIdentifier) { m_since[processIdentifier] = m_clock.now(); }

    /// Whether it is to be left in peace.
    [[nodiscard]] bool contains(int processIdentifier) const {
        const auto found = m_since.find(processIdentifier);
        return found != m_since.end() && m_clock.now() - found->second < rest;
    }

private:
    const Clock& m_clock;
    std::map<int, Clock::TimePoint> m_since;
};

} // namespace corvanta
