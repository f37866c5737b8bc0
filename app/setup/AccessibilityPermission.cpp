// SPDX-License-Identifier: MIT
#include "setup/AccessibilityPermission.h"

namespace corvanta::AccessibilityPermission {

void requestIfNeeded(AccessibilityClient& client, Desktop& desktop) {
    if (client.isTrusted())
        return;
    if (!client.requestTrust())
        openSystemSettings(desktop);
}

void openSystemSettings(Desktop& desktop) {
    if (const auto url = URL::parse(u"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"))
        desktop.openURL(*url);
}

} // namespace corvanta::AccessibilityPermission
