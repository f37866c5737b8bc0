// SPDX-License-Identifier: MIT
#include "simulator/SimctlService.h"

#include "FakeCommandRunner.h"
#include "Printing.h"
#include "TaskWaiting.h"
#include "simulator/ProcessLaunchError.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using testing::WatchedTask;

const QString udid = u"UDID"_s;

class SimctlServiceTest : public ::testing::Test {
protected:
    SimctlServiceTest() = default;

    [[nodiscard]] static SimulatorDevice device(const QString& state) {
        return {udid, u"iPhone"_s, state, u"com.apple.CoreSimulator.SimRuntime.iOS-18-2"_s, std::nullopt, true};
    }

    /// The command line of the only command that was run.
    [[nodiscard]] QString commandLine() const {
        EXPECT_EQ(runner->commands().size(), 1U);
        return runner->commands().empty() ? QString() : runner->commands().front().displayString();
    }

    /// The service's own error of a task; nothing when it ended well.
    template<typename T>
    [[nodiscard]] static std::optional<SimulatorControlError> failure(QCoro::Task<T> task) {
        try {
            (void)WatchedTask<T>(std::move(task)).result();
            return std::nullopt;
        } catch (const SimulatorControlError& error) {
            return error;
        }
    }

    std::shared_ptr<testing::FakeCommandRunner> runner = std::make_shared<testing::FakeCommandRunner>();
    SimctlService service{runner, {u"/usr/bin/xcrun"_s, u"/usr/bin/open"_s}};
};

TEST_F(SimctlServiceTest, ListsTheDevicesOfTheTool) {
    runner->reply({0, R"({"devices":{"com.apple.CoreSimulator.SimRuntime.iOS-18-2":[
        {"udid":"A","name":"iPhone 16","state":"Shutdown"}]}})",
                   "detected relocation"});
    const auto devices = WatchedTask<std::vector<SimulatorDevice>>(service.availableIOSDevices()).result();
    ASSERT_EQ(devices.size(), 1U);
    EXPECT_EQ(devices[0].udid, u"A");
    EXPECT_EQ(commandLine(), u"/usr/bin/xcrun simctl list -j devices available");
}

TEST_F(SimctlServiceTest, ShowsTheRawTextOfAListThatIsNotJSON) {
    runner->reply({0, " == Devices ==\n-- iOS --\n", {}});
    const auto error = failure(service.availableIOSDevices());
    EXPECT_EQ(error, SimulatorControlError::parseFailed(u" == Devices ==\n-- iOS --\n"_s));
    EXPECT_EQ(error->errorDescription(), u"Could not read Simulator devices.  == Devices ==\n-- iOS --\n");
    EXPECT_EQ(error->recoverySuggestion(), u"Open Simulator from Xcode, then refresh devices."_s);
}

TEST_F(SimctlServiceTest, ShowsTheRawTextOfAListOfAnotherShape) {
    runner->reply({0, "{}", {}});
    EXPECT_EQ(failure(service.availableIOSDevices()), SimulatorControlError::parseFailed(u"{}"_s));
}

TEST_F(SimctlServiceTest, SaysWhyAListThatIsNoTextCannotBeRead) {
    runner->reply({0, "A\xFF", {}});
    const auto error = failure(service.availableIOSDevices());
    ASSERT_TRUE(error);
    EXPECT_TRUE(
        error->errorDescription().startsWith(u"Could not read Simulator devices. The data is not valid JSON: "_s));
}

TEST_F(SimctlServiceTest, StartsNoProcessToBootABootedDevice) {
    EXPECT_EQ(failure(service.boot(device(u"Booted"_s))), std::nullopt);
    EXPECT_TRUE(runner->commands().empty());
}

TEST_F(SimctlServiceTest, BootsADeviceWhoseStateOnlyResemblesBooted) {
    runner->reply({0, {}, {}});
    EXPECT_EQ(failure(service.boot(device(u"booted"_s))), std::nullopt);
    EXPECT_EQ(commandLine(), u"/usr/bin/xcrun simctl boot UDID");
}

TEST_F(SimctlServiceTest, TakesAReportOfABootedDeviceAsSuccessInAnyLetterCase) {
    for (const char* text :
         {"An error was encountered processing the command "
          "(domain=com.apple.CoreSimulator.SimError, code=405):\n"
          "Unable to boot device in current state: Booted\n",
          "Unable to erase contents and settings in current state: BOOTED\n", "No devices are booted.\n"}) {
        runner->reply({149, {}, text});
        EXPECT_EQ(failure(service.boot(device(u"Shutdown"_s))), std::nullopt) << text;
    }
}

TEST_F(SimctlServiceTest, TakesACommandLineWithTheWordBootedAsSuccess) {
    runner->reply({149, {}, "Unable to lookup in current state: Shutdown\n"});
    SimulatorDevice named = device(u"Shutdown"_s);
    named.udid = u"booted"_s;
    EXPECT_EQ(failure(service.boot(named)), std::nullopt);
}

TEST_F(SimctlServiceTest, FailsToBootWithTheTrimmedMessage) {
    runner->reply({60, {}, " \nUnable to boot the Simulator.\nlaunchd failed to respond.\n\n"});
    EXPECT_EQ(failure(service.boot(device(u"Shutdown"_s))),
              SimulatorControlError::commandFailed(u"/usr/bin/xcrun simctl boot UDID"_s, 60,
                                                   u"Unable to boot the Simulator.\nlaunchd failed to respond."_s));
}

