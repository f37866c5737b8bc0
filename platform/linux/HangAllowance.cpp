// SPDX-License-Identifier: MIT
#include "HangAllowance.h"

#include <QTimer>

#include <algorithm>
#include <thread>

namespace corvanta {

namespace {

constexpr std::chrono::nanoseconds firstPoll = std::chrono::microseconds(100);
constexpr std::chrono::nanoseconds longestPoll = std::chrono::milliseconds(4);
/// What a look may come too late, as a part of what was waited before.
constexpr int lateness = 4;

} // namespace

bool HangAllowance::wait(const std::function<bool()>& isDone, const Pause& pause) {
    if (isDone())
        return true;
    const auto start = std::chrono::steady_clock::now();
    for (;;) {
        const auto waited = std::chrono::steady_clock::now() - start;
        if (m_used + waited >= m_perTurn) {
            m_used += waited;
            break;
        }
        const std::chrono::nanoseconds left = m_perTurn - m_used - waited;
        if (pause) {
            pause(left);
        } else {
            std::this_thread::sleep_for(
                std::min(left, std::clamp<std::chrono::nanoseconds>(waited / lateness, firstPoll, longestPoll)));
        }
        if (isDone())
            return true;
    }
    if (!m_isRenewalScheduled) {
        m_isRenewalScheduled = true;
        QTimer::singleShot(0, &m_context, [this] {
            m_isRenewalScheduled = false;
            m_used = {};
        });
    }
    return false;
}

bool HangAllowance::wait(Call& call) {
    if (call.isLate)
        return call.pending.isFinished();
    call.isLate = !wait([&] { return call.pending.isFinished(); });
    return !call.isLate;
}

} // namespace corvanta
