// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"
#include "Desktop.h"

/// The permission to read and drive other programs.
namespace corvanta::AccessibilityPermission {

/// Asks for the permission unless it is held; opens the settings where it is given when asking was not enough.
void requestIfNeeded(AccessibilityClient& client, Desktop& desktop);

/// Opens the Accessibility pane of the privacy settings.
void openSystemSettings(Desktop& desktop);

} // namespace corvanta::AccessibilityPermission
