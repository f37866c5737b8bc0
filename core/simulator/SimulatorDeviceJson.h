// SPDX-License-Identifier: MIT
#pragma once

#include "simulator/SimulatorDevice.h"
#include "support/JsonDecoder.h"

#include <QJsonObject>

namespace corvanta {

/// Reads the object whose keys are the field names; only the device type may be absent. Throws JsonDecodingError.
///
/// This is a device's own stored form, not the simulator tool's record of it.
[[nodiscard]] SimulatorDevice decodeSimulatorDevice(const JsonDecoder& decoder);

[[nodiscard]] QJsonObject encodeJson(const SimulatorDevice& device);

} // namespace corvanta
