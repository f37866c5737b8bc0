// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"
#include "support/Date.h"
#include "support/JsonDecoder.h"

#include <QJsonObject>
#include <QString>
#include <QUuid>

namespace corvanta {

/// A named point that the user saved or used.
struct StoredLocation {
    QUuid id;
    QString name;
    Coordinate coordinate;
    Date createdAt;

    bool operator==(const StoredLocation&) const = default;
};

/// Reads the object whose keys are the field names, all required. Throws JsonDecodingError.
[[nodiscard]] StoredLocation decodeStoredLocation(const JsonDecoder& decoder);

/// Throws JsonEncodingError when a number is not finite.
[[nodiscard]] QJsonObject encodeJson(const StoredLocation& location);

} // namespace corvanta
