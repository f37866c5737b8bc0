// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"
#include "ControlWindow.h"
#include "Desktop.h"
#include "PlaceSearch.h"
#include "layout/WorkspaceArranging.h"
#include "locations/LocationRepository.h"
#include "safari/SafariInspecting.h"
#include "safari/SafariTargetDecision.h"
#include "setup/SetupCheck.h"
#include "setup/SystemPreflightProbing.h"
#include "simulator/SimulatorControlling.h"
#include "support/Clock.h"
#include "support/TaskScope.h"
#include "workspace/ProfileRepository.h"
#include "workspace/WorkspaceRun.h"
#include "workspace/WorkspaceStateMachine.h"

#include <QObject>
#include <QUuid>

#include <chrono>
#include <exception>
#include <memory>
#include <optional>
#include <vector>

namespace corvanta {

/// The one controller behind the window and the menus.
///
/// Everything that is shown is one of its properties; each is published once, after it has changed, on the main thread,
/// and only when it has changed. Long operations are tasks that suspend while a service works; they handle their own
/// errors and end in a visible state. Main thread only.
class WorkspaceCoordinator final : public QObject {
    Q_OBJECT
    Q_PROPERTY(std::vector<corvanta::SimulatorDevice> devices READ devices NOTIFY devicesChanged)
    Q_PROPERTY(std::optional<QString> selectedDeviceID READ selectedDeviceID WRITE setSelectedDeviceID NOTIFY
                   selectedDeviceIDChanged)
    Q_PROPERTY(QString urlInput READ urlInput WRITE setUrlInput NOTIFY urlInputChanged)
    Q_PROPERTY(corvanta::WorkspacePhase phase READ phase NOTIFY phaseChanged)
    Q_PROPERTY(QString statusMessage READ statusMessage NOTIFY statusMessageChanged)
    Q_PROPERTY(std::optional<QString> recoveryMessage READ recoveryMessage NOTIFY recoveryMessageChanged)
    Q_PROPERTY(bool isRefreshingDevices READ isRefreshingDevices NOTIFY isRefreshingDevicesChanged)
    Q_PROPERTY(bool isLocationWorking READ isLocationWorking NOTIFY isLocationWorkingChanged)
    Q_PROPERTY(
        std::optional<corvanta::Coordinate> selectedCoordinate READ selectedCoordinate NOTIFY selectedCoordinateChanged)
    Q_PROPERTY(QString selectedLocationName READ selectedLocationName NOTIFY selectedLocationNameChanged)
    Q_PROPERTY(QUuid mapSelectionID READ mapSelectionID NOTIFY mapSelectionIDChanged)
    Q_PROPERTY(bool recenterMapOnSelection READ recenterMapOnSelection NOTIFY recenterMapOnSelectionChanged)
    Q_PROPERTY(std::vector<corvanta::StoredLocation> favorites READ favorites NOTIFY favoritesChanged)
    Q_PROPERTY(std::vector<corvanta::StoredLocation> recents READ recents NOTIFY recentsChanged)
    Q_PROPERTY(
        std::vector<corvanta::SafariTarget> candidateTargets READ candidateTargets NOTIFY candidateTargetsChanged)
    Q_PROPERTY(std::vector<corvanta::SetupCheck> setupChecks READ setupChecks NOTIFY setupChecksChanged)
    Q_PROPERTY(bool isCheckingSetup READ isCheckingSetup NOTIFY isCheckingSetupChanged)

public:
    /// What the coordinator works with. All of it outlives the coordinator and its tasks.
    struct Services {
        SimulatorControlling& simulator;
        SafariInspecting& safari;
        WorkspaceArranging& arranger;
        SystemPreflightProbing& preflightProbe;
        ProfileRepository& profileRepository;
        LocationRepository& locationRepository;
        PlaceSearch& placeSearch;
        AccessibilityClient& accessibility;
        Desktop& desktop;
        Clock& clock;
    };

    /// Reads the profile and the location lists and does nothing else.
    explicit WorkspaceCoordinator(const Services& services, QObject* parent = nullptr);
    ~WorkspaceCoordinator() override;

    [[nodiscard]] const std::vector<SimulatorDevice>& devices() const { return m_devices; }

    [[nodiscard]] const std::optional<QString>& selectedDeviceID() const { return m_selectedDeviceID; }

    [[nodiscard]] const QString& urlInput() const { return m_urlInput; }

    [[nodiscard]] WorkspacePhase phase() const { return m_phase; }

    [[nodiscard]] const QString& statusMessage() const { return m_statusMessage; }

    [[nodiscard]] const std::optional<QString>& recoveryMessage() const { return m_recoveryMessage; }

