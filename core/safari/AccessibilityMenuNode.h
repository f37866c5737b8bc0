// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

namespace corvanta {

/// An item of a menu with everything below it, as read at one moment.
struct AccessibilityMenuNode {
    /// The child indexes from the snapshot's root joined by ".", then "|", then the title: "0.2|Apple".
    QString id;
    /// As read, untrimmed; the description where the title is empty.
    QString title;
    bool isEnabled = true;
    std::vector<AccessibilityMenuNode> children;

    bool operator==(const AccessibilityMenuNode&) const = default;
};

/// The identity of the node with this path from the snapshot's root (whose own path is empty) and this title.
[[nodiscard]] QString accessibilityMenuNodeID(const std::vector<int>& path, const QString& title);

} // namespace corvanta
