// SPDX-License-Identifier: MIT
#pragma once

#include "VirtualClock.h"

#include <QString>

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace corvanta::testing {

/// What fakes were asked to do, in one common order, each call with its time. Several fakes may write one log.
class CallLog {
public:
    explicit CallLog(const VirtualClock& clock)
        : m_clock(clock) {}

    void add(const QString& call) {
        m_calls.emplace_back(m_clock.elapsed(), call.toStdString());
        if (whenCalled)
            whenCalled(m_calls.back().second);
    }

    /// Every call so far.
    [[nodiscard]] std::vector<std::string> calls() const {
        std::vector<std::string> texts;
        texts.reserve(m_calls.size());
        for (const auto& [time, call] : m_calls)
            texts.push_back(call);
        return texts;
    }

    /// The calls with the milliseconds since the log was last cleared in front: "120 AXPress Develop".
    [[nodiscard]] std::vector<std::string> timedCalls() const {
        std::vector<std::string> texts;
        texts.reserve(m_calls.size());
        for (const auto& [time, call] : m_calls)
            texts.push_back(std::to_string(std::chrono::floor<std::chrono::milliseconds>(time - m_start).count()) +
                            ' ' + call);
        return texts;
    }

    /// How many calls begin with `prefix`.
    [[nodiscard]] int count(const std::string& prefix) const {
        int count = 0;
        for (const auto& [time, call] : m_calls)
            count += call.starts_with(prefix) ? 1 : 0;
        return count;
    }

    void clear() {
        m_calls.clear();
        m_start = m_clock.elapsed();
    }

    /// Told of each call at once.
    std::function<void(const std::string&)> whenCalled;

private:
    const VirtualClock& m_clock;
    Clock::Duration m_start{};
    std::vector<std::pair<Clock::Duration, std::string>> m_calls;
};

} // namespace corvanta::testing
