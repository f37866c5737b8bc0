// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace corvanta {

/// One simulator device as the simulator tool lists it.
struct SimulatorDevice {
    QString udid;
    /// The name shown to the user.
    QString name;
    /// The tool's state word; "Booted" marks a running device.
    QString state;
    /// The runtime under which the device was listed.
    QString runtimeIdentifier;
    std::optional<QString> deviceTypeIdentifier;
    bool isAvailable = true;

    [[nodiscard]] const QString& id() const { return udid; }

    /// Whether the state is exactly "Booted".
    [[nodiscard]] bool isBooted() const;

    /// "iOS 18.2" for the runtime identifier that ends in "iOS-18-2".
    [[nodiscard]] QString runtimeDisplayName() const;

    /// "iPhone 16 Pro — iOS 18.2", with " • Booted" behind it for a running device.
    [[nodiscard]] QString displayName() const;

    bool operator==(const SimulatorDevice&) const = default;
};

} // namespace corvanta
