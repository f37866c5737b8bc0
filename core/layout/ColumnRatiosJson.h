// SPDX-License-Identifier: MIT
#pragma once

#include "layout/ColumnRatios.h"
#include "support/JsonDecoder.h"

#include <QJsonObject>

namespace corvanta {

/// Reads {"controls": number, "simulator": number, "inspector": number}. Throws JsonDecodingError.
[[nodiscard]] ColumnRatios decodeColumnRatios(const JsonDecoder& decoder);

/// Throws JsonEncodingError when a number is not finite.
[[nodiscard]] QJsonObject encodeJson(const ColumnRatios& ratios);

} // namespace corvanta
