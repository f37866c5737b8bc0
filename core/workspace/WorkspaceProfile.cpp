// SPDX-License-Identifier: MIT
#include "workspace/WorkspaceProfile.h"

#include "layout/ColumnRatiosJson.h"
#include "locations/CoordinateJson.h"
#include "support/JsonEncoding.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

WorkspaceProfile WorkspaceProfile::fresh(Date now) {
    return {
        .selectedDeviceUDID = std::nullopt,
        .pageURL = u"http://localhost:3000"_s,
        .coordinate = std::nullopt,
        .locationName = u"Dropped Pin"_s,
        .columnRatios = {.controls = 0.25, .simulator = 0.3, .inspector = 0.45},
        .lastUsedAt = now,
    };
}

WorkspaceProfile decodeWorkspaceProfile(const JsonDecoder& decoder) {
    WorkspaceProfile profile;
    if (const auto device = decoder.optionalMember(u"selectedDeviceUDID"_s))
        profile.selectedDeviceUDID = device->string();
    profile.pageURL = decoder.member(u"pageURL"_s).string();
    if (const auto coordinate = decoder.optionalMember(u"coordinate"_s))
        profile.coordinate = decodeCoordinate(*coordinate);
    profile.locationName = decoder.member(u"locationName"_s).string();
    profile.columnRatios = decodeColumnRatios(decoder.member(u"columnRatios"_s));
    profile.lastUsedAt = decoder.member(u"lastUsedAt"_s).date();
    return profile;
}

QJsonObject encodeJson(const WorkspaceProfile& profile) {
    QJsonObject object{
        {u"pageURL"_s, profile.pageURL},
        {u"locationName"_s, profile.locationName},
        {u"columnRatios"_s, encodeJson(profile.columnRatios)},
        {u"lastUsedAt"_s, encodeJson(profile.lastUsedAt)},
    };
    if (profile.selectedDeviceUDID)
        object.insert(u"selectedDeviceUDID"_s, *profile.selectedDeviceUDID);
    if (profile.coordinate)
        object.insert(u"coordinate"_s, encodeJson(*profile.coordinate));
    return object;
}

} // namespace corvanta
