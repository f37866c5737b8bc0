// SPDX-License-Identifier: MIT
#pragma once

#include "DevelopMenu.h"
#include "DeviceWatcher.h"
#include "SafariSettings.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace corvanta::lab {

/// Keeps a Develop menu true to the booted devices and what they have to inspect, and opens the inspectors that are
/// asked for. Main thread only.
///
/// A device is known from the session bus. One that is switched to "Connect via Network" is remembered with the address
/// of its inspector server, and stays listed without the bus for as long as that server answers.
class Developer {
public:
    /// `settings` outlives this object.
    Developer(GDBusConnection* bus, SafariSettings& settings);
    Developer(const Developer&) = delete;
    Developer& operator=(const Developer&) = delete;
    /// Every inspector leaves.
    ~Developer();

    [[nodiscard]] DevelopMenu& menu() { return m_menu; }

    /// Does what the settings say now; at the main loop's next turn.
    void applySettings();

private:
    class Device;

    struct Samples {
        bool context = false;
        bool extension = false;
        bool operator==(const Samples&) const = default;
    };

    void setDevices(const std::vector<LabDevice>& devices);
    void update();
    [[nodiscard]] std::vector<LabDevice> remembered() const;
    void remember(const LabDevice& device);
    void setSamples(const std::string& busName);
    void inspect(const std::string& busName, const TargetIdentifier& target);

    GlibPointer<GDBusConnection> m_bus;
    SafariSettings& m_settings;
    DevelopMenu m_menu;
    /// The booted ones on the bus.
    std::vector<LabDevice> m_booted;
    /// What these were told to have.
    std::map<std::string, Samples> m_samples;
    std::map<std::string, std::unique_ptr<Device>> m_devices;
    SourceGuard m_update;
    DeviceWatcher m_watcher;
};

} // namespace corvanta::lab
