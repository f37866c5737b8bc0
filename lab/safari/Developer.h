// SPDX-License-Identifier: MIT
#pragma once

#include "DevelopMenu.h"
#include "DeviceWatcher.h"

#include <map>
#include <memory>
#include <string>

namespace corvanta::lab {

/// Keeps a Develop menu true to the booted devices and their pages, and opens the inspectors that are asked for.
/// Main thread only.
class Developer {
public:
    explicit Developer(GDBusConnection* bus);
    Developer(const Developer&) = delete;
    Developer& operator=(const Developer&) = delete;
    /// Every inspector leaves.
    ~Developer();

    [[nodiscard]] DevelopMenu& menu() { return m_menu; }

private:
    class Device;

    void setDevices(const std::vector<LabDevice>& devices);
    void inspect(const std::string& busName, const TargetIdentifier& target);

    DevelopMenu m_menu;
    std::map<std::string, std::unique_ptr<Device>> m_devices;
    DeviceWatcher m_watcher;
};

} // namespace corvanta::lab
