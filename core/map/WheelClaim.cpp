// SPDX-License-Identifier: MIT
#include "map/WheelClaim.h"

#include <cmath>

namespace corvanta {

namespace {

constexpr std::chrono::milliseconds pause{350};
constexpr double deliberate = 4;

} // namespace

void WheelClaim::pointerMoved(QPointF point) {
    if (!m_entered)
        m_entered = point;
    const QPointF way = point - *m_entered;
    m_isMeant = m_isMeant || std::hypot(way.x(), way.y()) >= deliberate;
}

void WheelClaim::pointerLeft() {
    m_entered.reset();
    m_isMeant = false;
}

void WheelClaim::pressed() {
    m_isMeant = true;
}

bool WheelClaim::takes(Time now, bool isModified, bool hasKeyboard) {
    const bool goesOn = m_last && now - *m_last < pause;
    m_last = now;
    if (isModified)
        return true;
    if (!goesOn)
        m_wasTaken = m_isMeant || hasKeyboard;
    return m_wasTaken;
}

} // namespace corvanta
