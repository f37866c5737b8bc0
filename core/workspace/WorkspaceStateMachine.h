// SPDX-License-Identifier: MIT
#pragma once

#include "workspace/WorkspacePhase.h"
#include "workspace/WorkspaceTransitionError.h"

#include <map>
#include <set>

namespace corvanta {

/// Holds the phase of a workspace run and refuses every move that is not in its table.
class WorkspaceStateMachine {
public:
    /// Which phases may follow which. A phase may always follow itself, which the table does not list.
    [[nodiscard]] static const std::map<WorkspacePhase, std::set<WorkspacePhase>>& allowedTransitions();

    /// `idle` at first.
    [[nodiscard]] WorkspacePhase phase() const { return m_phase; }

    /// Moves to `next`, or throws WorkspaceTransitionError::invalid and stays where it is.
    void transition(WorkspacePhase next);

    bool operator==(const WorkspaceStateMachine&) const = default;

private:
    WorkspacePhase m_phase = WorkspacePhase::idle;
};

} // namespace corvanta
