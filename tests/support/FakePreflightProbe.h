// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "Script.h"
#include "setup/SystemPreflightProbing.h"

namespace corvanta::testing {

enum class PreflightOperation { facts };

/// A probe that finds the facts it was given. At first all of them are good.
class FakePreflightProbe final : public SystemPreflightProbing {
public:
    FakePreflightProbe(VirtualClock& clock, CallLog& log)
        : script(clock)
        , m_log(log) {}

    [[nodiscard]] QCoro::Task<SetupFacts> facts(bool accessibilityTrusted,
                                                std::optional<bool> safariDeveloperFeatures) override {
        const QString features = !safariDeveloperFeatures   ? QStringLiteral("unknown")
                                 : *safariDeveloperFeatures ? QStringLiteral("on")
                                                            : QStringLiteral("off");
        m_log.add(QStringLiteral("facts ") +
                  (accessibilityTrusted ? QStringLiteral("trusted") : QStringLiteral("untrusted")) +
                  QStringLiteral(", developer features ") + features);
        co_await script.play(PreflightOperation::facts);
        SetupFacts facts = found;
        facts.accessibilityTrusted = accessibilityTrusted;
        facts.safariDeveloperFeatures = safariDeveloperFeatures;
        co_return facts;
    }

    Script<PreflightOperation> script;
    SetupFacts found{
        .isAppleSilicon = true,
        .macOSMajorVersion = 15,
        .macOSMinorVersion = 1,
        .xcodeVersion = QStringLiteral("Xcode 16.2"),
        .simctlAvailable = true,
        .availableIOSRuntimeCount = 2,
        .accessibilityTrusted = false,
        .safariDeveloperFeatures = std::nullopt,
    };

private:
    CallLog& m_log;
};

} // namespace corvanta::testing