TEST_F(SimctlServiceTest, DoesNotSwallowAReportOfABootedDeviceInAnyOtherStep) {
    const QByteArray text = "Device boot failed\nUnable to boot device in current state: Booted\n";
    runner->reply({149, {}, text});
    runner->reply({149, {}, text});
    EXPECT_EQ(
        failure(service.waitUntilBooted(udid)),
        SimulatorControlError::commandFailed(u"/usr/bin/xcrun simctl bootstatus UDID -b"_s, 149,
                                             u"Device boot failed\nUnable to boot device in current state: Booted"_s));
    EXPECT_TRUE(failure(service.clearLocation(udid)));
}

TEST_F(SimctlServiceTest, DescribesAFailureWithItsCommandStatusAndMessage) {
    runner->reply({60,
                   {},
                   "An error was encountered processing the command (domain=NSPOSIXErrorDomain, code=60):\n"
                   "Simulator device failed to open URL.\nOperation timed out\n"});
    const auto error = failure(service.openURL(udid, *URL::parse(u"http://localhost:3000")));
    ASSERT_TRUE(error);
    EXPECT_EQ(error->errorDescription(),
              u"/usr/bin/xcrun simctl openurl UDID http://localhost:3000 failed with exit code 60. An error was "
              "encountered processing the command (domain=NSPOSIXErrorDomain, code=60):\nSimulator device failed to "
              "open URL.\nOperation timed out"_s);
    EXPECT_EQ(error->recoverySuggestion(),
              u"Make sure Xcode is installed, Command Line Tools are selected, and an iOS runtime is available."_s);
}

TEST_F(SimctlServiceTest, SaysSoWhenThereIsNoErrorDetail) {
    runner->reply({1, "text on the other stream", {}});
    EXPECT_EQ(failure(service.clearLocation(udid))->errorDescription(),
              u"/usr/bin/xcrun simctl location UDID clear failed with exit code 1. No error detail was returned.");
}

TEST_F(SimctlServiceTest, TakesStandardOutputForErrorsThatAreNotUTF8) {
    runner->reply({1, "  the reason\n", "A\xFF"});
    EXPECT_EQ(failure(service.clearLocation(udid)),
              SimulatorControlError::commandFailed(u"/usr/bin/xcrun simctl location UDID clear"_s, 1, u"the reason"_s));
}

TEST_F(SimctlServiceTest, HasNoMessageWhenNeitherStreamIsUTF8) {
    runner->reply({-1, "\xC3", "\xFF"});
    EXPECT_EQ(failure(service.clearLocation(udid)),
              SimulatorControlError::commandFailed(u"/usr/bin/xcrun simctl location UDID clear"_s, -1, QString()));
}

TEST_F(SimctlServiceTest, SucceedsWithStatusZeroWhateverIsOnStandardError) {
    runner->reply({0, {}, QByteArray(100'000, 'x')});
    EXPECT_EQ(failure(service.waitUntilBooted(udid)), std::nullopt);
}

TEST_F(SimctlServiceTest, RunsTheCommandOfEachOperation) {
    runner->handler = [](const ProcessCommand&) { return ProcessResult{}; };
    EXPECT_FALSE(failure(service.waitUntilBooted(udid)));
    EXPECT_FALSE(failure(service.launchSimulator(udid)));
    EXPECT_FALSE(failure(service.openURL(udid, *URL::parse(u"http://a/"))));
    EXPECT_FALSE(failure(service.setLocation(udid, {1.5, -2})));
    EXPECT_FALSE(failure(service.clearLocation(udid)));
    QStringList lines;
    for (const ProcessCommand& command : runner->commands())
        lines.append(command.displayString());
    EXPECT_EQ(lines, (QStringList{u"/usr/bin/xcrun simctl bootstatus UDID -b"_s,
                                  u"/usr/bin/open -a Simulator --args -CurrentDeviceUDID UDID"_s,
                                  u"/usr/bin/xcrun simctl openurl UDID http://a/"_s,
                                  u"/usr/bin/xcrun simctl location UDID set 1.5,-2.0"_s,
                                  u"/usr/bin/xcrun simctl location UDID clear"_s}));
}

TEST_F(SimctlServiceTest, PassesALaunchErrorOnAsItIs) {
    const ProcessLaunchError expected(u"/usr/bin/xcrun"_s, u"Booted is not a program"_s);
    runner->fail(expected);
    runner->fail(expected);
    try {
        WatchedTask<void>(service.boot(device(u"Shutdown"_s))).result();
        ADD_FAILURE() << "nothing was thrown";
    } catch (const ProcessLaunchError& error) {
        EXPECT_EQ(error, expected);
    }
    EXPECT_THROW((void)WatchedTask<std::vector<SimulatorDevice>>(service.availableIOSDevices()).result(),
                 ProcessLaunchError);
}

TEST(SimulatorControlError, IsEqualForTheSameCaseAndPayloadOnly) {
    const auto error = SimulatorControlError::commandFailed(u"c"_s, 1, u"m"_s);
    EXPECT_EQ(error, SimulatorControlError::commandFailed(u"c"_s, 1, u"m"_s));
    EXPECT_FALSE(error == SimulatorControlError::commandFailed(u"c"_s, 2, u"m"_s));
    EXPECT_FALSE(error == SimulatorControlError::parseFailed(u"m"_s));
}

} // namespace
} // namespace corvanta
