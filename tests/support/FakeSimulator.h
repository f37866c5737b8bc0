// SPDX-License-Identifier: MIT
#pragma once

#include "CallLog.h"
#include "Script.h"
#include "locations/CoordinateFormatter.h"
#include "simulator/SimulatorControlling.h"

namespace corvanta::testing {

enum class SimulatorOperation {
    availableIOSDevices,
    boot,
    waitUntilBooted,
    launchSimulator,
    openURL,
    setLocation,
    clearLocation,
};

/// A simulator that records what it is asked to do and does it as scripted.
class FakeSimulator final : public SimulatorControlling {
public:
    FakeSimulator(VirtualClock& clock, CallLog& log)
        : script(clock)
        , m_log(log) {}

    [[nodiscard]] QCoro::Task<std::vector<SimulatorDevice>> availableIOSDevices() override;
    [[nodiscard]] QCoro::Task<void> boot(SimulatorDevice device) override;
    [[nodiscard]] QCoro::Task<void> waitUntilBooted(QString deviceID) override;
    [[nodiscard]] QCoro::Task<void> launchSimulator(QString deviceID) override;
    [[nodiscard]] QCoro::Task<void> openURL(QString deviceID, URL url) override;
    [[nodiscard]] QCoro::Task<void> setLocation(QString deviceID, Coordinate coordinate) override;
    [[nodiscard]] QCoro::Task<void> clearLocation(QString deviceID) override;

    Script<SimulatorOperation> script;
    /// What is listed.
    std::vector<SimulatorDevice> devices;

private:
    CallLog& m_log;
};

} // namespace corvanta::testing
