// SPDX-License-Identifier: MIT
#include "WorkspaceCoordinatorTest.h"

#include "safari/WorkspaceAutomationError.h"

#include <functional>
#include <stdexcept>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using testing::SafariOperation;
using testing::SimulatorOperation;

using WorkspaceCoordinatorFailureTest = WorkspaceCoordinatorTest;

struct StepCase {
    std::string name;
    std::variant<SafariOperation, SimulatorOperation> operation;
    std::vector<std::string> phases;
    std::string lastCall;
};

void PrintTo(const StepCase& value, std::ostream* stream) {
    *stream << value.name;
}

class WorkspaceCoordinatorFailure : public WorkspaceCoordinatorTest, public ::testing::WithParamInterface<StepCase> {};

TEST_P(WorkspaceCoordinatorFailure, OfAStepEndsTheStartWithItsTexts) {
    WorkspaceProfile profile = WorkspaceProfile::fresh({});
    profile.coordinate = Coordinate{52.5, 13.4};
    profileRepository.save(profile);
    makeReady();
    safari.listed = {page(u"Start"_s, 0)};
    safari.willList({});
    const testing::FakeError error(u"It broke."_s, u"Mend it."_s);
    if (const auto* const operation = std::get_if<SafariOperation>(&GetParam().operation))
        safari.script.fail(*operation, error);
    else
        simulator.script.fail(std::get<SimulatorOperation>(GetParam().operation), error);
    const auto task = start();
    clock.advance(300ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_EQ(task.error(), nullptr);
    auto phases = GetParam().phases;
    phases.emplace_back("phase failed");
    EXPECT_EQ(published("phase"), phases);
    EXPECT_EQ(status(), "It broke.");
    EXPECT_EQ(recovery(), "Mend it.");
    EXPECT_EQ(log.calls().back(), GetParam().lastCall);
    EXPECT_EQ(clock.sleepers(), 0U);
    EXPECT_TRUE(coordinator->canStart() && coordinator->canStop());
}

INSTANTIATE_TEST_SUITE_P(
    AtEachStep, WorkspaceCoordinatorFailure,
    ::testing::Values(StepCase{"ensureSafariRunning",
                               SafariOperation::ensureSafariRunning,
                               {"phase preflight"},
                               "ensureSafariRunning"},
                      StepCase{"boot", SimulatorOperation::boot, {"phase preflight", "phase booting"}, "boot A"},
                      StepCase{"waitUntilBooted",
                               SimulatorOperation::waitUntilBooted,
                               {"phase preflight", "phase booting"},
                               "waitUntilBooted A"},
                      StepCase{"launchSimulator",
                               SimulatorOperation::launchSimulator,
                               {"phase preflight", "phase booting"},
                               "launchSimulator A"},
                      StepCase{"setLocation",
                               SimulatorOperation::setLocation,
                               {"phase preflight", "phase booting"},
                               "setLocation A 52.5,13.4"},
                      StepCase{"openURL",
                               SimulatorOperation::openURL,
                               {"phase preflight", "phase booting", "phase openingPage"},
                               "openURL A http://localhost:3000"},
                      StepCase{"attach",
                               SafariOperation::attach,
                               {"phase preflight", "phase booting", "phase openingPage", "phase attachingInspector"},
                               "attach Start on iPhone 16"}),
    testing::CaseName());

TEST_F(WorkspaceCoordinatorFailureTest, OfAnEmptyAddressHasItsTwoTexts) {
    makeReady();
    coordinator->setUrlInput(u"  "_s);
    forget();
    const auto task = start();
    ASSERT_TRUE(task.isDone());
    EXPECT_THAT(journal, ElementsAre("phase preflight", "status Checking Xcode, Safari, and permissions",
                                     "phase failed", "status Enter a webpage URL.",
                                     "recovery Use an HTTP or HTTPS address, for example http://localhost:3000."));
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_EQ(coordinator->urlInput(), u"  "_s);
}

TEST_F(WorkspaceCoordinatorFailureTest, NamesMissingDeveloperFeaturesAfterThePause) {
    makeReady();
    safari.hasDeveloperFeatures = false;
    const auto task = start();
    clock.advance(299ms);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::preflight);
    clock.advance(1ms);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_EQ(status(), "Safari developer features are not enabled.");
    EXPECT_EQ(log.count("boot"), 0);
}

TEST_F(WorkspaceCoordinatorFailureTest, TakesAClosedControlWindowForAMissingInspectorWindow) {
    makeReady();
    safari.listed = {page(u"Start"_s, 0)};
    safari.willList({});
    safari.script.delay(SafariOperation::attach, 1s);
    const auto task = start();
    clock.advance(300ms);
    controlWindow.reset();
    clock.advance(1s);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_EQ(status(), "Safari opened the target, but its Web Inspector window could not be found.");
    EXPECT_EQ(recovery(), "Open Safari's Develop menu once manually, then click Re-tile.");
    EXPECT_EQ(log.count("tile"), 0);
}

TEST_F(WorkspaceCoordinatorFailureTest, OfTheFirstTilingFailsTheStart) {
    makeReady();
    safari.listed = {page(u"Start"_s, 0)};
    safari.willList({});
    arranger.fail(WorkspaceAutomationError::simulatorWindowUnavailable(u"iPhone 16"_s));
    const auto task = start();
    clock.advance(300ms);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_EQ(status(), "The Simulator window for iPhone 16 could not be found.");
    EXPECT_EQ(clock.sleepers(), 0U);
}

TEST_F(WorkspaceCoordinatorFailureTest, ClearsTheAdviceOfAnErrorThatHasNone) {
    makeReady();
    safari.script.fail(SafariOperation::ensureSafariRunning, testing::FakeError(u"It broke."_s, u"Mend it."_s));
    const auto first = start();
    forget();
    simulator.script.fail(SimulatorOperation::availableIOSDevices, std::runtime_error("plain words"));
    const testing::WatchedTask list(coordinator->refreshDevices());
    EXPECT_THAT(journal, ElementsAre("refreshing true", "status plain words", "recovery none", "refreshing false"));
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::failed);
}

TEST_F(WorkspaceCoordinatorFailureTest, KeepsTheMonitorButItDoesNothing) {
    makeRunning();
    simulator.script.fail(SimulatorOperation::availableIOSDevices, testing::FakeError(u"It broke."_s));
    const testing::WatchedTask list(coordinator->refreshDevices());
    ASSERT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_EQ(clock.sleepers(), 1U);
    forget();
    clock.advance(10s);
    EXPECT_THAT(log.calls(), IsEmpty());
    EXPECT_EQ(clock.sleepers(), 1U);
}

} // namespace

} // namespace corvanta
