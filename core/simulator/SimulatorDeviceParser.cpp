// SPDX-License-Identifier: MIT
#include "simulator/SimulatorDeviceParser.h"

#include "support/JsonDecoder.h"
#include "support/NameOrder.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
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

/// Stable by the position in the document. (The library's own stable sort allocates by a function that C++17
/// deprecated, which is a warning here; seen in libstdc++ 12.)
std::vector<SimulatorDevice> inDisplayOrder(std::vector<SimulatorDevice> devices) {
    std::vector<std::size_t> positions(devices.size());
    std::iota(positions.begin(), positions.end(), std::size_t{0});
    std::ranges::sort(positions, [&](std::size_t left, std::size_t right) {
        if (comesBefore(devices[left], devices[right]))
            return true;
        return !comesBefore(devices[right], devices[left]) && left < right;
    });
    std::vector<SimulatorDevice> ordered;
    ordered.reserve(devices.size());
    for (const std::size_t position : positions)
        ordered.push_back(std::move(devices[position]));
    return ordered;
}

} // namespace

std::vector<SimulatorDevice> availableIOSDevices(const QByteArray& output) {
    std::vector<SimulatorDevice> devices;
    for (const auto& [runtime, records] : JsonDecoder::parse(output).member(u"devices"_s).members()) {
        const bool isIOS = runtime.contains("CoreSimulator.SimRuntime.iOS"_L1);
        for (const JsonDecoder& record : records.elements()) {
            SimulatorDevice device = decodeRecord(record, runtime);
            if (isIOS && device.isAvailable)
                devices.push_back(std::move(device));
        }
    }
    return inDisplayOrder(std::move(devices));
}

} // namespace corvanta::SimulatorDeviceParser
