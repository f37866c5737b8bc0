// SPDX-License-Identifier: MIT
#include "workspace/WorkspaceStateMachine.h"

namespace corvanta {

const std::map<WorkspacePhase, std::set<WorkspacePhase>>& WorkspaceStateMachine::allowedTransitions() {
    using enum WorkspacePhase;
    static const std::map<WorkspacePhase, std::set<WorkspacePhase>> transitions{
        {idle, {preflight, failed}},
        {preflight, {booting, failed, idle}},
        {booting, {openingPage, failed, idle}},
        {openingPage, {attachingInspector, failed, idle}},
        {attachingInspector, {running, failed, idle}},
        {running, {openingPage, attachingInspector, failed, idle}},
        {failed, {preflight, idle}},
    };
    return transitions;
}

void WorkspaceStateMachine::transition(WorkspacePhase next) {
    if (next != m_phase) {
        const auto allowed = allowedTransitions().find(m_phase);
        if (allowed == allowedTransitions().end() || !allowed->second.contains(next))
            throw WorkspaceTransitionError::invalid(m_phase, next);
    }
    m_phase = next;
}

} // namespace corvanta
