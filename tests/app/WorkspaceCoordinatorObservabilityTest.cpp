// SPDX-License-Identifier: MIT
#include "WorkspaceCoordinatorTest.h"

#include <QMetaProperty>
#include <QThread>
#include <QVariant>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAreArray;

using testing::FakeError;
using testing::SimulatorOperation;

/// How one property is made to change.
struct Case {
    const char* property;
    void (WorkspaceCoordinator::*changed)();
    /// Called once to change the property and once more, with everything else as it was.
    void (*change)(WorkspaceCoordinator& coordinator);
    int publishedFirst = 1;
    int publishedAgain = 0;
};

void PrintTo(const Case& example, std::ostream* stream) {
    *stream << example.property;
}

void run(QCoro::Task<void> task) {
    const testing::WatchedTask watched(std::move(task));
    ASSERT_TRUE(watched.isDone());
}

constexpr Coordinate point{1, 2};

const std::vector<Case>& cases() {
    using Subject = WorkspaceCoordinator;
    const auto list = [](Subject& subject) { run(subject.refreshDevices()); };
    const auto select = [](Subject& subject) { subject.selectLocation(point, u"Somewhere"_s, true); };
    const auto startInVain = [](Subject& subject) {
        subject.setUrlInput({});
        run(subject.startWorkspace());
    };
    const auto check = [](Subject& subject) { [[maybe_unused]] const auto task = subject.runSetupChecks(); };
    static const std::vector<Case> all{
        {"devices", &Subject::devicesChanged, list},
        {"selectedDeviceID", &Subject::selectedDeviceIDChanged,
         [](Subject& subject) { subject.setSelectedDeviceID(u"B"_s); }},
        {"urlInput", &Subject::urlInputChanged, [](Subject& subject) { subject.setUrlInput(u"example.com"_s); }},
        // Through preflight to failed; the second start begins with a stop.
        {"phase", &Subject::phaseChanged, startInVain, 2, 3},
        {"statusMessage", &Subject::statusMessageChanged, select},
        {"recoveryMessage", &Subject::recoveryMessageChanged,
         [](Subject& subject) { run(subject.clearLocationOnSimulator()); }},
        {"isRefreshingDevices", &Subject::isRefreshingDevicesChanged, list, 2, 2},
        {"isLocationWorking", &Subject::isLocationWorkingChanged,
         [](Subject& subject) { run(subject.clearLocationOnSimulator()); }, 2, 2},
        {"selectedCoordinate", &Subject::selectedCoordinateChanged, select},
        {"selectedLocationName", &Subject::selectedLocationNameChanged, select},
        // Renewed at each selection, so that a repeated one can be told from none.
        {"mapSelectionID", &Subject::mapSelectionIDChanged, select, 1, 1},
        {"recenterMapOnSelection", &Subject::recenterMapOnSelectionChanged, select},
        {"favorites", &Subject::favoritesChanged,
         [](Subject& subject) {
             subject.selectLocation(point, u"Somewhere"_s, true);
             subject.saveFavorite();
         },
         1, 1},
        {"recents", &Subject::recentsChanged,
         [](Subject& subject) {
             subject.selectLocation(point, u"Somewhere"_s, true);
             run(subject.setLocationOnSimulator());
         },
         1, 1},
        // Two pages open at once; the second time the choice is still pending.
        {"candidateTargets", &Subject::candidateTargetsChanged, nullptr},
        {"setupChecks", &Subject::setupChecksChanged, check},
        {"isCheckingSetup", &Subject::isCheckingSetupChanged, check, 2, 2},
    };
    return all;
}

class WorkspaceCoordinatorObservability : public WorkspaceCoordinatorTest, public ::testing::WithParamInterface<Case> {
protected:
    struct Publication {
        QVariant value;
        bool isOnMainThread;
    };

