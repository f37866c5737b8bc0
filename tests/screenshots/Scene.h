// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "FakeAccessibilityTree.h"
#include "FakeArranger.h"
#include "FakeControlWindow.h"
#include "FakeDesktop.h"
#include "FakeError.h"
#include "FakeMapSurface.h"
#include "FakePlaceSearch.h"
#include "FakePreflightProbe.h"
#include "FakeSafari.h"
#include "FakeSimulator.h"
#include "MemoryPreferencesStore.h"
#include "TaskWaiting.h"
#include "VirtualClock.h"
#include "support/TaskScope.h"
#include "window/SectionContext.h"
#include "workspace/WorkspaceCoordinator.h"

#include <memory>

namespace corvanta::testing {

/// A real coordinator on fakes that is led into one of the states that the window shows.
class Scene {
public:
    Scene();
    ~Scene();

    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// What the window works with.
    [[nodiscard]] SectionContext context();

    /// Checks the setup, lists the devices and lets there be the control window.
    void prepare();
    /// Starts, and goes on until the device boots.
    void boot();
    /// Starts, with one page or with several to choose from.
    void run(int pageCount);
    /// Starts in vain.
    void fail(const QString& status, const std::optional<QString>& recovery);
    /// Selects a point, saves two favourites and goes back to the first.
    void visit();

    /// Who makes the map.
    MapMaking makeMap = [](QWidget& parent) { return std::make_unique<FakeMapSurface>(&parent); };

    VirtualClock clock;
    CallLog log{clock};
    FakeAccessibilityTree tree{clock};
    FakeDesktop desktop{clock, log};
    FakeSimulator simulator{clock, log};
    FakeSafari safari{clock, log};
    FakeArranger arranger{log};
    FakePreflightProbe probe{clock, log};
    FakePlaceSearch placeSearch{clock, log};
    MemoryPreferencesStore preferences;
    ProfileRepository profileRepository{preferences, QStringLiteral("workspaceProfile"), clock};
    LocationRepository locationRepository{preferences, QStringLiteral("favoriteLocations"),
                                          QStringLiteral("recentLocations"), 10, clock};
    std::shared_ptr<FakeControlWindow> controlWindow = std::make_shared<FakeControlWindow>();
    std::unique_ptr<WorkspaceCoordinator> coordinator;

private:
    TaskScope m_tasks;
};

} // namespace corvanta::testing
