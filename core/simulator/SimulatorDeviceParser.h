// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/SimulatorDevice.h"

#include <QByteArray>

#include <vector>

namespace corvanta::SimulatorDeviceParser {

/// The usable iOS devices of the simulator tool's JSON device list.
///
/// Booted devices come first, then by name as people sort names, then the greater runtime identifier. Throws
/// JsonDecodingError when the document has another shape.
[[nodiscard]] std::vector<SimulatorDevice> availableIOSDevices(const QByteArray& output);

} // namespace corvanta::SimulatorDeviceParser
