// SPDX-License-Identifier: MIT
#include "safari/SafariMenuTargetParser.h"

#include "support/NameOrder.h"
#include "support/Text.h"

#include <algorithm>
#include <array>

namespace corvanta::SafariMenuTargetParser {

namespace {

/// Entries of a device's menu that are settings, or groups of things other than pages.
constexpr std::array<QStringView, 6> excludedPhrases{
    u"connect via network",  u"automatically show web inspector",
    u"automatically pause",  u"service workers",
    u"home screen web apps", u"extensions",
};

const AccessibilityMenuNode* firstNode(const AccessibilityMenuNode& node, const QString& deviceName) {
    if (containsName(node.title, deviceName))
        return &node;
    for (const AccessibilityMenuNode& child : node.children) {
        if (const auto* found = firstNode(child, deviceName))
            return found;
    }
    return nullptr;
}

bool isExcluded(const QString& title) {
    const QString key = title.toLower();
    return std::ranges::any_of(excludedPhrases, [&key](QStringView phrase) { return key.contains(phrase); });
}

void collectInspectableLeaves(const AccessibilityMenuNode& node, std::vector<int>& path,
                              std::vector<SafariTarget>& results) {
    const QString title = trimmedText(node.title);
    if (isExcluded(title))
        return;
    if (node.children.empty()) {
        if (!title.isEmpty() && node.isEnabled)
            results.push_back({node.id, title, path});
        return;
    }
    int index = 0;
    for (const AccessibilityMenuNode& child : node.children) {
        path.push_back(index++);
        collectInspectableLeaves(child, path, results);
        path.pop_back();
    }
}

} // namespace

std::vector<SafariTarget> targets(const AccessibilityMenuNode& root, const QString& deviceName) {
    std::vector<SafariTarget> results;
    if (const auto* device = firstNode(root, deviceName)) {
        std::vector<int> path;
        collectInspectableLeaves(*device, path, results);
    }
    return results;
}

} // namespace corvanta::SafariMenuTargetParser
