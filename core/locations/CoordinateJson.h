// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"
#include "support/JsonDecoder.h"

#include <QJsonObject>

namespace corvanta {

/// Reads {"latitude": number, "longitude": number}. Throws JsonDecodingError.
[[nodiscard]] Coordinate decodeCoordinate(const JsonDecoder& decoder);

/// Throws JsonEncodingError when a number is not finite.
[[nodiscard]] QJsonObject encodeJson(const Coordinate& coordinate);

} // namespace corvanta
