// SPDX-License-Identifier: MIT
#include "layout/ColumnRatiosJson.h"

#include "support/JsonEncoding.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

ColumnRatios decodeColumnRatios(const JsonDecoder& decoder) {
    return {
        decoder.member(u"controls"_s).number(),
        decoder.member(u"simulator"_s).number(),
        decoder.member(u"inspector"_s).number(),
    };
}

QJsonObject encodeJson(const ColumnRatios& ratios) {
    return {
        {u"controls"_s, encodeJson(ratios.controls)},
        {u"simulator"_s, encodeJson(ratios.simulator)},
        {u"inspector"_s, encodeJson(ratios.inspector)},
    };
}

} // namespace corvanta
