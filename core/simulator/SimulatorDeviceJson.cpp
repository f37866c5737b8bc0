// SPDX-License-Identifier: MIT
#include "simulator/SimulatorDeviceJson.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

SimulatorDevice decodeSimulatorDevice(const JsonDecoder& decoder) {
    SimulatorDevice device{
        .udid = decoder.member(u"udid"_s).string(),
        .name = decoder.member(u"name"_s).string(),
        .state = decoder.member(u"state"_s).string(),
        .runtimeIdentifier = decoder.member(u"runtimeIdentifier"_s).string(),
        .deviceTypeIdentifier = std::nullopt,
        .isAvailable = decoder.member(u"isAvailable"_s).boolean(),
    };
    if (const auto deviceType = decoder.optionalMember(u"deviceTypeIdentifier"_s))
        device.deviceTypeIdentifier = deviceType->string();
    return device;
}

QJsonObject encodeJson(const SimulatorDevice& device) {
    QJsonObject object{
        {u"udid"_s, device.udid},
        {u"name"_s, device.name},
        {u"state"_s, device.state},
        {u"runtimeIdentifier"_s, device.runtimeIdentifier},
        {u"isAvailable"_s, device.isAvailable},
    };
    if (device.deviceTypeIdentifier)
        object.insert(u"deviceTypeIdentifier"_s, *device.deviceTypeIdentifier);
    return object;
}

} // namespace corvanta
