// SPDX-License-Identifier: MIT
// What "simctl list devices -j" and "simctl list runtimes -j" print.
#include "Input.h"
#include "simulator/IOSRuntimeParser.h"
#include "simulator/SimulatorDeviceParser.h"
#include "support/LocalizedError.h"

#include <algorithm>
#include <optional>
#include <vector>

using namespace corvanta;

namespace {

using Devices = std::optional<std::vector<SimulatorDevice>>;

Devices devicesIn(const QByteArray& output) {
    try {
        return SimulatorDeviceParser::availableIOSDevices(output);
    } catch (const LocalizedError& error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says what is wrong");
        return std::nullopt;
    }
}

/// The same document with a first key that says nothing, written in a way that keeps the quick reader off.
QByteArray unusual(const QByteArray& output) {
    const QByteArray members = output.trimmed().sliced(1);
    return (members.trimmed().startsWith('}') ? "{\"\\u0061\":0" : "{\"\\u0061\":0,") + members;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    const QByteArray output = fuzz::inputBytes(data, size);
    if (const Devices devices = devicesIn(output)) {
        fuzz::require(std::ranges::all_of(*devices, [](const auto& device) { return !device.displayName().isNull(); }),
                      "every device has a name to show");
        if (output.trimmed().startsWith('{'))
            fuzz::require(devices == devicesIn(unusual(output)), "both readers find the same");
    }
    try {
        fuzz::require(IOSRuntimeParser::availableIOSRuntimeCount(output) >= 0, "runtimes are counted");
    } catch (const LocalizedError& error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says what is wrong");
    }
    return 0;
}
