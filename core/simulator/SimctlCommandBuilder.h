// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"
#include "simulator/ProcessCommand.h"
#include "support/URL.h"

namespace corvanta {

/// Spells out the command lines of the simulator tools. Starts nothing.
struct SimctlCommandBuilder {
    /// The launcher of the developer tools, for example /usr/bin/xcrun.
    QString xcrunPath;
    /// The launcher of applications, for example /usr/bin/open.
    QString openPath;

    /// The available devices as JSON.
    [[nodiscard]] ProcessCommand listAvailableDevices() const;
    [[nodiscard]] ProcessCommand boot(const QString& deviceID) const;
    /// Runs until the device has finished booting.
    [[nodiscard]] ProcessCommand bootStatus(const QString& deviceID) const;
    [[nodiscard]] ProcessCommand launchSimulator(const QString& deviceID) const;
    [[nodiscard]] ProcessCommand openURL(const QString& deviceID, const URL& url) const;
    [[nodiscard]] ProcessCommand setLocation(const QString& deviceID, const Coordinate& coordinate) const;
    [[nodiscard]] ProcessCommand clearLocation(const QString& deviceID) const;
};

} // namespace corvanta
