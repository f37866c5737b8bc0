// SPDX-License-Identifier: MIT
// Walks docs/faults.md on the scripted host: one test a cell.
#include "FaultTable.h"

#include "FakePlaceSearch.h"
#include "MemoryPreferencesStore.h"
#include "ScriptedHost.h"
#include "TaskWaiting.h"
#include "layout/AXWorkspaceArranger.h"
#include "locations/CoordinateFormatter.h"
#include "safari/SafariAXInspector.h"
#include "setup/SystemPreflightProbe.h"
#include "simulator/SimctlService.h"
#include "workspace/WorkspaceCoordinator.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using testing::Fault;
using testing::FaultMoment;
using testing::FaultTableRow;

constexpr auto tablePath = CORVANTA_FAULT_TABLE;
constexpr Coordinate storedPoint{41.3874, 2.1686};
/// Longer than a start can take that waits for a page and for an inspector as long as it may.
constexpr auto longestWait = 60s;

/// A coordinator on the application's own services, on a host that is all script.
class FaultTableWalk : public ::testing::TestWithParam<FaultTableRow> {
public:
    ~FaultTableWalk() override;

protected:
    FaultTableWalk();

    /// Leads the workspace through the moment, with the fault from then on, to where it rests.
    void reach(FaultMoment moment, Fault fault);
    /// What Stop and Start make of the workspace once the fault is gone.
    void startAfresh(FaultMoment moment);

    void settle() { m_host.clock.advance(longestWait); }

    [[nodiscard]] std::string phase() const { return rawValue(m_coordinator->phase()).toStdString(); }

    [[nodiscard]] std::string status() const { return m_coordinator->statusMessage().toStdString(); }

    [[nodiscard]] std::string recovery() const {
        return m_coordinator->recoveryMessage().value_or(u"none"_s).toStdString();
    }

    [[nodiscard]] std::string filled(const QString& text) const;

    [[nodiscard]] bool faultHasAppeared() const { return !m_awaited; }

private:
    void prepare(FaultMoment moment);
    void act(FaultMoment moment);
    [[nodiscard]] bool isMoment(FaultMoment moment) const;
    [[nodiscard]] static bool isMoment(FaultMoment moment, const ProcessCommand& command);
    void strike();
    void makeCoordinator();
    void breakPreferences(Fault fault);

    /// Gives a task all the time that it may take; only one that a tool keeps waiting needs more.
    void follow(QCoro::Task<void> operation) {
        const testing::WatchedTask task(std::move(operation));
        settle();
        EXPECT_TRUE(task.isDone() || m_isHanging);
    }

    void check() { follow(m_coordinator->runSetupChecks()); }

    void list() { follow(m_coordinator->refreshDevices()); }

    void start() { follow(m_coordinator->startWorkspace()); }

    void reload() { follow(m_coordinator->reloadPage()); }

    void chooseFirst() {
        ASSERT_FALSE(m_coordinator->candidateTargets().empty());
        follow(m_coordinator->chooseInspectorTarget(m_coordinator->candidateTargets().front()));
    }

    testing::ScriptedHost m_host;
    testing::MemoryPreferencesStore m_preferences;
    ProfileRepository m_profiles{m_preferences, u"workspaceProfile"_s, m_host.clock};
    LocationRepository m_locations{m_preferences, u"favoriteLocations"_s, u"recentLocations"_s, 10, m_host.clock};
    testing::FakePlaceSearch m_placeSearch{m_host.clock, m_host.log};
    SafariAXInspector m_safari{m_host.tree, m_host.desktop, m_host.clock};
    AXWorkspaceArranger m_arranger{m_host.tree, m_host.desktop};
    SimctlService m_simulator{m_host.makeCommandRunner(), {u"/usr/bin/xcrun"_s, u"/usr/bin/open"_s}};
    SystemPreflightProbe m_probe{m_host.makeCommandRunner(), m_host.desktop};
    std::unique_ptr<WorkspaceCoordinator> m_coordinator;

    struct Awaited {
        FaultMoment moment;
        Fault fault;
    };

    std::optional<Awaited> m_awaited;
    bool m_isHanging = false;
};

FaultTableWalk::FaultTableWalk() {
    // A stored location, so that a start passes through its restoring.
    WorkspaceProfile profile = m_profiles.load();
    profile.coordinate = storedPoint;
    profile.locationName = u"Barcelona"_s;
    m_profiles.save(profile);
    makeCoordinator();
    m_host.beforeCommand = [this](const ProcessCommand& command) {
        if (m_awaited && isMoment(m_awaited->moment, command))
            strike();
    };
}