    [[nodiscard]] bool isRefreshingDevices() const { return m_isRefreshingDevices; }

    /// A location command or the look-up of a place is under way.
    [[nodiscard]] bool isLocationWorking() const { return m_isLocationWorking; }

    [[nodiscard]] const std::optional<Coordinate>& selectedCoordinate() const { return m_selectedCoordinate; }

    [[nodiscard]] const QString& selectedLocationName() const { return m_selectedLocationName; }

    /// Renewed at each selection, so that a repeated one can be told from none.
    [[nodiscard]] const QUuid& mapSelectionID() const { return m_mapSelectionID; }

    /// Whether the map is to move to the selection that was made last.
    [[nodiscard]] bool recenterMapOnSelection() const { return m_recenterMapOnSelection; }

    [[nodiscard]] const std::vector<StoredLocation>& favorites() const { return m_favorites; }

    [[nodiscard]] const std::vector<StoredLocation>& recents() const { return m_recents; }

    [[nodiscard]] const std::vector<SafariTarget>& candidateTargets() const { return m_candidateTargets; }

    [[nodiscard]] const std::vector<SetupCheck>& setupChecks() const { return m_setupChecks; }

    [[nodiscard]] bool isCheckingSetup() const { return m_isCheckingSetup; }

    /// The listed device whose udid is the selected one.
    [[nodiscard]] std::optional<SimulatorDevice> selectedDevice() const;

    /// The selected point as the simulator takes it.
    [[nodiscard]] std::optional<Coordinate> selectedCoordinateValue() const { return m_selectedCoordinate; }

    /// A device is selected, the setup is complete, and no start is under way.
    [[nodiscard]] bool canStart() const;
    /// A device is selected and the workspace runs.
    [[nodiscard]] bool canReload() const;
    /// The workspace runs and the control window still exists.
    [[nodiscard]] bool canRetile() const;
    /// The phase is anything but idle.
    [[nodiscard]] bool canStop() const;

    void setSelectedDeviceID(const std::optional<QString>& udid);
    void setUrlInput(const QString& text);

    /// The window that is tiled as the left column. Held weakly; an empty pointer takes it away.
    void setControlWindow(const std::weak_ptr<ControlWindow>& window);

    /// Gathers the facts of this machine and judges them. A second run never overlaps the first.
    [[nodiscard]] QCoro::Task<void> runSetupChecks();

    /// Carries out what a failed check offers, then checks again.
    [[nodiscard]] QCoro::Task<void> performSetupAction(SetupRecoveryAction action);

    /// Lists the devices and keeps one of them selected. A second run never overlaps the first.
    [[nodiscard]] QCoro::Task<void> refreshDevices();

    /// Boots the device, opens the page, attaches its Web Inspector and tiles the windows.
    [[nodiscard]] QCoro::Task<void> startWorkspace();

    /// Opens the address again in the running workspace.
    [[nodiscard]] QCoro::Task<void> reloadPage();

    /// Attaches the inspector to the page that the user picked among the candidates.
    [[nodiscard]] QCoro::Task<void> chooseInspectorTarget(SafariTarget target);

    /// Tiles the windows again. An error only sets the two messages.
    void retile();

    /// Puts the windows back and returns to idle; Safari and the Simulator are left running.
    void stopWorkspace();

    /// Makes a point the selected one and stores it. The device gets it at the next start, or by
    /// `setLocationOnSimulator()`.
    void selectLocation(Coordinate coordinate, const QString& name, bool recenter);

    /// Looks a suggested place up and selects it.
    [[nodiscard]] QCoro::Task<void> resolveLocation(PlaceCompletion completion);

    /// Adds the selected point to the favorites.
    void saveFavorite();

    /// Takes the entry with that identity out of the favorites.
    void deleteFavorite(const QUuid& id);

    /// Sends the selected point to the selected device.
    [[nodiscard]] QCoro::Task<void> setLocationOnSimulator();

    /// Ends the simulated location of the selected device and forgets the selected point.
    [[nodiscard]] QCoro::Task<void> clearLocationOnSimulator();

    /// Stores the selection, the address and the location as the profile.
    void persistProfile();

    /// Returns once no task of the coordinator's own is left. Call `stopWorkspace()` first.
    [[nodiscard]] QCoro::Task<void> finishTasks();

Q_SIGNALS:
    void devicesChanged();
    void selectedDeviceIDChanged();
    void urlInputChanged();
    void phaseChanged();
    void statusMessageChanged();
    void recoveryMessageChanged();
    void isRefreshingDevicesChanged();
    void isLocationWorkingChanged();
    void selectedCoordinateChanged();
    void selectedLocationNameChanged();
    void mapSelectionIDChanged();
    void recenterMapOnSelectionChanged();
    void favoritesChanged();
    void recentsChanged();
    void candidateTargetsChanged();
    void setupChecksChanged();
    void isCheckingSetupChanged();
    /// The control window was replaced or taken away; `canRetile` depends on it.
    void controlWindowChanged();

private:
    /// Safari needs a moment before its menus can be read.
    static constexpr auto safariLaunchPause = std::chrono::milliseconds(300);

