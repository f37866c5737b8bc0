// SPDX-License-Identifier: MIT
#include "simulator/SimulatorDeviceParser.h"

#include "simulator/DeviceListScanner.h"
#include "support/JsonDecoder.h"
#include "support/NameOrder.h"

#include <algorithm>
#include <cstddef>
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

/// By what they are ordered, as numbers.
struct Place {
    bool isBooted;
    std::size_t nameRank;
    std::size_t position;
};

/// Moves each device to where its place is listed, along the circles that the moves make.
void arrange(std::vector<SimulatorDevice>& devices, std::vector<Place>& places) {
    for (std::size_t start = 0; start < devices.size(); ++start) {
        SimulatorDevice first = std::move(devices[start]);
        std::size_t at = start;
        for (std::size_t from = std::exchange(places[at].position, at); from != start;
             from = std::exchange(places[at].position, at)) {
            devices[at] = std::move(devices[from]);
            at = from;
        }
        devices[at] = std::move(first);
    }
}

std::vector<SimulatorDevice> inDisplayOrder(std::vector<SimulatorDevice> devices) {
    std::vector<QStringView> names;
    names.reserve(devices.size());
    for (const SimulatorDevice& device : devices)
        names.emplace_back(device.name);
    const std::vector<std::size_t> ranks = nameRanks(names);
    std::vector<Place> places;
    places.reserve(devices.size());
    for (std::size_t position = 0; position < devices.size(); ++position)
        places.push_back({devices[position].isBooted(), ranks[position], position});
    std::ranges::sort(places, [&devices](const Place& left, const Place& right) {
        if (left.isBooted != right.isBooted)
            return left.isBooted;
        if (left.nameRank != right.nameRank)
            return left.nameRank < right.nameRank;
        const int newness =
            QString::compare(devices[left.position].runtimeIdentifier, devices[right.position].runtimeIdentifier);
        return newness != 0 ? newness > 0 : left.position < right.position;
    });
    arrange(devices, places);
    return devices;
}

} // namespace

std::vector<SimulatorDevice> availableIOSDevices(const QByteArray& output) {
    if (auto devices = DeviceListScanner::availableIOSDevices(output))
        return inDisplayOrder(std::move(*devices));
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
