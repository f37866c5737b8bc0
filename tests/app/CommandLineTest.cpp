// SPDX-License-Identifier: MIT
#include "shell/CommandLine.h"

#include "Printing.h"
#include "shell/AppIdentity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

CommandLineOutcome parse(const QStringList& arguments) {
    return parseCommandLine(QStringList{u"Corvanta"_s} + arguments);
}

TEST(CommandLine, RunsInteractivelyWithoutArguments) {
    const auto outcome = parse({});
    EXPECT_EQ(outcome.commandLine, CommandLine());
    EXPECT_EQ(outcome.message, u""_s);
    EXPECT_EQ(outcome.exitStatus, 0);
}

TEST(CommandLine, TakesAnAddressAsItIs) {
    EXPECT_EQ(parse({u"--url"_s, u" LocalHost:3000/A b "_s}).commandLine->url, u" LocalHost:3000/A b "_s);
    EXPECT_EQ(parse({u"--url=http://example.org/?a=b"_s}).commandLine->url, u"http://example.org/?a=b"_s);
    EXPECT_EQ(parse({u"--url"_s, u""_s}).commandLine->url, u""_s);
}

TEST(CommandLine, TakesADevice) {
    EXPECT_EQ(parse({u"--device"_s, u"iPhone 16 Pro"_s}).commandLine->device, u"iPhone 16 Pro"_s);
}

TEST(CommandLine, StartsOnlyWhenAsked) {
    EXPECT_TRUE(parse({u"--start"_s}).commandLine->start);
    EXPECT_FALSE(parse({u"--url"_s, u"localhost"_s}).commandLine->start);
}

TEST(CommandLine, StartsForAScreenshot) {
    const auto line = parse({u"--screenshot"_s, u"/tmp/desktop.png"_s}).commandLine;
    EXPECT_EQ(line->screenshot, u"/tmp/desktop.png"_s);
    EXPECT_TRUE(line->start);
}

TEST(CommandLine, TakesEverythingTogether) {
    EXPECT_EQ(
        parse({u"--start"_s, u"--device"_s, u"A"_s, u"--url"_s, u"b"_s, u"--screenshot"_s, u"c.png"_s}).commandLine,
        (CommandLine{.url = u"b"_s, .device = u"A"_s, .start = true, .screenshot = u"c.png"_s}));
}

TEST(CommandLine, ShowsTheVersionLineAndExits) {
    for (const QString& option : {u"--version"_s, u"-v"_s}) {
        const auto outcome = parse({option});
        EXPECT_EQ(outcome.commandLine, std::nullopt);
        EXPECT_EQ(outcome.message, AppIdentity::versionLine() + u'\n');
        EXPECT_EQ(outcome.exitStatus, 0);
    }
}

TEST(CommandLine, ShowsEveryOptionInTheHelpAndExits) {
    for (const QString& option : {u"--help"_s, u"-h"_s}) {
        const auto outcome = parse({option});
        EXPECT_EQ(outcome.commandLine, std::nullopt);
        EXPECT_EQ(outcome.exitStatus, 0);
        EXPECT_TRUE(outcome.message.startsWith(u"Usage: Corvanta [options]\n"_s)) << outcome.message.toStdString();
        for (const auto& documented :
             {u"--url <ADDRESS>"_s, u"--device <DEVICE>"_s, u"--start"_s, u"--screenshot <FILE>"_s, u"--help"_s,
              u"--version"_s, u"Web testing workspace for iOS Simulator."_s})
            EXPECT_TRUE(outcome.message.contains(documented)) << documented.toStdString();
    }
}

TEST(CommandLine, PrefersHelpToEverythingElse) {
    EXPECT_TRUE(parse({u"--version"_s, u"--help"_s, u"stray"_s}).message.contains(u"--screenshot"_s));
}

struct RefusalCase {
    std::string name;
    QStringList arguments;
    QString complaint;
};

void PrintTo(const RefusalCase& value, std::ostream* stream) {
    *stream << value.name;
}

class CommandLineRefusal : public ::testing::TestWithParam<RefusalCase> {};

TEST_P(CommandLineRefusal, SaysWhatIsWrongAndExitsWithTwo) {
    const auto outcome = parse(GetParam().arguments);
    EXPECT_EQ(outcome.commandLine, std::nullopt);
    EXPECT_EQ(outcome.exitStatus, 2);
    EXPECT_EQ(outcome.message,
              u"Corvanta: "_s + GetParam().complaint + u"\nTry 'Corvanta --help' for the options.\n"_s);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CommandLineRefusal,
    ::testing::Values(RefusalCase{"unknownOption", {u"--frobnicate"_s}, u"Unknown option 'frobnicate'."_s},
                      RefusalCase{
                          "strayArgument", {u"http://localhost"_s}, u"Unexpected argument 'http://localhost'."_s},
                      RefusalCase{"missingValue", {u"--device"_s}, u"Missing value after '--device'."_s},
                      RefusalCase{"valueForASwitch", {u"--start=now"_s}, u"Unexpected value after '--start'."_s}),
    testing::CaseName());

TEST(AppIdentity, ShowsVersionAndBuildInOneForm) {
    EXPECT_EQ(AppIdentity::versionLine(),
              u"Corvanta "_s + AppIdentity::version() + u" ("_s + AppIdentity::buildNumber() + u")"_s);
    EXPECT_FALSE(AppIdentity::version().isEmpty());
    EXPECT_FALSE(AppIdentity::buildNumber().isEmpty());
}

} // namespace

} // namespace corvanta
