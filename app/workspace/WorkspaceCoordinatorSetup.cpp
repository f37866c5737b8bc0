// SPDX-License-Identifier: MIT
// The coordinator's setup checks, recovery actions and device list.
#include "workspace/WorkspaceCoordinator.h"

#include "setup/AccessibilityPermission.h"
#include "setup/SetupCheckEvaluator.h"

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto recoveryActionPause = 500ms;
constexpr auto softwareUpdatePane = u"x-apple.systempreferences:com.apple.Software-Update-Settings.extension";
constexpr auto xcodeStorePage = u"macappstore://apps.apple.com/app/xcode/id497799835";

} // namespace

QCoro::Task<std::optional<SetupFacts>> WorkspaceCoordinator::gatherFacts() {
    const std::shared_ptr<const WorkspaceRun::Owner> owner = m_runs;
    if (!m_services.accessibility.isTrusted())
        co_return co_await m_services.preflightProbe.facts(false, std::nullopt);

    bool safariRuns = true;
    try {
        co_await m_services.safari.ensureSafariRunning();
    } catch (...) { // Shown as a failed row like any other reason why Safari cannot be read.
        safariRuns = false;
    }
    if (!owner->coordinator)
        co_return std::nullopt;
    if (!safariRuns)
        co_return co_await m_services.preflightProbe.facts(true, false);
    co_await m_services.clock.sleepFor(safariLaunchPause);
    if (!owner->coordinator)
        co_return std::nullopt;
    co_return co_await m_services.preflightProbe.facts(true, m_services.safari.developerFeaturesAvailable());
}

QCoro::Task<void> WorkspaceCoordinator::runSetupChecks() {
    if (m_isCheckingSetup)
        co_return;
    const std::shared_ptr<const WorkspaceRun::Owner> owner = m_runs;
    publish(m_isCheckingSetup, true, &WorkspaceCoordinator::isCheckingSetupChanged);
    showStatus(u"Checking this Mac"_s);
    showRecovery(std::nullopt);

    const auto facts = co_await gatherFacts();
    if (!facts || !owner->coordinator)
        co_return;

    publish(m_setupChecks, SetupCheckEvaluator::evaluate(*facts), &WorkspaceCoordinator::setupChecksChanged);
    if (allRequirementsSatisfied(m_setupChecks)) {
        showStatus(m_devices.empty() ? u"Setup ready; looking for simulators"_s : u"Ready"_s);
    } else {
        showStatus(u"Complete the setup items above"_s);
        showRecovery(u"Use the action beside each missing requirement, then click Check Again."_s);
    }
    publish(m_isCheckingSetup, false, &WorkspaceCoordinator::isCheckingSetupChanged);
}

void WorkspaceCoordinator::openAddress(QStringView address) {
    if (const auto url = URL::parse(address))
        m_services.desktop.openURL(*url);
}

QCoro::Task<void> WorkspaceCoordinator::openXcode() {
    const auto path = m_services.desktop.applicationPath(u"com.apple.dt.Xcode"_s);
    if (!path) {
        openAddress(xcodeStorePage);
        co_return;
    }
    co_await m_services.desktop.openApplication(*path);
}

QCoro::Task<void> WorkspaceCoordinator::carryOut(SetupRecoveryAction action) {
    switch (action) {
    case SetupRecoveryAction::none:
        co_return;
    case SetupRecoveryAction::openSoftwareUpdate:
        openAddress(softwareUpdatePane);
        co_return;
    case SetupRecoveryAction::openXcodeDownload:
        openAddress(xcodeStorePage);
        co_return;
    case SetupRecoveryAction::openXcode:
        co_await openXcode();
        co_return;
    case SetupRecoveryAction::requestAccessibility:
        AccessibilityPermission::requestIfNeeded(m_services.accessibility, m_services.desktop);
        co_return;
    case SetupRecoveryAction::openSafari:
        co_await m_services.safari.ensureSafariRunning();
        co_return;
    }
}

QCoro::Task<void> WorkspaceCoordinator::performSetupAction(SetupRecoveryAction action) {
    if (action == SetupRecoveryAction::none)
        co_return;
    const std::shared_ptr<const WorkspaceRun::Owner> owner = m_runs;
    try {
        co_await carryOut(action);
    } catch (...) { // The checks that follow show what is still missing.
    }
    if (!owner->coordinator)
        co_return;
    co_await m_services.clock.sleepFor(recoveryActionPause);
    if (!owner->coordinator)
        co_return;
    co_await runSetupChecks();
    if (owner->coordinator && allRequirementsSatisfied(m_setupChecks))
        co_await refreshDevices();
}

QCoro::Task<void> WorkspaceCoordinator::listDevices() {
    const std::shared_ptr<const WorkspaceRun::Owner> owner = m_runs;
    auto devices = co_await m_services.simulator.availableIOSDevices();
    if (!owner->coordinator)
        co_return;
    publish(m_devices, std::move(devices), &WorkspaceCoordinator::devicesChanged);
    if (m_devices.empty()) {
        setSelectedDeviceID(std::nullopt);
        showStatus(u"No available iOS simulators"_s);
        showRecovery(u"Install an iOS Simulator runtime from Xcode > Settings > Components."_s);
        co_return;
    }
    if (!selectedDevice()) {
        setSelectedDeviceID(m_devices.front().udid);
        persistProfile();
    }
    if (m_phase == WorkspacePhase::idle)
        showStatus(u"Ready"_s);
}

QCoro::Task<void> WorkspaceCoordinator::refreshDevices() {
    if (m_isRefreshingDevices)
        co_return;
    const std::shared_ptr<const WorkspaceRun::Owner> owner = m_runs;
    publish(m_isRefreshingDevices, true, &WorkspaceCoordinator::isRefreshingDevicesChanged);
    try {
        co_await listDevices();
    } catch (...) {
        if (owner->coordinator)
            fail(std::current_exception());
    }
    if (owner->coordinator)
        publish(m_isRefreshingDevices, false, &WorkspaceCoordinator::isRefreshingDevicesChanged);
}

} // namespace corvanta
