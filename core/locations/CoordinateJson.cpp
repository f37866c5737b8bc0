// SPDX-License-Identifier: MIT
#include "locations/CoordinateJson.h"

#include "support/JsonEncoding.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

Coordinate decodeCoordinate(const JsonDecoder& decoder) {
    return {decoder.member(u"latitude"_s).number(), decoder.member(u"longitude"_s).number()};
}

QJsonObject encodeJson(const Coordinate& coordinate) {
    return {{u"latitude"_s, encodeJson(coordinate.latitude)}, {u"longitude"_s, encodeJson(coordinate.longitude)}};
}

} // namespace corvanta
