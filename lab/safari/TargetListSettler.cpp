// SPDX-License-Identifier: MIT
#include "TargetListSettler.h"

#include <algorithm>
#include <utility>

namespace corvanta::lab {

namespace {

bool contains(const InspectableTargets& targets, const TargetIdentifier& identifier) {
    return std::ranges::find(targets, identifier, &InspectableTarget::identifier) != targets.end();
}

bool hasAddress(const InspectableTarget& target) {
    return target.kind != TargetKind::page || (!target.url.empty() && target.url != "about:blank");
}

} // namespace

void TargetListSettler::update(InspectableTargets targets, TimePoint now) {
    const InspectableTargets before = std::exchange(m_received, std::move(targets));
    std::erase_if(m_leftOut, [this](const auto& page) {
        const auto target = std::ranges::find(m_received, page.first, &InspectableTarget::identifier);
        return target == m_received.end() || hasAddress(*target);
    });
    for (const InspectableTarget& target : m_received) {
        if (!hasAddress(target) && !contains(before, target.identifier))
            m_leftOut.emplace(target.identifier, now + addressWait);
    }
    show(now);
}

std::optional<TargetListSettler::TimePoint> TargetListSettler::due() const {
    std::optional<TimePoint> earliest;
    if (m_firstChange)
        earliest = std::min(m_lastChange + quietTime, *m_firstChange + longestWait);
    for (const auto& [identifier, end] : m_leftOut)
        earliest = earliest ? std::min(*earliest, end) : end;
    return earliest;
}

std::optional<InspectableTargets> TargetListSettler::take(TimePoint now) {
    if (std::erase_if(m_leftOut, [now](const auto& page) { return page.second <= now; }) > 0) {
        // These pages have waited long enough.
        show(now - longestWait);
    }
    if (!m_firstChange || now < std::min(m_lastChange + quietTime, *m_firstChange + longestWait))
        return std::nullopt;
    m_firstChange.reset();
    m_settled = m_shown;
    return m_settled;
}

void TargetListSettler::show(TimePoint now) {
    InspectableTargets shown;
    std::ranges::copy_if(m_received, std::back_inserter(shown),
                         [this](const InspectableTarget& target) { return !m_leftOut.contains(target.identifier); });
    if (shown == m_shown)
        return;
    m_shown = std::move(shown);
    m_lastChange = now;
    if (m_shown == m_settled)
        m_firstChange.reset();
    else if (!m_firstChange)
        m_firstChange = now;
}

} // namespace corvanta::lab