    using ChangeSignal = void (WorkspaceCoordinator::*)();

    /// Assigns and publishes, unless the value is the same.
    template<typename Value>
    void publish(Value& field, Value value, ChangeSignal changed);

    void showStatus(const QString& status);
    void showRecovery(const std::optional<QString>& recovery);

    [[nodiscard]] QCoro::Task<void> listDevices();
    /// Nothing when the coordinator has gone meanwhile.
    [[nodiscard]] QCoro::Task<std::optional<SetupFacts>> gatherFacts();
    [[nodiscard]] QCoro::Task<void> openXcode();
    [[nodiscard]] QCoro::Task<void> carryOut(SetupRecoveryAction action);
    void openAddress(QStringView address);

    [[nodiscard]] WorkspaceRun beginRun();
    void endRun();
    void transition(WorkspacePhase next);
    void fail(const std::exception_ptr& error);
    void showError(const std::exception_ptr& error);
    [[nodiscard]] QCoro::Task<void> performStart(WorkspaceRun run, SimulatorDevice device);
    [[nodiscard]] QCoro::Task<void> performReload(WorkspaceRun run, SimulatorDevice device);
    [[nodiscard]] QCoro::Task<void> prepareDevice(WorkspaceRun run, SimulatorDevice device);
    /// Normalises the typed address and makes it this run's; throws URLNormalizationError.
    URL adoptAddress();
    /// The pages that the menu lists now, nothing when it cannot be read. Throws RunSuperseded.
    [[nodiscard]] QCoro::Task<std::optional<std::vector<SafariTarget>>>
    readTargets(WorkspaceRun run, QString deviceName, CancellationToken token);
    [[nodiscard]] QCoro::Task<SafariTargetDecision> waitForTarget(WorkspaceRun run, QString deviceName,
                                                                  std::vector<SafariTarget> previous, URL requestedURL);
    [[nodiscard]] QCoro::Task<void> handleTargetDecision(WorkspaceRun run, SafariTargetDecision decision,
                                                         SimulatorDevice device);
    [[nodiscard]] QCoro::Task<void> attach(WorkspaceRun run, SafariTarget target, SimulatorDevice device);

    void startMonitoring(const SimulatorDevice& device);
    void cancelMonitoring();
    [[nodiscard]] static QCoro::Task<void> monitor(std::shared_ptr<const WorkspaceRun::Owner> owner,
                                                   SimulatorDevice device, CancellationToken token);
    [[nodiscard]] QCoro::Task<void> pollTargets(SimulatorDevice device, CancellationToken token);
    [[nodiscard]] QCoro::Task<void> judgePoll(WorkspaceRun run, SimulatorDevice device, CancellationToken token);

    class LocationWork;
    void countLocationWork(int change);
    void renewMapSelection();

    Services m_services;
    std::shared_ptr<WorkspaceRun::Owner> m_runs;
    TaskScope m_tasks;

    WorkspaceProfile m_profile;
    WorkspaceStateMachine m_stateMachine;
    std::weak_ptr<ControlWindow> m_controlWindow;
    std::vector<SafariTarget> m_knownTargets;
    std::optional<URL> m_activeURL;
    std::optional<CancellationSource> m_monitorTask;

    std::vector<SimulatorDevice> m_devices;
    std::optional<QString> m_selectedDeviceID;
    QString m_urlInput;
    WorkspacePhase m_phase = WorkspacePhase::idle;
    QString m_statusMessage;
    std::optional<QString> m_recoveryMessage;
    bool m_isRefreshingDevices = false;
    bool m_isLocationWorking = false;
    int m_locationWorkCount = 0;
    std::optional<Coordinate> m_selectedCoordinate;
    QString m_selectedLocationName;
    QUuid m_mapSelectionID;
    bool m_recenterMapOnSelection = false;
    std::vector<StoredLocation> m_favorites;
    std::vector<StoredLocation> m_recents;
    std::vector<SafariTarget> m_candidateTargets;
    std::vector<SetupCheck> m_setupChecks;
    bool m_isCheckingSetup = false;
};

template<typename Value>
void WorkspaceCoordinator::publish(Value& field, Value value, ChangeSignal changed) {
    if (field == value)
        return;
    field = std::move(value);
    Q_EMIT(this->*changed)();
}

} // namespace corvanta
