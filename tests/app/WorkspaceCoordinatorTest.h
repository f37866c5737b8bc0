// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "FakeAccessibilityTree.h"
#include "FakeArranger.h"
#include "FakeControlWindow.h"
#include "FakeDesktop.h"
#include "FakeError.h"
#include "FakePlaceSearch.h"
#include "FakePreflightProbe.h"
#include "FakeSafari.h"
#include "FakeSimulator.h"
#include "MemoryPreferencesStore.h"
#include "Printing.h"
#include "SafariTargetPrinting.h"
#include "TaskWaiting.h"
#include "VirtualClock.h"
#include "workspace/WorkspaceCoordinator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace corvanta {

inline void PrintTo(WorkspacePhase phase, std::ostream* stream) {
    *stream << rawValue(phase).toStdString();
}

inline void PrintTo(const SimulatorDevice& device, std::ostream* stream) {
    *stream << device.udid.toStdString();
}

/// A coordinator on fakes, with a journal of everything that it publishes.
class WorkspaceCoordinatorTest : public ::testing::Test {
protected:
    using Calls = std::vector<std::string>;

    WorkspaceCoordinatorTest();
    ~WorkspaceCoordinatorTest() override;

    static SimulatorDevice device(const QString& udid, const QString& name, const QString& state);
    static SafariTarget page(const QString& title, int index);

    void makeCoordinator();
    /// The checks have passed, the devices are listed, the first is selected, and the control window is there.
    void makeReady();
    /// Makes ready and starts; the page "Start" is attached.
    void makeRunning();
    /// Forgets calls, journal and sleeps so far.
    void forget();

    [[nodiscard]] testing::WatchedTask<void> start() { return testing::WatchedTask(coordinator->startWorkspace()); }

    [[nodiscard]] testing::WatchedTask<void> reload() { return testing::WatchedTask(coordinator->reloadPage()); }

    [[nodiscard]] testing::WatchedTask<void> choose(const SafariTarget& target) {
        return testing::WatchedTask(coordinator->chooseInspectorTarget(target));
    }

    /// Lets whatever still sleeps end, at most that many wake-ups.
    void drain(int limit = 200) {
        for (int step = 0; step < limit && clock.step(); ++step) {
        }
    }

    /// The sleeps since `forget`.
    [[nodiscard]] std::vector<Clock::Duration> sleeps() const;
    /// The entries of the journal that begin with `prefix`.
    [[nodiscard]] Calls published(const std::string& prefix) const;

    [[nodiscard]] std::string status() const { return coordinator->statusMessage().toStdString(); }

    [[nodiscard]] std::string recovery() const {
        return coordinator->recoveryMessage().value_or(QStringLiteral("none")).toStdString();
    }

    [[nodiscard]] WorkspaceProfile storedProfile() const { return profileRepository.load(); }

    testing::VirtualClock clock;
    testing::CallLog log{clock};
    testing::FakeAccessibilityTree tree{clock};
    testing::FakeDesktop desktop{clock, log};
    testing::FakeSimulator simulator{clock, log};
    testing::FakeSafari safari{clock, log};
    testing::FakeArranger arranger{log};
    testing::FakePreflightProbe probe{clock, log};
    testing::FakePlaceSearch placeSearch{clock, log};
    testing::MemoryPreferencesStore preferences;
    ProfileRepository profileRepository{preferences, QStringLiteral("workspaceProfile"), clock};
    LocationRepository locationRepository{preferences, QStringLiteral("favoriteLocations"),
                                          QStringLiteral("recentLocations"), 10, clock};
    std::shared_ptr<testing::FakeControlWindow> controlWindow = std::make_shared<testing::FakeControlWindow>();
    std::unique_ptr<WorkspaceCoordinator> coordinator;
    Calls journal;

private:
    void keepJournal();

    std::size_t m_forgottenSleeps = 0;
};

} // namespace corvanta
