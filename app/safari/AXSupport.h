// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"
#include "ControlWindow.h"

#include <QSet>
#include <QString>

#include <functional>
#include <optional>
#include <span>
#include <vector>

/// Reads on other programs' user interfaces, written once on the accessibility client of either host.
///
/// All are synchronous and none fails: absence is an empty value.
namespace corvanta::AXSupport {

/// The application element of the first running application with that bundle identifier.
[[nodiscard]] std::optional<AccessibilityElement> application(AccessibilityClient& client,
                                                              const QString& bundleIdentifier);

/// The attribute, if it is an element.
[[nodiscard]] std::optional<AccessibilityElement> element(AccessibilityClient& client,
                                                          const AccessibilityElement& element, QStringView attribute);

/// The attribute, if it is a text.
[[nodiscard]] std::optional<QString> string(AccessibilityClient& client, const AccessibilityElement& element,
                                            QStringView attribute);

/// The title, or the description when the title is empty or unreadable.
[[nodiscard]] QString label(AccessibilityClient& client, const AccessibilityElement& element);

/// "AXChildren", empty when absent or of another type.
[[nodiscard]] std::vector<AccessibilityElement> children(AccessibilityClient& client,
                                                         const AccessibilityElement& element);

/// "AXWindows" of an application element, empty when absent or of another type.
[[nodiscard]] std::vector<AccessibilityElement> windows(AccessibilityClient& client,
                                                        const AccessibilityElement& application);

/// The height by which accessibility and desktop coordinates are flipped: the top of the first screen, 0 without one.
[[nodiscard]] double flipHeight(std::span<const Screen> screens);

/// The element's frame in desktop coordinates, when both its position and its size can be read.
[[nodiscard]] std::optional<Rect> frame(AccessibilityClient& client, const AccessibilityElement& element,
                                        double flipHeight);

/// Sets the position, then the size, from a rectangle in desktop coordinates; true when both were accepted.
bool setFrame(AccessibilityClient& client, const Rect& frame, const AccessibilityElement& element, double flipHeight);

/// The first element in pre-order that matches: the element itself and `maxDepth` levels below it are examined.
[[nodiscard]] std::optional<AccessibilityElement>
firstDescendant(AccessibilityClient& client, const AccessibilityElement& element, int maxDepth,
                const std::function<bool(const AccessibilityElement&)>& matching);

/// Those of `labels` that are the exact label of the element or of one up to `maxDepth` levels below it.
[[nodiscard]] QSet<QString> containsLabels(AccessibilityClient& client, const QSet<QString>& labels,
                                           const AccessibilityElement& element, int maxDepth);

/// Whether the window is a Web Inspector: by its label, or by two of the labels "Elements", "Console", "Network".
[[nodiscard]] bool isWebInspectorWindow(AccessibilityClient& client, const AccessibilityElement& window);

} // namespace corvanta::AXSupport
