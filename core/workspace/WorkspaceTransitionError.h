// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"
#include "workspace/WorkspacePhase.h"

#include <variant>

namespace corvanta {

/// A move between phases that is not in the table of allowed transitions.
///
/// It has no text of its own: its description is the generic one of such an error, without a suggestion.
class WorkspaceTransitionError final : public LocalizedError {
public:
    struct Invalid {
        WorkspacePhase from;
        WorkspacePhase to;

        bool operator==(const Invalid&) const = default;
    };

    using Case = std::variant<Invalid>;

    [[nodiscard]] static WorkspaceTransitionError invalid(WorkspacePhase from, WorkspacePhase to) {
        return WorkspaceTransitionError(Invalid{from, to});
    }

    [[nodiscard]] const Case& value() const { return m_case; }

    [[nodiscard]] QString errorDescription() const override;

    bool operator==(const WorkspaceTransitionError& other) const { return m_case == other.m_case; }

private:
    explicit WorkspaceTransitionError(Case value)
        : m_case(value) {}

    Case m_case;
};

} // namespace corvanta
