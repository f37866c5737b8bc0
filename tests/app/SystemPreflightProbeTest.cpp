// SPDX-License-Identifier: MIT
#include "setup/SystemPreflightProbe.h"

#include "FakeCommandRunner.h"
#include "FakeDesktop.h"
#include "FakeError.h"
#include "Printing.h"
#include "TaskWaiting.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

void PrintTo(const ProcessCommand& command, std::ostream* stream) {
    *stream << command.displayString().toStdString();
}

namespace {

using ::testing::ElementsAre;

const ProcessCommand xcodeVersion{u"/usr/bin/xcodebuild"_s, {u"-version"_s}};
const ProcessCommand findSimctl{u"/usr/bin/xcrun"_s, {u"--find"_s, u"simctl"_s}};
const ProcessCommand listRuntimes{u"/usr/bin/xcrun"_s,
                                  {u"simctl"_s, u"list"_s, u"-j"_s, u"runtimes"_s, u"available"_s}};

constexpr auto versionReport = "Xcode 16.2\nBuild version 16C5032a\n";
constexpr auto twoRuntimes = R"({"runtimes": [
    {"identifier": "com.apple.CoreSimulator.SimRuntime.iOS-18-2", "isAvailable": true},
    {"identifier": "com.apple.CoreSimulator.SimRuntime.iOS-17-5", "isAvailable": true}]})";

class SystemPreflightProbeTest : public ::testing::Test {
protected:
    [[nodiscard]] SetupFacts facts(bool accessibilityTrusted = true,
                                   std::optional<bool> safariDeveloperFeatures = true) {
        const testing::WatchedTask task(probe.facts(accessibilityTrusted, safariDeveloperFeatures));
        return task.result();
    }

    testing::VirtualClock clock;
    testing::CallLog log{clock};
    testing::FakeDesktop desktop{clock, log};
    std::unique_ptr<testing::FakeCommandRunner> ownedRunner = std::make_unique<testing::FakeCommandRunner>();
    testing::FakeCommandRunner& runner = *ownedRunner;
    SystemPreflightProbe probe{std::move(ownedRunner), desktop};
};

TEST_F(SystemPreflightProbeTest, GathersEverythingInOrder) {
    desktop.version = {15, 3};
    runner.reply({0, versionReport, {}});
    runner.reply({0, "/Applications/Xcode.app/simctl\n", {}});
    runner.reply({0, twoRuntimes, {}});
    EXPECT_EQ(facts(), (SetupFacts{.isAppleSilicon = true,
                                   .macOSMajorVersion = 15,
                                   .macOSMinorVersion = 3,
                                   .xcodeVersion = u"Xcode 16.2"_s,
                                   .simctlAvailable = true,
                                   .availableIOSRuntimeCount = 2,
                                   .accessibilityTrusted = true,
                                   .safariDeveloperFeatures = true}));
    EXPECT_THAT(runner.commands(), ElementsAre(xcodeVersion, findSimctl, listRuntimes));
}

TEST_F(SystemPreflightProbeTest, StillLooksForTheOthersWhenTheDeveloperToolsReportAnError) {
    runner.reply({1, "Xcode 16.2\n", "xcode-select: error"});
    runner.reply({0, {}, {}});
    runner.reply({0, twoRuntimes, {}});
    const SetupFacts found = facts();
    EXPECT_EQ(found.xcodeVersion, std::nullopt);
    EXPECT_TRUE(found.simctlAvailable);
    EXPECT_EQ(found.availableIOSRuntimeCount, 2);
    EXPECT_THAT(runner.commands(), ElementsAre(xcodeVersion, findSimctl, listRuntimes));
}

TEST_F(SystemPreflightProbeTest, StillLooksForTheOthersWhenTheDeveloperToolsCannotBeStarted) {
    runner.fail(testing::FakeError(u"The file does not exist."_s));
    runner.reply({0, {}, {}});
    runner.reply({0, twoRuntimes, {}});
    const SetupFacts found = facts();
    EXPECT_EQ(found.xcodeVersion, std::nullopt);
    EXPECT_TRUE(found.simctlAvailable);
    EXPECT_EQ(found.availableIOSRuntimeCount, 2);
}

TEST_F(SystemPreflightProbeTest, AsksForNoRuntimesWhenTheCommandToolsReportAnError) {
    runner.reply({0, versionReport, {}});
    runner.reply({72, {}, "xcrun: error: unable to find utility"});
    const SetupFacts found = facts();
    EXPECT_EQ(found.xcodeVersion, u"Xcode 16.2"_s);
    EXPECT_FALSE(found.simctlAvailable);
    EXPECT_EQ(found.availableIOSRuntimeCount, std::nullopt);
    EXPECT_THAT(runner.commands(), ElementsAre(xcodeVersion, findSimctl));
}

TEST_F(SystemPreflightProbeTest, AsksForNoRuntimesWhenTheCommandToolsCannotBeStarted) {
    runner.reply({0, versionReport, {}});
    runner.fail(testing::FakeError(u"The file does not exist."_s));
    const SetupFacts found = facts();
    EXPECT_FALSE(found.simctlAvailable);
    EXPECT_EQ(found.availableIOSRuntimeCount, std::nullopt);
    EXPECT_THAT(runner.commands(), ElementsAre(xcodeVersion, findSimctl));
}

