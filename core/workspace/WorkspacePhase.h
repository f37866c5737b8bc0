// SPDX-License-Identifier: MIT
#pragma once

#include "support/JsonDecoder.h"

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace corvanta {

/// Where a workspace run stands. The phases from `preflight` to `attachingInspector` are work in progress.
enum class WorkspacePhase {
    idle,
    preflight,
    booting,
    openingPage,
    attachingInspector,
    running,
    failed,
};

/// Every phase in the order of a run.
inline constexpr std::array allWorkspacePhases{
    WorkspacePhase::idle,        WorkspacePhase::preflight,          WorkspacePhase::booting,
    WorkspacePhase::openingPage, WorkspacePhase::attachingInspector, WorkspacePhase::running,
    WorkspacePhase::failed,
};

/// The enumerator's own name: the form under which a phase is stored.
[[nodiscard]] QString rawValue(WorkspacePhase phase);

/// The phase with exactly this raw value, or nothing.
[[nodiscard]] std::optional<WorkspacePhase> workspacePhaseFromRawValue(QStringView rawValue);

/// The phase whose raw value this JSON string is. Throws JsonDecodingError for anything else.
[[nodiscard]] WorkspacePhase decodeWorkspacePhase(const JsonDecoder& decoder);

/// How the phase is shown to the user.
[[nodiscard]] QString displayName(WorkspacePhase phase);

/// Whether a start is under way: strictly between `idle` and `running`.
[[nodiscard]] bool isWorking(WorkspacePhase phase);

} // namespace corvanta
