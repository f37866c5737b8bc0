// SPDX-License-Identifier: MIT
// The coordinator's start, reload, choice, re-tile and stop.
#include "workspace/WorkspaceCoordinator.h"

#include "safari/SafariTargetSelector.h"
#include "safari/WorkspaceAutomationError.h"
#include "setup/SetupCheckEvaluator.h"
#include "workspace/URLNormalizer.h"

#include <utility>
#include <variant>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto targetInterval = 250ms;
constexpr int targetAttempts = 40;

QString hostOrWhole(const URL& url) {
    return url.host().value_or(url.absoluteString());
}

} // namespace

WorkspaceRun WorkspaceCoordinator::beginRun() {
    endRun();
    return WorkspaceRun(m_runs);
}

void WorkspaceCoordinator::endRun() {
    ++m_runs->currentRun;
    std::exchange(m_runs->cancellation, {}).cancel();
}

void WorkspaceCoordinator::transition(WorkspacePhase next) {
    m_stateMachine.transition(next);
    publish(m_phase, m_stateMachine.phase(), &WorkspaceCoordinator::phaseChanged);
}

void WorkspaceCoordinator::fail(const std::exception_ptr& error) {
    if (m_phase != WorkspacePhase::failed) {
        try {
            transition(WorkspacePhase::failed);
        } catch (const WorkspaceTransitionError&) { // The messages below still tell what happened.
        }
    }
    showError(error);
}

void WorkspaceCoordinator::showError(const std::exception_ptr& error) {
    const ErrorTexts texts = errorTexts(error);
    showStatus(texts.description);
    showRecovery(texts.recoverySuggestion);
}

QCoro::Task<void> WorkspaceCoordinator::startWorkspace() {
    if (!allRequirementsSatisfied(m_setupChecks)) {
        showStatus(u"Complete the setup items above before starting"_s);
        showRecovery(u"Fix the failed checks, then click Check Again."_s);
        co_return;
    }
    const auto device = selectedDevice();
    if (!device) {
        showStatus(u"Choose an iOS simulator"_s);
        co_return;
    }
    cancelMonitoring();
    publish(m_candidateTargets, {}, &WorkspaceCoordinator::candidateTargetsChanged);
    showRecovery(std::nullopt);
    if (m_phase != WorkspacePhase::idle)
        stopWorkspace();

    const WorkspaceRun run = beginRun();
    try {
        co_await performStart(run, *device);
    } catch (...) {
        if (run.isCurrent())
            fail(std::current_exception());
    }
}

QCoro::Task<void> WorkspaceCoordinator::performStart(WorkspaceRun run, SimulatorDevice device) {
    transition(WorkspacePhase::preflight);
    showStatus(u"Checking Xcode, Safari, and permissions"_s);
    const URL url = adoptAddress();

    co_await m_services.safari.ensureSafariRunning();
    run.check();
    co_await m_services.clock.sleepFor(safariLaunchPause, run.token());
    run.check();
    if (!m_services.safari.developerFeaturesAvailable())
        throw WorkspaceAutomationError::safariDeveloperFeaturesMissing();

    // Before the device boots, so that the choice survives a later failure.
    persistProfile();

    co_await prepareDevice(run, device);

    transition(WorkspacePhase::openingPage);
    showStatus(u"Opening "_s + hostOrWhole(url) + u" in simulated Safari"_s);
    // The menu may not list the device at all before its first page is opened.
    const auto previous = co_await readTargets(run, device.name, run.token());
    co_await m_services.simulator.openURL(device.udid, url);
    run.check();

    transition(WorkspacePhase::attachingInspector);
    showStatus(u"Waiting for Safari Web Inspector"_s);
    const auto decision = co_await waitForTarget(run, device.name, previous.value_or(std::vector<SafariTarget>{}), url);
    co_await handleTargetDecision(run, decision, device);
}

URL WorkspaceCoordinator::adoptAddress() {
    URL url = URLNormalizer::normalize(m_urlInput);
    m_activeURL = url;
    setUrlInput(url.absoluteString());
    return url;
}

QCoro::Task<void> WorkspaceCoordinator::prepareDevice(WorkspaceRun run, SimulatorDevice device) {
    transition(WorkspacePhase::booting);
    showStatus((device.isBooted() ? u"Preparing "_s : u"Booting "_s) + device.name);
    co_await m_services.simulator.boot(device);
    run.check();
    co_await m_services.simulator.waitUntilBooted(device.udid);
    run.check();
    co_await m_services.simulator.launchSimulator(device.udid);
    run.check();

    if (!m_selectedCoordinate)
        co_return;
    const Coordinate coordinate = *m_selectedCoordinate;
    const QString name = m_selectedLocationName;
    showStatus(u"Restoring "_s + name);
    co_await m_services.simulator.setLocation(device.udid, coordinate);
    run.check();
    publish(m_recents, m_services.locationRepository.recordRecent(name, coordinate),
            &WorkspaceCoordinator::recentsChanged);
}

QCoro::Task<std::optional<std::vector<SafariTarget>>>
WorkspaceCoordinator::readTargets(WorkspaceRun run, QString deviceName, CancellationToken token) {
    std::optional<std::vector<SafariTarget>> targets;
    try {
        targets = co_await m_services.safari.snapshotTargets(deviceName, token);
    } catch (...) { // Safari may be busy or its menu closed for a moment; who needs the list looks again.
    }
    run.check();
    co_return targets;
}

