// SPDX-License-Identifier: MIT
#include "simulator/SimctlCommandBuilder.h"

#include "locations/CoordinateFormatter.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

ProcessCommand SimctlCommandBuilder::listAvailableDevices() const {
    return {xcrunPath, {u"simctl"_s, u"list"_s, u"-j"_s, u"devices"_s, u"available"_s}};
}

ProcessCommand SimctlCommandBuilder::boot(const QString& deviceID) const {
    return {xcrunPath, {u"simctl"_s, u"boot"_s, deviceID}};
}

ProcessCommand SimctlCommandBuilder::bootStatus(const QString& deviceID) const {
    return {xcrunPath, {u"simctl"_s, u"bootstatus"_s, deviceID, u"-b"_s}};
}

ProcessCommand SimctlCommandBuilder::launchSimulator(const QString& deviceID) const {
    return {openPath, {u"-a"_s, u"Simulator"_s, u"--args"_s, u"-CurrentDeviceUDID"_s, deviceID}};
}

ProcessCommand SimctlCommandBuilder::openURL(const QString& deviceID, const URL& url) const {
    return {xcrunPath, {u"simctl"_s, u"openurl"_s, deviceID, url.absoluteString()}};
}

ProcessCommand SimctlCommandBuilder::setLocation(const QString& deviceID, const Coordinate& coordinate) const {
    return {xcrunPath,
            {u"simctl"_s, u"location"_s, deviceID, u"set"_s, CoordinateFormatter::coordinatePair(coordinate)}};
}

ProcessCommand SimctlCommandBuilder::clearLocation(const QString& deviceID) const {
    return {xcrunPath, {u"simctl"_s, u"location"_s, deviceID, u"clear"_s}};
}

} // namespace corvanta
