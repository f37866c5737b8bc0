// SPDX-License-Identifier: MIT
#include "setup/SystemPreflightProbe.h"

#include "simulator/IOSRuntimeParser.h"
#include "support/Text.h"

#include <QRegularExpression>

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

/// The first line that is not empty, at any Unicode line break.
std::optional<QString> firstLine(const QByteArray& bytes) {
    const QString text = decodeUTF8(bytes).value_or(QString());
    static const QRegularExpression lineBreak(u"[\\n\\r\\v\\f\\x{85}\\x{2028}\\x{2029}]"_s);
    const QStringList lines = text.split(lineBreak, Qt::SkipEmptyParts);
    return lines.isEmpty() ? std::nullopt : std::optional(lines.front());
}

} // namespace

SystemPreflightProbe::SystemPreflightProbe(std::unique_ptr<CommandRunning> runner, Desktop& desktop)
    : m_runner(std::move(runner))
    , m_desktop(desktop) {}

QCoro::Task<SetupFacts> SystemPreflightProbe::facts(bool accessibilityTrusted,
                                                    std::optional<bool> safariDeveloperFeatures) {
    const OperatingSystemVersion version = m_desktop.operatingSystemVersion();
    SetupFacts facts;
    // The program is built for arm64 only, so whatever runs it is on Apple silicon.
    facts.isAppleSilicon = true;
    facts.macOSMajorVersion = version.major;
    facts.macOSMinorVersion = version.minor;
    facts.accessibilityTrusted = accessibilityTrusted;
    facts.safariDeveloperFeatures = safariDeveloperFeatures;
    facts.xcodeVersion = co_await readXcodeVersion();
    facts.simctlAvailable = co_await commandSucceeds(u"/usr/bin/xcrun"_s, {u"--find"_s, u"simctl"_s});
    if (facts.simctlAvailable)
        facts.availableIOSRuntimeCount = co_await readIOSRuntimeCount();
    co_return facts;
}

QCoro::Task<std::optional<ProcessResult>> SystemPreflightProbe::succeed(QString executable, QStringList arguments) {
    try {
        ProcessResult result = co_await m_runner->run(ProcessCommand{executable, arguments});
        if (result.terminationStatus == 0)
            co_return std::optional(std::move(result));
    } catch (...) { // A tool that cannot be started is a fact like any other.
    }
    co_return std::nullopt;
}

QCoro::Task<bool> SystemPreflightProbe::commandSucceeds(QString executable, QStringList arguments) {
    const auto result = co_await succeed(executable, arguments);
    co_return result.has_value();
}

QCoro::Task<std::optional<QString>> SystemPreflightProbe::readXcodeVersion() {
    const auto result = co_await succeed(u"/usr/bin/xcodebuild"_s, {u"-version"_s});
    co_return result ? firstLine(result->standardOutput) : std::nullopt;
}

QCoro::Task<std::optional<int>> SystemPreflightProbe::readIOSRuntimeCount() {
    const auto result =
        co_await succeed(u"/usr/bin/xcrun"_s, {u"simctl"_s, u"list"_s, u"-j"_s, u"runtimes"_s, u"available"_s});
    if (!result)
        co_return std::nullopt;
    try {
        co_return std::optional(IOSRuntimeParser::availableIOSRuntimeCount(result->standardOutput));
    } catch (...) { // Output that is no runtime list says nothing about the runtimes.
    }
    co_return std::nullopt;
}

} // namespace corvanta