    void SetUp() override {
        makeRunning();
        coordinator->stopWorkspace();
        forget();
        m_initial = value();
        QObject::connect(coordinator.get(), GetParam().changed, coordinator.get(), [this] {
            m_publications.push_back({value(), QThread::currentThread() == coordinator->thread()});
        });
    }

    [[nodiscard]] QVariant value() const { return coordinator->property(GetParam().property); }

    /// Something has changed outside, so that a look at it finds something new.
    void changeTheWorld() {
        simulator.devices.push_back(device(u"C"_s, u"iPad mini"_s, u"Shutdown"_s));
        probe.found.simctlAvailable = false;
        if (QLatin1StringView(GetParam().property) == "recoveryMessage"_L1)
            simulator.script.fail(SimulatorOperation::clearLocation, FakeError(u"No."_s, u"Try again."_s));
    }

    void change() {
        if (GetParam().change) {
            GetParam().change(*coordinator);
            clock.advance(1s);
            return;
        }
        if (coordinator->phase() != WorkspacePhase::running) {
            const auto task = start();
            clock.advance(15s);
            safari.listed.push_back(page(u"B"_s, 1));
            safari.listed.push_back(page(u"C"_s, 2));
        }
        clock.advance(4s);
    }

    QVariant m_initial;
    std::vector<Publication> m_publications;
};

TEST_P(WorkspaceCoordinatorObservability, PublishesEachChangeOnceBehindItAndNothingElse) {
    changeTheWorld();
    change();
    EXPECT_EQ(static_cast<int>(m_publications.size()), GetParam().publishedFirst);
    change();
    EXPECT_EQ(static_cast<int>(m_publications.size()), GetParam().publishedFirst + GetParam().publishedAgain);

    QVariant previous = m_initial;
    for (const Publication& publication : m_publications) {
        EXPECT_TRUE(publication.isOnMainThread);
        EXPECT_NE(publication.value, previous);
        previous = publication.value;
    }
    EXPECT_EQ(previous, value());
}

INSTANTIATE_TEST_SUITE_P(Of, WorkspaceCoordinatorObservability, ::testing::ValuesIn(cases()),
                         [](const auto& test) { return std::string(test.param.property); });

TEST(WorkspaceCoordinatorProperties, AreAllPublishedAndWalkedHere) {
    const QMetaObject& type = WorkspaceCoordinator::staticMetaObject;
    std::vector<std::string> properties;
    for (int index = type.propertyOffset(); index < type.propertyCount(); ++index) {
        properties.emplace_back(type.property(index).name());
        EXPECT_TRUE(type.property(index).hasNotifySignal()) << properties.back();
    }
    std::vector<std::string> walked;
    for (const Case& example : cases())
        walked.emplace_back(example.property);
    EXPECT_THAT(properties, ElementsAreArray(walked));
}

TEST_F(WorkspaceCoordinatorTest, BeginsIdleAndReadyAndAsksNothingOfTheMachine) {
    makeCoordinator();
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
    EXPECT_EQ(status(), "Ready");
    EXPECT_EQ(recovery(), "none");
    EXPECT_EQ(coordinator->selectedDeviceID(), std::nullopt);
    EXPECT_EQ(coordinator->urlInput(), u"http://localhost:3000");
    EXPECT_EQ(coordinator->selectedCoordinate(), std::nullopt);
    EXPECT_EQ(coordinator->selectedLocationName(), u"Dropped Pin");
    EXPECT_FALSE(coordinator->mapSelectionID().isNull());
    EXPECT_FALSE(coordinator->recenterMapOnSelection() || coordinator->isLocationWorking() ||
                 coordinator->isCheckingSetup() || coordinator->isRefreshingDevices());
    EXPECT_TRUE(coordinator->devices().empty() && coordinator->candidateTargets().empty() &&
                coordinator->setupChecks().empty() && coordinator->favorites().empty() &&
                coordinator->recents().empty());
    EXPECT_TRUE(log.calls().empty());
    EXPECT_EQ(clock.sleepers(), 0U);
}

} // namespace

} // namespace corvanta
