// SPDX-License-Identifier: MIT
#include "TargetListSettler.h"

#include <algorithm>
#include <utility>

namespace corvanta {

void TargetListSettler::update(InspectableTargets targets, TimePoint now) {
    if (targets == m_pending)
        return;
    m_pending = std::move(targets);
    m_lastChange = now;
    if (m_pending == m_settled)
        m_firstChange.reset();
    else if (!m_firstChange)
        m_firstChange = now;
}

std::optional<TargetListSettler::TimePoint> TargetListSettler::due() const {
    if (!m_firstChange)
        return std::nullopt;
    const TimePoint latest = *m_firstChange + longestWait;
    return hasNewPageWithoutAddress() ? latest : std::min(m_lastChange + quietTime, latest);
}

std::optional<InspectableTargets> TargetListSettler::take(TimePoint now) {
    const auto time = due();
    if (!time || now < *time)
        return std::nullopt;
    m_firstChange.reset();
    m_settled = m_pending;
    return m_settled;
}

bool TargetListSettler::hasNewPageWithoutAddress() const {
    return std::ranges::any_of(m_pending, [this](const InspectableTarget& target) {
        return (target.url.empty() || target.url == "about:blank") &&
               std::ranges::find(m_settled, target.identifier, &InspectableTarget::identifier) == m_settled.end();
    });
}

} // namespace corvanta
