// SPDX-License-Identifier: MIT
// The coordinator's watch over Safari's page list while a workspace runs.
#include "workspace/WorkspaceCoordinator.h"

#include "safari/SafariTargetSelector.h"

#include <utility>
#include <variant>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto pollInterval = 2s;

} // namespace

void WorkspaceCoordinator::cancelMonitoring() {
    if (auto monitorTask = std::exchange(m_monitorTask, std::nullopt))
        monitorTask->cancel();
}

void WorkspaceCoordinator::startMonitoring(const SimulatorDevice& device) {
    cancelMonitoring();
    m_monitorTask.emplace();
    m_tasks.start(monitor(m_runs, device, m_monitorTask->token()));
}

QCoro::Task<void> WorkspaceCoordinator::monitor(std::shared_ptr<const WorkspaceRun::Owner> owner,
                                                SimulatorDevice device, CancellationToken token) {
    // The coordinator is held through its runs only, so that the loop never keeps it alive.
    while (owner->coordinator) {
        co_await owner->coordinator->m_services.clock.sleepFor(pollInterval, token);
        // Also asked after a sleep that was not cancelled: the cancelling may have come just behind its end.
        if (token.isCancelled() || !owner->coordinator)
            co_return;
        co_await owner->coordinator->pollTargets(device, token);
    }
}

QCoro::Task<void> WorkspaceCoordinator::pollTargets(SimulatorDevice device, CancellationToken token) {
    if (m_phase != WorkspacePhase::running || !m_candidateTargets.empty())
        co_return;
    const WorkspaceRun run(m_runs);
    try {
        co_await judgePoll(run, device, token);
    } catch (...) {
        if (run.isCurrent())
            fail(std::current_exception());
    }
}

QCoro::Task<void> WorkspaceCoordinator::judgePoll(WorkspaceRun run, SimulatorDevice device, CancellationToken token) {
    const auto current = co_await readTargets(run, device.name, token);
    // A failure that is not the run's own, such as that of a device listing, may have come meanwhile.
    if (!current || m_phase != WorkspacePhase::running)
        co_return;

    if (!m_services.safari.managedInspectorIsPresent()) {
        // The user closed the inspector, so the best page among all that are listed is attached again.
        const auto decision = SafariTargetSelector::decide({}, *current, m_activeURL);
        try {
            transition(WorkspacePhase::attachingInspector);
        } catch (const WorkspaceTransitionError&) {
            co_return;
        }
        co_await handleTargetDecision(run, decision, device);
        co_return;
    }

    const auto previous = std::exchange(m_knownTargets, *current);
    const auto decision = SafariTargetSelector::decide(previous, *current, m_activeURL);
    if (const auto* const attaching = std::get_if<SafariTargetDecision::Attach>(&decision.value())) {
        transition(WorkspacePhase::attachingInspector);
        co_await attach(run, attaching->target, device);
    } else if (const auto* const ambiguous = std::get_if<SafariTargetDecision::Ambiguous>(&decision.value())) {
        publish(m_candidateTargets, ambiguous->targets, &WorkspaceCoordinator::candidateTargetsChanged);
        showStatus(u"Choose the newest Safari page"_s);
        showRecovery(u"More than one inspectable page appeared."_s);
    }
}

} // namespace corvanta
