// SPDX-License-Identifier: MIT
// The coordinator's location actions. None of them moves the phase: their errors only set the two messages.
#include "workspace/WorkspaceCoordinator.h"

#include "locations/CoordinateFormatter.h"
#include "support/Text.h"

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

/// Keeps `isLocationWorking` true for as long as an action runs, also where two of them overlap.
class WorkspaceCoordinator::LocationWork {
public:
    explicit LocationWork(std::shared_ptr<const WorkspaceRun::Owner> owner)
        : m_owner(std::move(owner)) {
        m_owner->coordinator->countLocationWork(1);
    }

    LocationWork(const LocationWork&) = delete;
    LocationWork& operator=(const LocationWork&) = delete;

    ~LocationWork() {
        if (isOwned())
            m_owner->coordinator->countLocationWork(-1);
    }

    /// False once the coordinator has gone.
    [[nodiscard]] bool isOwned() const { return m_owner->coordinator != nullptr; }

private:
    std::shared_ptr<const WorkspaceRun::Owner> m_owner;
};

void WorkspaceCoordinator::countLocationWork(int change) {
    m_locationWorkCount += change;
    publish(m_isLocationWorking, m_locationWorkCount > 0, &WorkspaceCoordinator::isLocationWorkingChanged);
}

void WorkspaceCoordinator::renewMapSelection() {
    m_mapSelectionID = m_services.clock.freshUUID();
    Q_EMIT mapSelectionIDChanged();
}

void WorkspaceCoordinator::selectLocation(Coordinate coordinate, const QString& name, bool recenter) {
    publish(m_selectedCoordinate, std::optional(coordinate), &WorkspaceCoordinator::selectedCoordinateChanged);
    publish(m_selectedLocationName, name, &WorkspaceCoordinator::selectedLocationNameChanged);
    publish(m_recenterMapOnSelection, recenter, &WorkspaceCoordinator::recenterMapOnSelectionChanged);
    renewMapSelection();
    m_profile.coordinate = coordinate;
    m_profile.locationName = name;
    persistProfile();
    showStatus(name);
    showRecovery(std::nullopt);
}

QCoro::Task<void> WorkspaceCoordinator::resolveLocation(PlaceCompletion completion) {
    const LocationWork work(m_runs);
    try {
        const std::vector<MapItem> found = co_await m_services.placeSearch.search(completion);
        if (!work.isOwned())
            co_return;
        if (found.empty())
            showStatus(u"No matching location"_s);
        else
            selectLocation(found.front().coordinate, found.front().name.value_or(completion.title), true);
    } catch (...) {
        if (work.isOwned())
            showError(std::current_exception());
    }
}

void WorkspaceCoordinator::saveFavorite() {
    if (!m_selectedCoordinate)
        return;
    QString name = trimmedText(m_selectedLocationName);
    if (name.isEmpty())
        name = CoordinateFormatter::coordinatePair(*m_selectedCoordinate);
    publish(m_favorites, m_services.locationRepository.addFavorite(name, *m_selectedCoordinate),
            &WorkspaceCoordinator::favoritesChanged);
    showStatus(u"Saved favorite"_s);
}

void WorkspaceCoordinator::deleteFavorite(const QUuid& id) {
    publish(m_favorites, m_services.locationRepository.deleteFavorite(id), &WorkspaceCoordinator::favoritesChanged);
    showStatus(u"Deleted favorite"_s);
}

QCoro::Task<void> WorkspaceCoordinator::setLocationOnSimulator() {
    const auto device = selectedDevice();
    if (!device || !m_selectedCoordinate)
        co_return;
    // What is sent is what is recorded, whatever is selected while the command runs.
    const Coordinate coordinate = *m_selectedCoordinate;
    const QString name = m_selectedLocationName;
    const LocationWork work(m_runs);
    try {
        co_await m_services.simulator.setLocation(device->udid, coordinate);
        if (!work.isOwned())
            co_return;
        publish(m_recents, m_services.locationRepository.recordRecent(name, coordinate),
                &WorkspaceCoordinator::recentsChanged);
        showStatus(u"Set location on "_s + device->name);
        showRecovery(std::nullopt);
    } catch (...) {
        if (work.isOwned())
            showError(std::current_exception());
    }
}

QCoro::Task<void> WorkspaceCoordinator::clearLocationOnSimulator() {
    const auto device = selectedDevice();
    if (!device)
        co_return;
    const LocationWork work(m_runs);
    try {
        co_await m_services.simulator.clearLocation(device->udid);
        if (!work.isOwned())
            co_return;
        publish(m_selectedCoordinate, {}, &WorkspaceCoordinator::selectedCoordinateChanged);
        m_profile.coordinate = std::nullopt;
        m_profile.locationName = u"Dropped Pin"_s;
        // Copies the selection over the profile, so that the name which is still shown is the one that is stored.
        persistProfile();
        renewMapSelection();
        showStatus(u"Cleared location on "_s + device->name);
        showRecovery(std::nullopt);
    } catch (...) {
        if (work.isOwned())
            showError(std::current_exception());
    }
}

} // namespace corvanta
