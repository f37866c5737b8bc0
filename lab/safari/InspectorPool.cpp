// SPDX-License-Identifier: MIT
#include "InspectorPool.h"

#include "PageTitle.h"

#include <algorithm>
#include <utility>

namespace corvanta::lab {

namespace {

constexpr guint firstSpareDelay = 50;
/// Long enough to leave the machine to the inspector that is just opening.
constexpr guint nextSpareDelay = 3000;

} // namespace

InspectorPool::InspectorPool(std::string serverAddress)
    : m_serverAddress(std::move(serverAddress)) {
    scheduleSpare(firstSpareDelay);
}

InspectorPool::~InspectorPool() = default;

void InspectorPool::inspect(const TargetIdentifier& target, const std::string& title) {
    if (const auto open = m_inspectors.find(target); open != m_inspectors.end()) {
        open->second.process->present();
        return;
    }
    std::unique_ptr<InspectorProcess> process = m_spare ? std::move(m_spare) : InspectorProcess::start(m_serverAddress);
    if (!process) {
        g_warning("The inspector of %s cannot be started.", title.c_str());
        return;
    }
    process->setExitHandler([this, target] { left(target); });
    process->inspect(target, title);
    m_inspectors.emplace(target, Slot{std::move(process), title});
    scheduleSpare(nextSpareDelay);
}

void InspectorPool::left(const TargetIdentifier& target) {
    const auto position = m_inspectors.find(target);
    const Slot slot = std::move(position->second);
    m_inspectors.erase(position);
    // Somebody asked for the inspector while it was just going.
    if (slot.process->hasUnansweredPresent())
        inspect(target, slot.title);
}

void InspectorPool::setTargets(const InspectableTargets& targets) {
    for (auto position = m_inspectors.begin(); position != m_inspectors.end();) {
        const auto target = std::ranges::find(targets, position->first, &InspectableTarget::identifier);
        if (target == targets.end()) {
            position = m_inspectors.erase(position);
            continue;
        }
        if (std::string title = targetTitle(*target); title != position->second.title) {
            position->second.process->retitle(title);
            position->second.title = std::move(title);
        }
        ++position;
    }
}

void InspectorPool::scheduleSpare(guint delay) {
    m_spareTimer.set(g_timeout_add(
        delay,
        [](gpointer self) -> gboolean {
            auto* const pool = static_cast<InspectorPool*>(self);
            pool->m_spareTimer.forget();
            pool->startSpare();
            return G_SOURCE_REMOVE;
        },
        this));
}

void InspectorPool::startSpare() {
    if (m_spare)
        return;
    m_spare = InspectorProcess::start(m_serverAddress);
    if (!m_spare)
        return;
    m_spare->setExitHandler([this] {
        m_spare.reset();
        scheduleSpare(nextSpareDelay);
    });
}

} // namespace corvanta::lab
