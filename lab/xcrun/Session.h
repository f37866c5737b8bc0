// SPDX-License-Identifier: MIT
#pragma once

#include "CommandFailure.h"
#include "DeviceBus.h"
#include "DeviceSet.h"
#include "SystemDescription.h"

#include <QString>
#include <QStringList>

#include <memory>

namespace corvanta::lab {

/// How long a running device may take to answer a request.
inline constexpr std::chrono::milliseconds requestLimit = std::chrono::seconds(15);

/// The devices and the bus that one command works on.
class Session {
public:
    DeviceSet set = DeviceSet::open();
    const SystemDescription system = SystemDescription::load();

    /// The bus; connected when it is first needed. Throws DeviceBusError.
    [[nodiscard]] DeviceBus& bus();

    /// The running devices; none where there is no session bus.
    [[nodiscard]] QStringList running();

    [[nodiscard]] bool isRunning(const Device& device) { return running().contains(device.udid); }

    /// The device's state word; "Shutdown" where there is no session bus.
    [[nodiscard]] QString state(const Device& device);

    /// The device meant by an identifier, a name or "booted". Throws CommandFailure.
    [[nodiscard]] Device device(const QString& word);

    /// The running device meant by the word. Throws CommandFailure.
    [[nodiscard]] Device runningDevice(const QString& word);

    /// Whether the device's model and runtime are there.
    [[nodiscard]] bool isAvailable(const Device& device) const;

private:
    std::unique_ptr<DeviceBus> m_bus;
};

} // namespace corvanta::lab
