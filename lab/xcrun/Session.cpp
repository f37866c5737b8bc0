// SPDX-License-Identifier: MIT
#include "Session.h"

#include "DeviceCatalogue.h"

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

DeviceBus& Session::bus() {
    if (!m_bus) {
        m_bus = std::make_unique<DeviceBus>();
    }
    return *m_bus;
}

QStringList Session::running() {
    try {
        return bus().runningDevices();
    } catch (const DeviceBusError&) {
        return {};
    }
}

QString Session::state(const Device& device) {
    try {
        return bus().state(device.udid);
    } catch (const DeviceBusError&) {
        return u"Shutdown"_s;
    }
}

Device Session::device(const QString& word) {
    const std::vector<Device> devices = set.devices();
    const QStringList booted = running();
    if (word == u"booted") {
        for (const Device& device : devices) {
            if (booted.contains(device.udid)) {
                return device;
            }
        }
        throw CommandFailure{invalidState & 0xff, u"No devices are booted.\n"_s};
    }
    if (const auto device = set.deviceWithId(word)) {
        return *device;
    }
    std::optional<Device> named;
    for (const Device& device : devices) {
        // Of several with one name a running one is meant, else the one with the newest runtime.
        if (device.name == word && (!named || !booted.contains(named->udid))) {
            named = device;
        }
    }
    if (!named) {
        throw unknownDevice(word);
    }
    return *named;
}

Device Session::runningDevice(const QString& word) {
    Device result = device(word);
    if (!isRunning(result)) {
        throw wrongState(u"lookup"_s, u"Shutdown"_s);
    }
    return result;
}

bool Session::isAvailable(const Device& device) const {
    return system.findRuntime(device.runtime) != nullptr && findDeviceType(device.deviceType) != nullptr;
}

} // namespace corvanta::lab
