// SPDX-License-Identifier: MIT
#include "safari/AXSupport.h"

namespace corvanta::AXSupport {

using namespace Qt::Literals::StringLiterals;

namespace {

template<typename Value>
std::optional<Value> typedAttribute(AccessibilityClient& client, const AccessibilityElement& element,
                                    QStringView attribute) {
    auto value = client.attribute(element, attribute);
    if (!value)
        return std::nullopt;
    if (auto* const typed = std::get_if<Value>(&*value))
        return std::move(*typed);
    return std::nullopt;
}

std::vector<AccessibilityElement> elements(AccessibilityClient& client, const AccessibilityElement& element,
                                           QStringView attribute) {
    return typedAttribute<std::vector<AccessibilityElement>>(client, element, attribute)
        .value_or(std::vector<AccessibilityElement>{});
}

void collectLabels(AccessibilityClient& client, const QSet<QString>& wanted, const AccessibilityElement& element,
                   int depth, QSet<QString>& found) {
    if (depth < 0 || found.size() == wanted.size())
        return;
    if (const QString text = label(client, element); wanted.contains(text))
        found.insert(text);
    for (const AccessibilityElement& child : children(client, element))
        collectLabels(client, wanted, child, depth - 1, found);
}

} // namespace

std::optional<AccessibilityElement> application(AccessibilityClient& client, const QString& bundleIdentifier) {
    return client.application(bundleIdentifier);
}

std::optional<AccessibilityElement> element(AccessibilityClient& client, const AccessibilityElement& element,
                                            QStringView attribute) {
    return typedAttribute<AccessibilityElement>(client, element, attribute);
}

std::optional<QString> string(AccessibilityClient& client, const AccessibilityElement& element, QStringView attribute) {
    return typedAttribute<QString>(client, element, attribute);
}

QString label(AccessibilityClient& client, const AccessibilityElement& element) {
    if (auto title = string(client, element, u"AXTitle"); title && !title->isEmpty())
        return *std::move(title);
    return string(client, element, u"AXDescription").value_or(QString());
}

std::vector<AccessibilityElement> children(AccessibilityClient& client, const AccessibilityElement& element) {
    return elements(client, element, u"AXChildren");
}

std::vector<AccessibilityElement> windows(AccessibilityClient& client, const AccessibilityElement& application) {
    return elements(client, application, u"AXWindows");
}

double flipHeight(std::span<const Screen> screens) {
    return screens.empty() ? 0 : screens.front().frame.maxY();
}

std::optional<Rect> frame(AccessibilityClient& client, const AccessibilityElement& element, double flipHeight) {
    const auto position = typedAttribute<Point>(client, element, u"AXPosition");
    if (!position)
        return std::nullopt;
    const auto size = typedAttribute<Size>(client, element, u"AXSize");
    if (!size)
        return std::nullopt;
    return Rect{position->x, flipHeight - (position->y + size->height), size->width, size->height};
}

bool setFrame(AccessibilityClient& client, const Rect& frame, const AccessibilityElement& element, double flipHeight) {
    const bool moved = client.setAttribute(element, u"AXPosition", Point{frame.minX(), flipHeight - frame.maxY()});
    const bool resized = client.setAttribute(element, u"AXSize", Size{frame.width, frame.height});
    return moved && resized;
}

std::optional<AccessibilityElement> firstDescendant(AccessibilityClient& client, const AccessibilityElement& element,
                                                    int maxDepth,
                                                    const std::function<bool(const AccessibilityElement&)>& matching) {
    if (matching(element))
        return element;
    if (maxDepth < 1)
        return std::nullopt;
    for (const AccessibilityElement& child : children(client, element)) {
        if (auto found = firstDescendant(client, child, maxDepth - 1, matching))
            return found;
    }
    return std::nullopt;
}

QSet<QString> containsLabels(AccessibilityClient& client, const QSet<QString>& labels,
                             const AccessibilityElement& element, int maxDepth) {
    QSet<QString> found;
    collectLabels(client, labels, element, maxDepth, found);
    return found;
}

bool isWebInspectorWindow(AccessibilityClient& client, const AccessibilityElement& window) {
    if (label(client, window).toLower().contains(u"web inspector"_s))
        return true;
    constexpr int censusDepth = 7;
    constexpr int labelsNeeded = 2;
    const QSet<QString> tabs{u"Elements"_s, u"Console"_s, u"Network"_s};
    return containsLabels(client, tabs, window, censusDepth).size() >= labelsNeeded;
}

} // namespace corvanta::AXSupport
