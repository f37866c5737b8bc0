// SPDX-License-Identifier: MIT
#pragma once

#include "layout/ColumnRatios.h"
#include "locations/Coordinate.h"
#include "support/Date.h"
#include "support/JsonDecoder.h"

#include <QJsonObject>
#include <QString>

#include <optional>

namespace corvanta {

/// What the workspace remembers between runs.
struct WorkspaceProfile {
    std::optional<QString> selectedDeviceUDID;
    QString pageURL;
    std::optional<Coordinate> coordinate;
    QString locationName;
    ColumnRatios columnRatios;
    /// When the profile was last written.
    Date lastUsedAt;

    /// The profile of someone who has never used the workspace.
    [[nodiscard]] static WorkspaceProfile fresh(Date now);

    bool operator==(const WorkspaceProfile&) const = default;
};

/// Reads the object whose keys are the field names; the two optional ones may be absent. Throws JsonDecodingError.
[[nodiscard]] WorkspaceProfile decodeWorkspaceProfile(const JsonDecoder& decoder);

/// Leaves the keys of absent fields out. Throws JsonEncodingError when a number is not finite.
[[nodiscard]] QJsonObject encodeJson(const WorkspaceProfile& profile);

} // namespace corvanta
