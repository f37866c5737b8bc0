// SPDX-License-Identifier: MIT
#include "simulator/SimulatorDeviceParser.h"

#include "support/JsonDecoder.h"
#include "support/NameOrder.h"

#include <algorithm>
#include <utility>

namespace corvanta::SimulatorDeviceParser {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Reads every field, so that a malformed record is an error even where it would be left out.
SimulatorDevice decodeRecord(const JsonDecoder& record, const QString& runtimeIdentifier) {
    SimulatorDevice device{
        .udid = record.member(u"udid"_s).string(),
        .name = record.member(u"name"_s).string(),
        .state = record.member(u"state"_s).string(),
        .runtimeIdentifier = runtimeIdentifier,
        .deviceTypeIdentifier = std::nullopt,
        .isAvailable = true,
    };
    if (const auto deviceType = record.optionalMember(u"deviceTypeIdentifier"_s))
        device.deviceTypeIdentifier = deviceType->string();
    if (const auto availability = record.optionalMember(u"isAvailable"_s))
        device.isAvailable = availability->boolean();
    return device;
}

bool comesBefore(const SimulatorDevice& left, const SimulatorDevice& right) {
    if (left.isBooted() != right.isBooted())
        return left.isBooted();
    if (const int order = compareNames(left.name, right.name); order != 0)
        return order < 0;
    return left.runtimeIdentifier > right.runtimeIdentifier;
}

} // namespace

std::vector<SimulatorDevice> availableIOSDevices(const QByteArray& output) {
    std::vector<SimulatorDevice> devices;
    for (const auto& [runtime, records] : JsonDecoder::parse(output).member(u"devices"_s).members()) {
        const bool isIOS = runtime.contains("CoreSimulator.SimRuntime.iOS"_L1);
        for (const JsonDecoder& record : records.elements()) {
            SimulatorDevice device = decodeRecord(record, runtime);
            // Behind its equals, which keeps the order of the document among them.
            if (isIOS && device.isAvailable)
                devices.insert(std::ranges::upper_bound(devices, device, comesBefore), std::move(device));
        }
    }
    return devices;
}

} // namespace corvanta::SimulatorDeviceParser
