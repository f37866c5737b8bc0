// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/SimulatorDevice.h"

#include <QByteArray>

#include <optional>
#include <vector>

namespace corvanta::DeviceListScanner {

/// The usable iOS devices of the simulator tool's JSON device list, in the order of the document, read by simdjson:
/// many times faster than by the general reader, which tells what is wrong and where.
///
/// Nothing when the document is in any way unusual, be it wrong or only written in a way in which the tool does not
/// write; the general reader judges it then. What this answers is what the general reader would find.
[[nodiscard]] std::optional<std::vector<SimulatorDevice>> availableIOSDevices(const QByteArray& output);

} // namespace corvanta::DeviceListScanner
