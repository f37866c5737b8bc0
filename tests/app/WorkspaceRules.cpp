// SPDX-License-Identifier: MIT
#include "WorkspaceRules.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

using enum WorkspacePhase;

struct PhaseText {
    QString beginning;
    WorkspacePhase phase;
};

/// Texts that only a run writes, and the phase that it is in then.
const std::array<PhaseText, 9>& runTexts() {
    static const std::array<PhaseText, 9> texts{{
        {u"Checking Xcode, Safari"_s, preflight},
        {u"Booting "_s, booting},
        {u"Preparing "_s, booting},
        {u"Restoring "_s, booting},
        {u"Opening "_s, openingPage},
        {u"Waiting for Safari Web Inspector"_s, attachingInspector},
        {u"Attaching Web Inspector to "_s, attachingInspector},
        {u"Choose the Safari page to inspect"_s, attachingInspector},
        {u"Workspace running"_s, running},
    }};
    return texts;
}

bool isDeviceCall(const std::string& call) {
    return call.starts_with("boot ") || call.starts_with("waitUntilBooted ") || call.starts_with("launchSimulator ");
}

} // namespace

WorkspaceRules::WorkspaceRules(WorkspaceCoordinator& coordinator, testing::CallLog& log)
    : m_coordinator(coordinator)
    , m_phase(coordinator.phase())
    , m_status(coordinator.statusMessage())
    , m_recovery(coordinator.recoveryMessage())
    , m_candidates(coordinator.candidateTargets()) {
    log.whenCalled = [this](const std::string& call) { noteCall(call); };
    const auto watch = [&](void (WorkspaceCoordinator::*changed)(), void (WorkspaceRules::*note)()) {
        QObject::connect(&coordinator, changed, &coordinator, [this, note] { (this->*note)(); });
    };
    watch(&WorkspaceCoordinator::phaseChanged, &WorkspaceRules::notePhase);
    watch(&WorkspaceCoordinator::statusMessageChanged, &WorkspaceRules::noteStatus);
    watch(&WorkspaceCoordinator::recoveryMessageChanged, &WorkspaceRules::noteRecovery);
    watch(&WorkspaceCoordinator::candidateTargetsChanged, &WorkspaceRules::noteCandidates);
}

QString WorkspaceRules::address(int run) {
    return u"http://run%1/"_s.arg(run);
}

QString WorkspaceRules::errorText(int run) {
    return u"Error of run %1"_s.arg(run);
}

QString WorkspaceRules::listingErrorText() {
    return u"No list"_s;
}

void WorkspaceRules::beginRun(RunKind kind, int run, const QString& deviceID) {
    m_run = run;
    m_deviceID = deviceID;
    m_isStopped = false;
    m_attachesDue = kind == RunKind::choice ? 1 : 0;
    const bool isRefused = (kind == RunKind::reload && m_phase != running) ||
                           (kind == RunKind::choice && m_phase != running && m_phase != attachingInspector);
    m_hasLostPhase = isRefused;
}

void WorkspaceRules::stop() {
    m_isStopped = true;
    m_attachesDue = 0;
}

void WorkspaceRules::require(bool holds, const std::string& rule) {
    if (!holds && !m_broken)
        m_broken = rule;
}

bool WorkspaceRules::isIn(WorkspacePhase phase) const {
    return m_hasLostPhase || m_phase == phase;
}

void WorkspaceRules::noteCall(const std::string& call) {
    const bool isAttach = call.starts_with("attach ");
    const bool isLook = call.starts_with("snapshotTargets ");
    const bool isOpening = call.starts_with("openURL ");
    if (isAttach || isLook || isOpening || isDeviceCall(call))
        require(!m_isStopped, "a stopped workspace calls: " + call);
    if (isDeviceCall(call)) {
        require(isIn(booting), "not while booting: " + call);
        require(call.ends_with(' ' + m_deviceID.toStdString()), "another run's device: " + call);
    }
    if (isOpening) {
        require(isIn(openingPage), "not while opening the page: " + call);
        require(call.ends_with(' ' + address(m_run).toStdString()), "another run's address: " + call);
    }
    if (isLook) {
        require(isIn(openingPage) || isIn(attachingInspector) || isIn(running), "looks at the wrong time: " + call);
        require(m_phase != running || m_candidates.empty(), "looks while a choice is pending");
    }
    if (isAttach) {
        require(m_hasLostPhase || m_attachesDue > 0, "attaches without being due: " + call);
        --m_attachesDue;
    }
    if (call.starts_with("tile "))
        require(m_isArranging || (!m_isStopped && isIn(attachingInspector)), "tiles at the wrong time");
    if (call == "restore")
        require(m_isArranging, "puts windows back without being asked to");
}

void WorkspaceRules::notePhase() {
    const WorkspacePhase previous = std::exchange(m_phase, m_coordinator.phase());
    const std::string move = rawValue(previous).toStdString() + " to " + rawValue(m_phase).toStdString();
    m_moves.emplace(previous, m_phase);
    require(previous != m_phase, "the phase is published without a change");
    require(WorkspaceStateMachine::allowedTransitions().at(previous).contains(m_phase),
            "a move not in the table: " + move);
    if (m_phase == failed && m_listingFails)
        m_hasLostPhase = true;
    else
        require(!m_isStopped || m_isArranging, "a stopped workspace moves from " + move);
    m_attachesDue = m_phase == attachingInspector ? std::max(m_attachesDue, 1) : 0;
}

void WorkspaceRules::noteStatus() {
    const QString previous = std::exchange(m_status, m_coordinator.statusMessage());
    const std::string text = m_status.toStdString();
    require(previous != m_status, "a status is published without a change: " + text);
    for (const PhaseText& runText : runTexts()) {
        if (!m_status.startsWith(runText.beginning))
            continue;
        require(!m_isStopped, "a stopped workspace says: " + text);
        require(isIn(runText.phase), "said in another phase: " + text);
    }
    if (m_status.startsWith(u"Opening "))
        require(m_status.startsWith(u"Opening run%1"_s.arg(m_run)), "another run's text: " + text);
    // Tiling by hand fails as the run's own tiling does.
    if (m_status.startsWith(u"Error of run") && !m_isArranging) {
        require(!m_isStopped, "a stopped workspace fails: " + text);
        require(m_status == errorText(m_run), "another run's error: " + text);
    }
    if (m_status == u"Choose the newest Safari page")
        require(m_phase == running, "the monitor asks in another phase than running");
    if (m_status.startsWith(u"The operation couldn"))
        require(m_hasLostPhase, "a run asks for a move that the table refuses");
}

void WorkspaceRules::noteRecovery() {
    const auto previous = std::exchange(m_recovery, m_coordinator.recoveryMessage());
    require(previous != m_recovery, "a recovery text is published without a change");
}

void WorkspaceRules::noteCandidates() {
    const auto previous = std::exchange(m_candidates, m_coordinator.candidateTargets());
    require(previous != m_candidates, "candidates are published without a change");
    if (!m_candidates.empty())
        require(!m_isStopped && (m_phase == running || isIn(attachingInspector)),
                "a choice is offered at the wrong time");
}

} // namespace corvanta
