// SPDX-License-Identifier: MIT
#include "setup/SetupCheckEvaluator.h"

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int requiredMajorVersion = 15;

struct Verdict {
    SetupCheckState state;
    QString detail;
    SetupRecoveryAction recoveryAction = SetupRecoveryAction::none;
};

Verdict passed(const QString& detail) {
    return {SetupCheckState::passed, detail};
}

Verdict failed(const QString& detail, SetupRecoveryAction action) {
    return {SetupCheckState::failed, detail, action};
}

Verdict blocked(const QString& detail) {
    return {SetupCheckState::blocked, detail};
}

SetupCheck row(SetupRequirementID id, const QString& title, const Verdict& verdict) {
    return {id, title, verdict.detail, verdict.state, verdict.recoveryAction};
}

Verdict judgeProcessor(const SetupFacts& facts) {
    if (facts.isAppleSilicon)
        return passed(u"Supported processor"_s);
    return failed(u"This beta currently requires an Apple silicon Mac."_s, SetupRecoveryAction::none);
}

Verdict judgeSystem(const SetupFacts& facts) {
    const QString version = u"%1.%2"_s.arg(facts.macOSMajorVersion).arg(facts.macOSMinorVersion);
    if (facts.macOSMajorVersion >= requiredMajorVersion)
        return passed(u"macOS "_s + version);
    return failed(u"Found macOS "_s + version, SetupRecoveryAction::openSoftwareUpdate);
}

Verdict judgeXcode(const SetupFacts& facts) {
    if (facts.xcodeVersion)
        return passed(*facts.xcodeVersion);
    return failed(u"Install Xcode and finish its first-launch setup."_s, SetupRecoveryAction::openXcodeDownload);
}

Verdict judgeSimctl(const SetupFacts& facts) {
    if (!facts.xcodeVersion)
        return blocked(u"Waiting for Xcode"_s);
    if (facts.simctlAvailable)
        return passed(u"simctl is available"_s);
    return failed(u"Open Xcode once and select its Command Line Tools."_s, SetupRecoveryAction::openXcode);
}

Verdict judgeRuntime(const SetupFacts& facts) {
    if (!facts.xcodeVersion || !facts.simctlAvailable)
        return blocked(u"Waiting for Xcode and Simulator command tools"_s);
    const int count = facts.availableIOSRuntimeCount.value_or(0);
    if (count < 1)
        return failed(u"Install an iOS Simulator runtime in Xcode Settings."_s, SetupRecoveryAction::openXcode);
    if (count == 1)
        return passed(u"1 iOS runtime installed"_s);
    return passed(QString::number(count) + u" iOS runtimes installed"_s);
}

Verdict judgeAccessibility(const SetupFacts& facts) {
    if (facts.accessibilityTrusted)
        return passed(u"Allowed for this app"_s);
    return failed(u"Required to choose Safari targets and arrange windows."_s,
                  SetupRecoveryAction::requestAccessibility);
}

Verdict judgeDeveloperFeatures(const SetupFacts& facts) {
    if (!facts.accessibilityTrusted)
        return blocked(u"Accessibility access is needed to verify Safari."_s);
    if (facts.safariDeveloperFeatures.value_or(false))
        return passed(u"Develop menu is available"_s);
    return failed(u"Enable Show features for web developers in Safari Settings > Advanced."_s,
                  SetupRecoveryAction::openSafari);
}

} // namespace

std::vector<SetupCheck> SetupCheckEvaluator::evaluate(const SetupFacts& facts) {
    using enum SetupRequirementID;
    return {
        row(appleSilicon, u"Apple silicon Mac"_s, judgeProcessor(facts)),
        row(macOS, u"macOS 15 or later"_s, judgeSystem(facts)),
        row(xcode, u"Xcode"_s, judgeXcode(facts)),
        row(simctl, u"Simulator command tools"_s, judgeSimctl(facts)),
        row(iosRuntime, u"iOS Simulator runtime"_s, judgeRuntime(facts)),
        row(accessibility, u"Accessibility permission"_s, judgeAccessibility(facts)),
        row(safariDeveloperFeatures, u"Safari developer features"_s, judgeDeveloperFeatures(facts)),
    };
}

bool allRequirementsSatisfied(std::span<const SetupCheck> checks) {
    return !checks.empty() &&
           std::ranges::all_of(
               checks, [](SetupCheckState state) { return state == SetupCheckState::passed; }, &SetupCheck::state);
}

} // namespace corvanta
