// SPDX-License-Identifier: MIT
#include "HangAllowance.h"

#include <QTimer>

#include <algorithm>
#include <thread>

namespace corvanta {

namespace {

constexpr std::chrono::nanoseconds pollInterval = std::chrono::microseconds(100);

} // namespace

void HangAllowance::pauseBriefly(std::chrono::nanoseconds atMost) {
    std::this_thread::sleep_for(std::min(atMost, pollInterval));
}

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
        pause(m_perTurn - m_used - waited);
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
