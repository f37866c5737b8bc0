// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/CommandRunning.h"
#include "simulator/SimctlCommandBuilder.h"
#include "simulator/SimulatorControlError.h"
#include "simulator/SimulatorControlling.h"

#include <memory>

namespace corvanta {

/// Drives the simulator through its command-line tool.
///
/// A status other than 0 and an unreadable device list throw SimulatorControlError; a tool that cannot be started
/// throws the runner's error as it is. A call that is under way does not need the service any more.
class SimctlService final : public SimulatorControlling {
public:
    SimctlService(std::shared_ptr<CommandRunning> runner, SimctlCommandBuilder builder);

    [[nodiscard]] QCoro::Task<std::vector<SimulatorDevice>> availableIOSDevices() override;

    /// Succeeds also when the tool reports that the device is booted already.
    [[nodiscard]] QCoro::Task<void> boot(SimulatorDevice device) override;
    [[nodiscard]] QCoro::Task<void> waitUntilBooted(QString deviceID) override;
    [[nodiscard]] QCoro::Task<void> launchSimulator(QString deviceID) override;
    [[nodiscard]] QCoro::Task<void> openURL(QString deviceID, URL url) override;
    [[nodiscard]] QCoro::Task<void> setLocation(QString deviceID, Coordinate coordinate) override;
    [[nodiscard]] QCoro::Task<void> clearLocation(QString deviceID) override;

private:
    std::shared_ptr<CommandRunning> m_runner;
    SimctlCommandBuilder m_builder;
};

} // namespace corvanta
