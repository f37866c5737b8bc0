// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "workspace/WorkspaceCoordinator.h"

#include <optional>
#include <set>
#include <string>
#include <utility>

namespace corvanta {

/// Watches a coordinator and the calls to its services, and knows what must hold whatever happens at the same time.
///
/// The phase moves only as its table allows. A run works in its own phases, for its own device and its own address,
/// and falls silent as soon as Stop or a newer run supersedes it. Nothing is published that has not changed.
class WorkspaceRules {
public:
    enum class RunKind { start, reload, choice };

    /// Both outlive the rules' last use; the coordinator may go earlier.
    WorkspaceRules(WorkspaceCoordinator& coordinator, testing::CallLog& log);

    /// The texts that a run of that number uses, so that a text tells whose it is.
    [[nodiscard]] static QString address(int run);
    [[nodiscard]] static QString errorText(int run);
    /// What fails a device listing says.
    [[nodiscard]] static QString listingErrorText();

    /// A newer run begins now, in the coordinator's present phase.
    void beginRun(RunKind kind, int run, const QString& deviceID);
    void stop();

    /// While set, the coordinator is inside a call that may put windows back or tile them at once.
    void setArranging(bool isArranging) { m_isArranging = isArranging; }

    /// Whether a listing that will fail is under way: it fails the workspace whoever runs it.
    void setListingFails(bool fails) { m_listingFails = fails; }

    /// The first rule that was broken; nothing while all hold.
    [[nodiscard]] const std::optional<std::string>& broken() const { return m_broken; }

    using Move = std::pair<WorkspacePhase, WorkspacePhase>;

    /// Every move of the phase so far.
    [[nodiscard]] const std::set<Move>& moves() const { return m_moves; }

    void require(bool holds, const std::string& rule);

private:
    void noteCall(const std::string& call);
    void notePhase();
    void noteStatus();
    void noteRecovery();
    void noteCandidates();
    [[nodiscard]] bool isIn(WorkspacePhase phase) const;

    WorkspaceCoordinator& m_coordinator;
    std::optional<std::string> m_broken;
    std::set<Move> m_moves;
    WorkspacePhase m_phase;
    QString m_status;
    std::optional<QString> m_recovery;
    std::vector<SafariTarget> m_candidates;
    int m_run = 0;
    QString m_deviceID;
    bool m_isStopped = true;
    bool m_isArranging = false;
    bool m_listingFails = false;
    /// A failure of somebody else's, or a move that the table refuses, has taken the phase from under the run.
    bool m_hasLostPhase = false;
    int m_attachesDue = 0;
};

} // namespace corvanta
