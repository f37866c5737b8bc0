// SPDX-License-Identifier: MIT
#include "workspace/WorkspacePhase.h"

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

QString rawValue(WorkspacePhase phase) {
    switch (phase) {
    case WorkspacePhase::idle:
        return u"idle"_s;
    case WorkspacePhase::preflight:
        return u"preflight"_s;
    case WorkspacePhase::booting:
        return u"booting"_s;
    case WorkspacePhase::openingPage:
        return u"openingPage"_s;
    case WorkspacePhase::attachingInspector:
        return u"attachingInspector"_s;
    case WorkspacePhase::running:
        return u"running"_s;
    case WorkspacePhase::failed:
        return u"failed"_s;
    }
    Q_UNREACHABLE();
}

std::optional<WorkspacePhase> workspacePhaseFromRawValue(QStringView text) {
    const auto found =
        std::ranges::find_if(allWorkspacePhases, [text](WorkspacePhase phase) { return rawValue(phase) == text; });
    if (found == allWorkspacePhases.end())
        return std::nullopt;
    return *found;
}

WorkspacePhase decodeWorkspacePhase(const JsonDecoder& decoder) {
    const auto phase = workspacePhaseFromRawValue(decoder.string());
    if (!phase)
        throw decoder.mismatch(u"a workspace phase"_s);
    return *phase;
}

QString displayName(WorkspacePhase phase) {
    switch (phase) {
    case WorkspacePhase::idle:
        return u"Idle"_s;
    case WorkspacePhase::preflight:
        return u"Checking setup"_s;
    case WorkspacePhase::booting:
        return u"Booting"_s;
    case WorkspacePhase::openingPage:
        return u"Opening page"_s;
    case WorkspacePhase::attachingInspector:
        return u"Attaching inspector"_s;
    case WorkspacePhase::running:
        return u"Running"_s;
    case WorkspacePhase::failed:
        return u"Needs attention"_s;
    }
    Q_UNREACHABLE();
}

bool isWorking(WorkspacePhase phase) {
    return phase > WorkspacePhase::idle && phase < WorkspacePhase::running;
}

} // namespace corvanta
