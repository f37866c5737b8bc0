// SPDX-License-Identifier: MIT
// What "simctl list devices -j" and "simctl list runtimes -j" print.
#include "Input.h"
#include "simulator/IOSRuntimeParser.h"
#include "simulator/SimulatorDeviceParser.h"
#include "support/LocalizedError.h"

#include <algorithm>

using namespace corvanta;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    const QByteArray output = fuzz::inputBytes(data, size);
    try {
        const auto devices = SimulatorDeviceParser::availableIOSDevices(output);
        fuzz::require(std::ranges::all_of(devices, [](const auto& device) { return !device.displayName().isNull(); }),
                      "every device has a name to show");
    } catch (const LocalizedError& error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says what is wrong");
    }
    try {
        fuzz::require(IOSRuntimeParser::availableIOSRuntimeCount(output) >= 0, "runtimes are counted");
    } catch (const LocalizedError& error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says what is wrong");
    }
    return 0;
}
