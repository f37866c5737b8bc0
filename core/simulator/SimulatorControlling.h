// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"
#include "simulator/SimulatorDevice.h"
#include "support/URL.h"

#include <QCoroTask>

#include <vector>

namespace corvanta {

/// Lists and drives simulator devices. Every operation may throw a LocalizedError.
class SimulatorControlling {
public:
    SimulatorControlling() = default;
    SimulatorControlling(const SimulatorControlling&) = delete;
    SimulatorControlling& operator=(const SimulatorControlling&) = delete;
    virtual ~SimulatorControlling() = default;

    /// The usable iOS devices in display order.
    [[nodiscard]] virtual QCoro::Task<std::vector<SimulatorDevice>> availableIOSDevices() = 0;

    /// Boots the device; returns at once when it is booted already.
    [[nodiscard]] virtual QCoro::Task<void> boot(SimulatorDevice device) = 0;

    /// Returns once the device has finished booting.
    [[nodiscard]] virtual QCoro::Task<void> waitUntilBooted(QString deviceID) = 0;

    /// Opens the Simulator application on the device, or brings it forward.
    [[nodiscard]] virtual QCoro::Task<void> launchSimulator(QString deviceID) = 0;

    /// Opens an address in the device's browser.
    [[nodiscard]] virtual QCoro::Task<void> openURL(QString deviceID, URL url) = 0;

    [[nodiscard]] virtual QCoro::Task<void> setLocation(QString deviceID, Coordinate coordinate) = 0;

    [[nodiscard]] virtual QCoro::Task<void> clearLocation(QString deviceID) = 0;
};

} // namespace corvanta
