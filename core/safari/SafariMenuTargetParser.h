// SPDX-License-Identifier: MIT
#pragma once

#include "safari/AccessibilityMenuNode.h"
#include "safari/SafariTarget.h"

#include <vector>

namespace corvanta::SafariMenuTargetParser {

/// The inspectable pages below the device's node, in menu order; none when the device is not found.
///
/// The device's node is the first one in pre-order, the root included, whose title contains `deviceName` without
/// regard to case. Menu paths start at that node. Settings, disabled items and groups of other things are left out.
[[nodiscard]] std::vector<SafariTarget> targets(const AccessibilityMenuNode& root, const QString& deviceName);

} // namespace corvanta::SafariMenuTargetParser