TEST_F(SystemPreflightProbeTest, PassesTheTwoGivenFactsThroughUnchanged) {
    for (const bool trusted : {false, true}) {
        for (const std::optional<bool> features : {std::optional<bool>(), std::optional(false), std::optional(true)}) {
            runner.reply({1, {}, {}});
            runner.reply({1, {}, {}});
            const SetupFacts found = facts(trusted, features);
            EXPECT_EQ(found.accessibilityTrusted, trusted);
            EXPECT_EQ(found.safariDeveloperFeatures, features);
        }
    }
}

struct VersionCase {
    std::string name;
    QByteArray output;
    std::optional<QString> version;
};

void PrintTo(const VersionCase& value, std::ostream* stream) {
    *stream << value.name;
}

class SystemPreflightProbeVersion : public SystemPreflightProbeTest,
                                    public ::testing::WithParamInterface<VersionCase> {};

TEST_P(SystemPreflightProbeVersion, IsTheFirstLineThatIsNotEmpty) {
    runner.reply({0, GetParam().output, {}});
    runner.reply({1, {}, {}});
    EXPECT_EQ(facts().xcodeVersion, GetParam().version);
}

INSTANTIATE_TEST_SUITE_P(Cases, SystemPreflightProbeVersion,
                         ::testing::Values(VersionCase{"oneLine", "Xcode 16.2", u"Xcode 16.2"_s},
                                           VersionCase{"emptyLinesFirst", "\n\r\n\nXcode 16.2\nBuild", u"Xcode 16.2"_s},
                                           VersionCase{"carriageReturn", "Xcode 16.2\rBuild", u"Xcode 16.2"_s},
                                           VersionCase{"carriageReturnAndLineFeed", "Xcode 16.2\r\nBuild",
                                                       u"Xcode 16.2"_s},
                                           VersionCase{"verticalTab", "Xcode 16.2\vBuild", u"Xcode 16.2"_s},
                                           VersionCase{"formFeed", "Xcode 16.2\fBuild", u"Xcode 16.2"_s},
                                           VersionCase{"nextLine",
                                                       "Xcode 16.2\xC2\x85"
                                                       "Build",
                                                       u"Xcode 16.2"_s},
                                           VersionCase{"lineSeparator",
                                                       "Xcode 16.2\xE2\x80\xA8"
                                                       "Build",
                                                       u"Xcode 16.2"_s},
                                           VersionCase{"paragraphSeparator",
                                                       "Xcode 16.2\xE2\x80\xA9"
                                                       "Build",
                                                       u"Xcode 16.2"_s},
                                           VersionCase{"otherWhiteSpaceIsKept", "  \t\n  Xcode 16.2 \n", u"  \t"_s},
                                           VersionCase{"noOutput", "", std::nullopt},
                                           VersionCase{"onlyLineBreaks", "\n\r\n\v", std::nullopt},
                                           VersionCase{"invalidUtf8", "Xcode 16.2\n\xFF\n", std::nullopt},
                                           VersionCase{"utf8CutOffAtTheEnd", "Xcode 16.2\n\xE2\x80", std::nullopt}),
                         testing::CaseName());

struct RuntimesCase {
    std::string name;
    ProcessResult result;
    std::optional<int> count;
};

void PrintTo(const RuntimesCase& value, std::ostream* stream) {
    *stream << value.name;
}

class SystemPreflightProbeRuntimes : public SystemPreflightProbeTest,
                                     public ::testing::WithParamInterface<RuntimesCase> {};

TEST_P(SystemPreflightProbeRuntimes, AreCountedOnlyInAReadableList) {
    runner.reply({0, versionReport, {}});
    runner.reply({0, {}, {}});
    runner.reply(GetParam().result);
    const SetupFacts found = facts();
    EXPECT_TRUE(found.simctlAvailable);
    EXPECT_EQ(found.availableIOSRuntimeCount, GetParam().count);
}

INSTANTIATE_TEST_SUITE_P(Cases, SystemPreflightProbeRuntimes,
                         ::testing::Values(RuntimesCase{"two", {0, twoRuntimes, {}}, 2},
                                           RuntimesCase{"none", {0, R"({"runtimes": []})", {}}, 0},
                                           RuntimesCase{"notJson", {0, "No runtimes", {}}, std::nullopt},
                                           RuntimesCase{"anotherShape", {0, R"({"devices": {}})", {}}, std::nullopt},
                                           RuntimesCase{"noOutput", {0, {}, {}}, std::nullopt},
                                           RuntimesCase{"failed", {1, twoRuntimes, {}}, std::nullopt}),
                         testing::CaseName());

TEST_F(SystemPreflightProbeTest, KnowsNoRuntimeCountWhenTheListCannotBeStarted) {
    runner.reply({0, versionReport, {}});
    runner.reply({0, {}, {}});
    runner.fail(testing::FakeError(u"Too many open files."_s));
    const SetupFacts found = facts();
    EXPECT_TRUE(found.simctlAvailable);
    EXPECT_EQ(found.availableIOSRuntimeCount, std::nullopt);
}

} // namespace

} // namespace corvanta