void FaultTableWalk::makeCoordinator() {
    m_coordinator = std::make_unique<WorkspaceCoordinator>(WorkspaceCoordinator::Services{
        .simulator = m_simulator,
        .safari = m_safari,
        .arranger = m_arranger,
        .preflightProbe = m_probe,
        .profileRepository = m_profiles,
        .locationRepository = m_locations,
        .placeSearch = m_placeSearch,
        .accessibility = m_host.tree,
        .desktop = m_host.desktop,
        .clock = m_host.clock,
    });
    m_coordinator->setControlWindow(m_host.controlWindow);

    const auto look = [this] {
        if (m_awaited && isMoment(m_awaited->moment))
            strike();
    };
    QObject::connect(m_coordinator.get(), &WorkspaceCoordinator::phaseChanged, look);
    QObject::connect(m_coordinator.get(), &WorkspaceCoordinator::statusMessageChanged, look);
    QObject::connect(m_coordinator.get(), &WorkspaceCoordinator::isRefreshingDevicesChanged, look);
}

FaultTableWalk::~FaultTableWalk() {
    m_coordinator->stopWorkspace();
    m_coordinator.reset();
    settle();
    EXPECT_EQ(m_host.clock.sleepers(), 0U);
}

bool FaultTableWalk::isMoment(FaultMoment moment) const {
    const WorkspacePhase current = m_coordinator->phase();
    const QString& shown = m_coordinator->statusMessage();
    switch (moment) {
    case FaultMoment::setupCheck:
        return shown == u"Checking this Mac";
    case FaultMoment::deviceListing:
        return m_coordinator->isRefreshingDevices();
    case FaultMoment::preflight:
        return current == WorkspacePhase::preflight && shown == u"Checking Xcode, Safari, and permissions";
    case FaultMoment::boot:
        return current == WorkspacePhase::booting && shown == u"Booting "_s + m_host.deviceName;
    case FaultMoment::restoreLocation:
        return current == WorkspacePhase::booting && shown == u"Restoring Barcelona";
    case FaultMoment::openingPage:
        return current == WorkspacePhase::openingPage && shown == u"Opening localhost in simulated Safari";
    case FaultMoment::waiting:
        return current == WorkspacePhase::attachingInspector && shown == u"Waiting for Safari Web Inspector";
    case FaultMoment::attaching:
    case FaultMoment::reloadAttaching:
        return current == WorkspacePhase::attachingInspector && shown == u"Attaching Web Inspector to Start";
    case FaultMoment::choice:
        return current == WorkspacePhase::attachingInspector && shown == u"Choose the Safari page to inspect";
    case FaultMoment::running:
        return current == WorkspacePhase::running && shown == u"Workspace running";
    case FaultMoment::runningChoice:
        return current == WorkspacePhase::running && shown == u"Choose the newest Safari page";
    case FaultMoment::runningAttaching:
        return current == WorkspacePhase::attachingInspector && shown == u"Attaching Web Inspector to Second";
    case FaultMoment::reloadOpeningPage:
        return current == WorkspacePhase::openingPage && shown == u"Opening localhost";
    case FaultMoment::reloadWaiting:
        return current == WorkspacePhase::attachingInspector && shown == u"Opening localhost";
    case FaultMoment::bootStatus:
    case FaultMoment::openSimulator:
        return false; // No text of their own: the command tells.
    }
    Q_UNREACHABLE();
}

bool FaultTableWalk::isMoment(FaultMoment moment, const ProcessCommand& command) {
    if (moment == FaultMoment::bootStatus)
        return command.arguments.value(1) == u"bootstatus";
    return moment == FaultMoment::openSimulator && command.executablePath == u"/usr/bin/open";
}

void FaultTableWalk::strike() {
    if (const auto awaited = std::exchange(m_awaited, std::nullopt)) {
        m_isHanging = awaited->fault == Fault::toolHanging;
        m_host.inflict(awaited->fault);
        breakPreferences(awaited->fault);
    }
}

