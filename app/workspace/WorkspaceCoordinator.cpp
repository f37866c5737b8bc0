// SPDX-License-Identifier: MIT
#include "workspace/WorkspaceCoordinator.h"

#include "setup/SetupCheckEvaluator.h"

#include <algorithm>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

WorkspaceCoordinator::WorkspaceCoordinator(const Services& services, QObject* parent)
    : QObject(parent)
    , m_services(services)
    , m_runs(std::make_shared<WorkspaceRun::Owner>())
    , m_profile(services.profileRepository.load())
    , m_selectedDeviceID(m_profile.selectedDeviceUDID)
    , m_urlInput(m_profile.pageURL)
    , m_statusMessage(u"Ready"_s)
    , m_selectedCoordinate(m_profile.coordinate)
    , m_selectedLocationName(m_profile.locationName)
    , m_mapSelectionID(services.clock.freshUUID())
    , m_favorites(services.locationRepository.loadFavorites())
    , m_recents(services.locationRepository.loadRecents()) {
    m_runs->coordinator = this;
}

WorkspaceCoordinator::~WorkspaceCoordinator() {
    m_runs->coordinator = nullptr;
    endRun();
    cancelMonitoring();
}

std::optional<SimulatorDevice> WorkspaceCoordinator::selectedDevice() const {
    if (!m_selectedDeviceID)
        return std::nullopt;
    const auto device = std::ranges::find(m_devices, *m_selectedDeviceID, &SimulatorDevice::udid);
    return device == m_devices.end() ? std::nullopt : std::optional(*device);
}

bool WorkspaceCoordinator::canStart() const {
    return selectedDevice() && allRequirementsSatisfied(m_setupChecks) && !isWorking(m_phase);
}

bool WorkspaceCoordinator::canReload() const {
    return selectedDevice() && m_phase == WorkspacePhase::running;
}

bool WorkspaceCoordinator::canRetile() const {
    return m_phase == WorkspacePhase::running && !m_controlWindow.expired();
}

bool WorkspaceCoordinator::canStop() const {
    return m_phase != WorkspacePhase::idle;
}

void WorkspaceCoordinator::setSelectedDeviceID(const std::optional<QString>& udid) {
    publish(m_selectedDeviceID, udid, &WorkspaceCoordinator::selectedDeviceIDChanged);
}

void WorkspaceCoordinator::setUrlInput(const QString& text) {
    publish(m_urlInput, text, &WorkspaceCoordinator::urlInputChanged);
}

void WorkspaceCoordinator::setControlWindow(const std::weak_ptr<ControlWindow>& window) {
    m_controlWindow = window;
    Q_EMIT controlWindowChanged();
}

void WorkspaceCoordinator::showStatus(const QString& status) {
    publish(m_statusMessage, status, &WorkspaceCoordinator::statusMessageChanged);
}

void WorkspaceCoordinator::showRecovery(const std::optional<QString>& recovery) {
    publish(m_recoveryMessage, recovery, &WorkspaceCoordinator::recoveryMessageChanged);
}

void WorkspaceCoordinator::persistProfile() {
    m_profile.selectedDeviceUDID = m_selectedDeviceID;
    m_profile.pageURL = m_urlInput;
    m_profile.coordinate = m_selectedCoordinate;
    m_profile.locationName = m_selectedLocationName;
    m_profile.lastUsedAt = m_services.clock.wallClockNow();
    m_services.profileRepository.save(m_profile);
}

QCoro::Task<void> WorkspaceCoordinator::finishTasks() {
    co_await m_tasks.join();
}

} // namespace corvanta
