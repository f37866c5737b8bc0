// SPDX-License-Identifier: MIT
#include "setup/SetupCheckEvaluator.h"

#include "Printing.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using enum SetupCheckState;

SetupFacts readyFacts() {
    return {true, 15, 1, u"Xcode 16.2"_s, true, 2, true, true};
}

SetupCheck row(const SetupFacts& facts, SetupRequirementID id) {
    return SetupCheckEvaluator::evaluate(facts).at(static_cast<std::size_t>(id));
}

TEST(SetupCheckEvaluator, PassesEveryRowOfAReadyMac) {
    using Row = SetupCheck;
    constexpr auto none = SetupRecoveryAction::none;
    EXPECT_EQ(SetupCheckEvaluator::evaluate(readyFacts()),
              (std::vector<SetupCheck>{
                  Row{SetupRequirementID::appleSilicon, u"Apple silicon Mac"_s, u"Supported processor"_s, passed, none},
                  Row{SetupRequirementID::macOS, u"macOS 15 or later"_s, u"macOS 15.1"_s, passed, none},
                  Row{SetupRequirementID::xcode, u"Xcode"_s, u"Xcode 16.2"_s, passed, none},
                  Row{SetupRequirementID::simctl, u"Simulator command tools"_s, u"simctl is available"_s, passed, none},
                  Row{SetupRequirementID::iosRuntime, u"iOS Simulator runtime"_s, u"2 iOS runtimes installed"_s, passed,
                      none},
                  Row{SetupRequirementID::accessibility, u"Accessibility permission"_s, u"Allowed for this app"_s,
                      passed, none},
                  Row{SetupRequirementID::safariDeveloperFeatures, u"Safari developer features"_s,
                      u"Develop menu is available"_s, passed, none},
              }));
}

TEST(SetupCheckEvaluator, JudgesAMacWithoutAnything) {
    using Row = SetupCheck;
    SetupFacts facts;
    facts.macOSMajorVersion = 14;
    facts.macOSMinorVersion = 7;
    EXPECT_EQ(SetupCheckEvaluator::evaluate(facts),
              (std::vector<SetupCheck>{
                  Row{SetupRequirementID::appleSilicon, u"Apple silicon Mac"_s,
                      u"This beta currently requires an Apple silicon Mac."_s, failed, SetupRecoveryAction::none},
                  Row{SetupRequirementID::macOS, u"macOS 15 or later"_s, u"Found macOS 14.7"_s, failed,
                      SetupRecoveryAction::openSoftwareUpdate},
                  Row{SetupRequirementID::xcode, u"Xcode"_s, u"Install Xcode and finish its first-launch setup."_s,
                      failed, SetupRecoveryAction::openXcodeDownload},
                  Row{SetupRequirementID::simctl, u"Simulator command tools"_s, u"Waiting for Xcode"_s, blocked,
                      SetupRecoveryAction::none},
                  Row{SetupRequirementID::iosRuntime, u"iOS Simulator runtime"_s,
                      u"Waiting for Xcode and Simulator command tools"_s, blocked, SetupRecoveryAction::none},
                  Row{SetupRequirementID::accessibility, u"Accessibility permission"_s,
                      u"Required to choose Safari targets and arrange windows."_s, failed,
                      SetupRecoveryAction::requestAccessibility},
                  Row{SetupRequirementID::safariDeveloperFeatures, u"Safari developer features"_s,
                      u"Accessibility access is needed to verify Safari."_s, blocked, SetupRecoveryAction::none},
              }));
}

TEST(SetupCheckEvaluator, ComparesOnlyTheMajorVersion) {
    SetupFacts facts = readyFacts();
    facts.macOSMajorVersion = 15;
    facts.macOSMinorVersion = 0;
    EXPECT_EQ(row(facts, SetupRequirementID::macOS).state, passed);
    facts.macOSMajorVersion = 14;
    facts.macOSMinorVersion = 99;
    EXPECT_EQ(row(facts, SetupRequirementID::macOS).state, failed);
    facts.macOSMajorVersion = 26;
    EXPECT_EQ(row(facts, SetupRequirementID::macOS).detail, u"macOS 26.99");
}