void FaultTableWalk::breakPreferences(Fault fault) {
    const auto replace = [this](const QByteArray& value) {
        for (const QString& key : {u"workspaceProfile"_s, u"favoriteLocations"_s, u"recentLocations"_s})
            m_preferences.setData(key, value);
    };
    if (fault == Fault::preferencesDamaged)
        replace("\0\xff{\"pageURL");
    else if (fault == Fault::preferencesNewer)
        replace(R"({"schema":99,"pageURL":["http://localhost:3000"],"columnRatios":"wide"})");
    else if (fault == Fault::preferencesReadOnly || fault == Fault::preferencesOverLimit)
        m_preferences.isReadOnly = true;
}

void FaultTableWalk::prepare(FaultMoment moment) {
    if (moment == FaultMoment::setupCheck)
        return;
    check();
    if (moment == FaultMoment::deviceListing)
        return;
    list();
    ASSERT_TRUE(m_coordinator->canStart());
    switch (moment) {
    case FaultMoment::choice:
        m_host.pagesOfAddress = {u"Start"_s, u"Second"_s};
        return;
    case FaultMoment::runningChoice:
    case FaultMoment::runningAttaching:
    case FaultMoment::reloadOpeningPage:
    case FaultMoment::reloadWaiting:
    case FaultMoment::reloadAttaching:
        start();
        ASSERT_EQ(phase(), "running");
        return;
    default:
        return;
    }
}

void FaultTableWalk::act(FaultMoment moment) {
    switch (moment) {
    case FaultMoment::setupCheck:
        check();
        return;
    case FaultMoment::deviceListing:
        list();
        return;
    case FaultMoment::reloadOpeningPage:
    case FaultMoment::reloadWaiting:
    case FaultMoment::reloadAttaching:
        reload();
        return;
    case FaultMoment::choice:
        start();
        chooseFirst();
        return;
    case FaultMoment::runningChoice:
        m_host.openPages({u"Second"_s, u"Third"_s});
        settle();
        chooseFirst();
        return;
    case FaultMoment::runningAttaching:
        m_host.openPages({u"Second"_s});
        settle();
        return;
    default:
        start();
        return;
    }
}

void FaultTableWalk::reach(FaultMoment moment, Fault fault) {
    // What is wrong with the preferences shows when they are read.
    if (moment == FaultMoment::setupCheck) {
        breakPreferences(fault);
        makeCoordinator();
    }
    ASSERT_NO_FATAL_FAILURE(prepare(moment));
    m_awaited = {moment, fault};
    ASSERT_NO_FATAL_FAILURE(act(moment));
}

void FaultTableWalk::startAfresh(FaultMoment moment) {
    m_host.lift();
    m_preferences.isReadOnly = false;
    // A tool that hung has been ended, and what waited for it has come to its own end.
    if (std::exchange(m_isHanging, false))
        settle();
    m_coordinator->setControlWindow(m_host.controlWindow);
    m_host.pagesOfAddress = {u"Start"_s};
    m_coordinator->stopWorkspace();
    EXPECT_EQ(phase(), "idle");
    if (moment == FaultMoment::setupCheck)
        check();
    if (moment == FaultMoment::setupCheck || moment == FaultMoment::deviceListing)
        list();
    start();
}

std::string FaultTableWalk::filled(const QString& text) const {
    return testing::filledText(text,
                               {
                                   {u"device"_s, m_host.deviceName},
                                   {u"udid"_s, m_host.deviceID},
                                   {u"url"_s, u"http://localhost:3000"_s},
                                   {u"host"_s, u"localhost"_s},
                                   {u"place"_s, u"Barcelona"_s},
                                   {u"coordinate"_s, CoordinateFormatter::coordinatePair(storedPoint)},
                                   {u"page"_s, m_host.latestPage()},
                                   {u"launch error"_s, m_host.launchErrorText},
                                   {u"message"_s, m_host.toolMessage},
                                   {u"output"_s, m_host.garbage},
                               })
        .toStdString();
}

TEST_P(FaultTableWalk, ComesToRestAsTheTableSaysAndStartsAfresh) {
    const FaultTableRow& row = GetParam();
    ASSERT_NO_FATAL_FAILURE(reach(row.moment, row.fault));
    ASSERT_TRUE(faultHasAppeared());

    EXPECT_EQ(phase(), rawValue(row.phase).toStdString());
    EXPECT_EQ(status(), filled(row.status));
    EXPECT_EQ(recovery(), filled(row.recovery.value_or(u"none"_s)));

    startAfresh(row.moment);
    EXPECT_EQ(phase(), "running");
    EXPECT_EQ(status(), "Workspace running");
    EXPECT_EQ(recovery(), "none");
}

/// The rows of the table; none of a damaged one, which a test of its own complains about.
std::vector<FaultTableRow> rowsToWalk() {
    try {
        auto rows = testing::readFaultTable(QString::fromUtf8(tablePath));
        // The scripted host is none.
        std::erase_if(rows, [](const FaultTableRow& row) { return row.isOnLinux; });
        return rows;
    } catch (const testing::FaultTableError&) {
        return {};
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, FaultTableWalk, ::testing::ValuesIn(rowsToWalk()),
                         [](const auto& info) { return info.param.testName(); });

TEST(FaultTable, HasEachFaultAtEachMomentExactlyOnce) {
    const auto rows = rowsToWalk();
    EXPECT_EQ(rows.size(), testing::allFaultMoments.size() * testing::allFaults.size());
    for (const FaultMoment moment : testing::allFaultMoments) {
        for (const Fault fault : testing::allFaults) {
            const auto count = std::ranges::count_if(
                rows, [&](const FaultTableRow& row) { return row.moment == moment && row.fault == fault; });
            EXPECT_EQ(count, 1) << testing::tableName(moment).toStdString() << " × "
                                << testing::tableName(fault).toStdString();
        }
    }
}

} // namespace

} // namespace corvanta
