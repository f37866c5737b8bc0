// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceBus.h"
#include "DeviceSet.h"

#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace corvanta::lab {

/// What came of an attempt to boot.
enum class BootResult {
    /// The device's process owns its name: it is booting.
    accepted,
    /// It was booting or booted before.
    alreadyRunning,
    /// Its process ended or did not show up in time; its log tells why.
    failed,
};

/// Starts a program in a session of its own with nothing inherited but the environment; its output goes to the log
/// file.
///
/// Returns the process id. Throws DeviceSetError when it cannot be started.
pid_t startDetached(const QString& program, const QStringList& arguments, const QString& logFile);

/// Boots the device and returns once the boot is accepted. Boots of one device by several programs take turns.
/// Throws std::runtime_error, mostly a DeviceSetError or a DeviceBusError.
[[nodiscard]] BootResult bootDevice(DeviceBus& bus, DeviceSet& set, const Device& device);

/// Asks the device's process to leave and waits until it has. False when it did not in time. Throws DeviceBusError.
[[nodiscard]] bool shutDownDevice(DeviceBus& bus, const QString& udid);

} // namespace corvanta::lab