QCoro::Task<SafariTargetDecision> WorkspaceCoordinator::waitForTarget(WorkspaceRun run, QString deviceName,
                                                                      std::vector<SafariTarget> previous,
                                                                      URL requestedURL) {
    std::vector<SafariTarget> current;
    for (int attempt = 0; attempt < targetAttempts; ++attempt) {
        if (auto targets = co_await readTargets(run, deviceName, run.token())) {
            current = *std::move(targets);
            SafariTargetDecision decision = SafariTargetSelector::decide(previous, current, requestedURL);
            if (decision != SafariTargetDecision::none()) {
                m_knownTargets = current;
                co_return decision;
            }
        }
        co_await m_services.clock.sleepFor(targetInterval, run.token());
        run.check();
    }
    // No page could be told apart from the old ones, so the page is picked from everything listed.
    m_knownTargets = current;
    co_return SafariTargetSelector::decide({}, current, requestedURL);
}

QCoro::Task<void> WorkspaceCoordinator::handleTargetDecision(WorkspaceRun run, SafariTargetDecision decision,
                                                             SimulatorDevice device) {
    if (const auto* const attaching = std::get_if<SafariTargetDecision::Attach>(&decision.value())) {
        co_await attach(run, attaching->target, device);
    } else if (const auto* const ambiguous = std::get_if<SafariTargetDecision::Ambiguous>(&decision.value())) {
        publish(m_candidateTargets, ambiguous->targets, &WorkspaceCoordinator::candidateTargetsChanged);
        showStatus(u"Choose the Safari page to inspect"_s);
        showRecovery(u"Several new inspectable pages appeared together."_s);
    } else {
        throw WorkspaceAutomationError::simulatorMenuUnavailable(device.name);
    }
}

QCoro::Task<void> WorkspaceCoordinator::attach(WorkspaceRun run, SafariTarget target, SimulatorDevice device) {
    showStatus(u"Attaching Web Inspector to "_s + target.title);
    co_await m_services.safari.attach(target, device.name, run.token());
    run.check();
    // A simulator that is busy with the page answers late, and tiling asks it once.
    co_await m_services.accessibility.lookAhead(u"com.apple.iphonesimulator"_s);
    run.check();
    const auto controlWindow = m_controlWindow.lock();
    if (!controlWindow)
        throw WorkspaceAutomationError::inspectorWindowUnavailable();
    m_services.arranger.tile(controlWindow, device.name, m_services.safari.managedInspectorWindow(),
                             m_profile.columnRatios);
    transition(WorkspacePhase::running);
    showStatus(u"Workspace running"_s);
    showRecovery(std::nullopt);
    publish(m_candidateTargets, {}, &WorkspaceCoordinator::candidateTargetsChanged);
    startMonitoring(device);
}

QCoro::Task<void> WorkspaceCoordinator::chooseInspectorTarget(SafariTarget target) {
    const auto device = selectedDevice();
    if (!device)
        co_return;
    const WorkspaceRun run = beginRun();
    publish(m_candidateTargets, {}, &WorkspaceCoordinator::candidateTargetsChanged);
    try {
        if (m_phase == WorkspacePhase::running)
            transition(WorkspacePhase::attachingInspector);
        co_await attach(run, target, *device);
    } catch (...) {
        if (run.isCurrent())
            fail(std::current_exception());
    }
}

QCoro::Task<void> WorkspaceCoordinator::reloadPage() {
    const auto device = selectedDevice();
    if (!device)
        co_return;
    const WorkspaceRun run = beginRun();
    try {
        co_await performReload(run, *device);
    } catch (...) {
        if (run.isCurrent())
            fail(std::current_exception());
    }
}

QCoro::Task<void> WorkspaceCoordinator::performReload(WorkspaceRun run, SimulatorDevice device) {
    const URL url = adoptAddress();
    persistProfile();
    transition(WorkspacePhase::openingPage);
    showStatus(u"Opening "_s + hostOrWhole(url));
    const auto previous = co_await readTargets(run, device.name, run.token());
    co_await m_services.simulator.openURL(device.udid, url);
    run.check();
    transition(WorkspacePhase::attachingInspector);
    const auto decision = co_await waitForTarget(run, device.name, previous.value_or(std::vector<SafariTarget>{}), url);
    co_await handleTargetDecision(run, decision, device);
}

void WorkspaceCoordinator::retile() {
    const auto device = selectedDevice();
    const auto controlWindow = m_controlWindow.lock();
    if (!device || !controlWindow)
        return;
    try {
        m_services.arranger.tile(controlWindow, device->name, m_services.safari.managedInspectorWindow(),
                                 m_profile.columnRatios);
        showStatus(u"Workspace re-tiled"_s);
        showRecovery(std::nullopt);
    } catch (...) {
        showError(std::current_exception());
    }
}

void WorkspaceCoordinator::stopWorkspace() {
    endRun();
    cancelMonitoring();
    m_services.arranger.restore();
    // A choice was pending only as long as the run that offered it.
    publish(m_candidateTargets, {}, &WorkspaceCoordinator::candidateTargetsChanged);
    if (m_phase != WorkspacePhase::idle)
        transition(WorkspacePhase::idle);
    showStatus(u"Stopped; external apps were left running"_s);
}

} // namespace corvanta
