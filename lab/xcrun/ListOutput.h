// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceSet.h"
#include "ListOptions.h"
#include "SystemDescription.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>

#include <optional>
#include <vector>

namespace corvanta::lab {

/// A device with what the list says about it.
struct ListedDevice {
    Device device;
    QString state;
    QString folder;
    std::optional<QDateTime> lastBooted;
};

/// The whole output of `simctl list`, as text or as JSON by the options. Devices whose runtime is not installed on the
/// system are listed as unavailable, and the runtime is not listed.
[[nodiscard]] QByteArray listOutput(const ListOptions& options, const std::vector<ListedDevice>& devices,
                                    const SystemDescription& system);

/// A document as the Mac's tool spells it: two spaces a level, blanks on both sides of the colon, slashes escaped
/// unless told otherwise.
[[nodiscard]] QByteArray spellJson(const QJsonValue& value, bool escapesSlashes = true);

} // namespace corvanta::lab
