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

/// Starts a program in a session of its own with nothing inherited but the environment and, if given, one open file;
/// its output goes to the log file.
///
/// Returns the process id. Throws DeviceSetError when it cannot be started.
pid_t startDetached(const QString& program, const QStringList& arguments, const QString& logFile,
                    int inheritedFile = -1);

/// The turn on a device that its launcher hands over to the device's process, which holds it until it has its name on
/// the bus: so a launcher that is ended in between leaves no process that would show up out of turn.
class HandedTurn {
public:
    /// Takes what was inherited, if it is the device's lock. Programs started from here do not get it.
    HandedTurn(const DeviceSet& set, const Device& device);
    HandedTurn(const HandedTurn&) = delete;
    HandedTurn& operator=(const HandedTurn&) = delete;

    ~HandedTurn() { end(); }

    /// Lets the program that takes this process's place have it.
    void keepForNextProgram() const;

    /// Lets the next one have a turn.
    void end();

private:
    int m_descriptor = -1;
};

/// Boots the device and returns once the boot is accepted. Boots of one device by several programs take turns.
/// Throws std::runtime_error, mostly a DeviceSetError or a DeviceBusError.
[[nodiscard]] BootResult bootDevice(DeviceBus& bus, DeviceSet& set, const Device& device);

/// Asks the device's process to leave and waits until it has. False when it did not in time. Throws DeviceBusError.
[[nodiscard]] bool shutDownDevice(DeviceBus& bus, const QString& udid);

} // namespace corvanta::lab
