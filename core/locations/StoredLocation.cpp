// SPDX-License-Identifier: MIT
#include "locations/StoredLocation.h"

#include "locations/CoordinateJson.h"
#include "support/JsonEncoding.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

StoredLocation decodeStoredLocation(const JsonDecoder& decoder) {
    return {
        .id = decoder.member(u"id"_s).uuid(),
        .name = decoder.member(u"name"_s).string(),
        .coordinate = decodeCoordinate(decoder.member(u"coordinate"_s)),
        .createdAt = decoder.member(u"createdAt"_s).date(),
    };
}

QJsonObject encodeJson(const StoredLocation& location) {
    return {
        {u"id"_s, encodeJson(location.id)},
        {u"name"_s, location.name},
        {u"coordinate"_s, encodeJson(location.coordinate)},
        {u"createdAt"_s, encodeJson(location.createdAt)},
    };
}

} // namespace corvanta