TEST(SetupCheckEvaluator, BlocksToolsAndRuntimesWithoutXcodeWhateverElseIsThere) {
    SetupFacts facts = readyFacts();
    facts.xcodeVersion = std::nullopt;
    for (const bool isAvailable : {true, false}) {
        facts.simctlAvailable = isAvailable;
        for (const auto id : {SetupRequirementID::simctl, SetupRequirementID::iosRuntime}) {
            EXPECT_EQ(row(facts, id).state, blocked);
            EXPECT_EQ(row(facts, id).recoveryAction, SetupRecoveryAction::none);
        }
    }
}

TEST(SetupCheckEvaluator, FailsTheToolsAndBlocksTheRuntimeWhenOnlyTheToolsAreMissing) {
    SetupFacts facts = readyFacts();
    facts.simctlAvailable = false;
    EXPECT_EQ(
        row(facts, SetupRequirementID::simctl),
        (SetupCheck{SetupRequirementID::simctl, u"Simulator command tools"_s,
                    u"Open Xcode once and select its Command Line Tools."_s, failed, SetupRecoveryAction::openXcode}));
    EXPECT_EQ(row(facts, SetupRequirementID::iosRuntime).state, blocked);
}

TEST(SetupCheckEvaluator, GivesTheSameRowForNoRuntimeAndAnUnknownNumber) {
    SetupFacts facts = readyFacts();
    facts.availableIOSRuntimeCount = 0;
    const SetupCheck none = row(facts, SetupRequirementID::iosRuntime);
    facts.availableIOSRuntimeCount = std::nullopt;
    EXPECT_EQ(row(facts, SetupRequirementID::iosRuntime), none);
    EXPECT_EQ(none, (SetupCheck{SetupRequirementID::iosRuntime, u"iOS Simulator runtime"_s,
                                u"Install an iOS Simulator runtime in Xcode Settings."_s, failed,
                                SetupRecoveryAction::openXcode}));
}

TEST(SetupCheckEvaluator, CountsRuntimesInWords) {
    SetupFacts facts = readyFacts();
    facts.availableIOSRuntimeCount = 1;
    EXPECT_EQ(row(facts, SetupRequirementID::iosRuntime).detail, u"1 iOS runtime installed");
    facts.availableIOSRuntimeCount = 2;
    EXPECT_EQ(row(facts, SetupRequirementID::iosRuntime).detail, u"2 iOS runtimes installed");
}

TEST(SetupCheckEvaluator, BlocksTheDeveloperFeaturesWithoutAccessibilityEvenWhenTheyAreOn) {
    SetupFacts facts = readyFacts();
    facts.accessibilityTrusted = false;
    EXPECT_EQ(row(facts, SetupRequirementID::safariDeveloperFeatures).state, blocked);
}

TEST(SetupCheckEvaluator, FailsTheDeveloperFeaturesAlikeWhenTheyAreOffOrUnknown) {
    SetupFacts facts = readyFacts();
    for (const std::optional<bool> state : {std::optional<bool>(false), std::optional<bool>()}) {
        facts.safariDeveloperFeatures = state;
        EXPECT_EQ(row(facts, SetupRequirementID::safariDeveloperFeatures),
                  (SetupCheck{SetupRequirementID::safariDeveloperFeatures, u"Safari developer features"_s,
                              u"Enable Show features for web developers in Safari Settings > Advanced."_s, failed,
                              SetupRecoveryAction::openSafari}));
    }
}

TEST(AllRequirementsSatisfied, NeedsRowsThatAllPassed) {
    EXPECT_FALSE(allRequirementsSatisfied({}));
    auto checks = SetupCheckEvaluator::evaluate(readyFacts());
    EXPECT_TRUE(allRequirementsSatisfied(checks));
    for (const SetupCheckState state : {failed, blocked}) {
        checks.back().state = state;
        EXPECT_FALSE(allRequirementsSatisfied(checks));
    }
}

TEST(SetupRequirementID, HasItsNameAsRawValue) {
    QStringList names;
    for (const SetupRequirementID id : allSetupRequirementIDs) {
        names.append(rawValue(id));
        EXPECT_EQ(setupRequirementIDFromRawValue(rawValue(id)), id);
    }
    EXPECT_EQ(names, (QStringList{u"appleSilicon"_s, u"macOS"_s, u"xcode"_s, u"simctl"_s, u"iosRuntime"_s,
                                  u"accessibility"_s, u"safariDeveloperFeatures"_s}));
    EXPECT_EQ(setupRequirementIDFromRawValue(u"macos"), std::nullopt);
}

} // namespace
} // namespace corvanta
