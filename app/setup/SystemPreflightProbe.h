// SPDX-License-Identifier: MIT
#pragma once

#include "Desktop.h"
#include "setup/SystemPreflightProbing.h"
#include "simulator/CommandRunning.h"

#include <memory>

namespace corvanta {

/// Asks the host for its version and runs three developer-tool commands, strictly one after another.
class SystemPreflightProbe final : public SystemPreflightProbing {
public:
    /// `desktop` outlives the probe.
    SystemPreflightProbe(std::unique_ptr<CommandRunning> runner, Desktop& desktop);

    [[nodiscard]] QCoro::Task<SetupFacts> facts(bool accessibilityTrusted,
                                                std::optional<bool> safariDeveloperFeatures) override;

private:
    /// The result of a command that could be started and exited with status 0.
    [[nodiscard]] QCoro::Task<std::optional<ProcessResult>> succeed(QString executable, QStringList arguments);
    [[nodiscard]] QCoro::Task<bool> commandSucceeds(QString executable, QStringList arguments);
    [[nodiscard]] QCoro::Task<std::optional<QString>> readXcodeVersion();
    [[nodiscard]] QCoro::Task<std::optional<int>> readIOSRuntimeCount();

    std::unique_ptr<CommandRunning> m_runner;
    Desktop& m_desktop;
};

} // namespace corvanta
