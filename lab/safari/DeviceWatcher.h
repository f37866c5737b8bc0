// SPDX-License-Identifier: MIT
#pragma once

#include "GlibPointers.h"
#include "LabDevice.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace corvanta::lab {

/// Knows the device processes on the session bus, by the bus's own signals.
///
/// A process that does not answer, or answers with an error, is not listed and holds nobody up; it is asked again until
/// it has answered or gone. Main thread only.
class DeviceWatcher {
public:
    using DevicesHandler = std::function<void(const std::vector<LabDevice>&)>;

    /// `onDevices` is called from the main loop with all devices that have told their properties, in the menu's order,
    /// whenever something about them has changed.
    DeviceWatcher(GDBusConnection* bus, DevicesHandler onDevices);
    DeviceWatcher(const DeviceWatcher&) = delete;
    DeviceWatcher& operator=(const DeviceWatcher&) = delete;
    ~DeviceWatcher();

private:
    struct Request;
    struct Entry;

    void listNames();
    void appeared(const std::string& busName);
    void vanished(const std::string& busName);
    void readProperties(const std::string& busName);
    void askAgain(const std::string& busName);
    void publish();

    GlibPointer<GDBusConnection> m_bus;
    DevicesHandler m_onDevices;
    GlibPointer<GCancellable> m_cancellable;
    guint m_ownerSubscription = 0;
    guint m_propertiesSubscription = 0;
    std::map<std::string, std::unique_ptr<Entry>> m_entries;
};

} // namespace corvanta::lab
