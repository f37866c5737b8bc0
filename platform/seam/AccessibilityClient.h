// SPDX-License-Identifier: MIT
#pragma once

#include "layout/Geometry.h"

#include <QCoroTask>
#include <QString>
#include <QStringView>

#include <cstddef>
#include <memory>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace corvanta {

/// What a platform keeps behind an AccessibilityElement. Two nodes that denote the same element are equal.
class AccessibilityNode {
public:
    AccessibilityNode() = default;
    AccessibilityNode(const AccessibilityNode&) = delete;
    AccessibilityNode& operator=(const AccessibilityNode&) = delete;
    virtual ~AccessibilityNode() = default;

    [[nodiscard]] virtual bool equals(const AccessibilityNode& other) const = 0;
    [[nodiscard]] virtual std::size_t hash() const = 0;
};

/// A handle on an element of another program's user interface: cheap to copy, compared by identity.
///
/// The element may be gone by the time it is used; reads then answer nothing.
class AccessibilityElement {
public:
    explicit AccessibilityElement(std::shared_ptr<const AccessibilityNode> node)
        : m_node(std::move(node)) {}

    [[nodiscard]] const AccessibilityNode& node() const { return *m_node; }

    /// Equal for equal elements, and stable for as long as the element exists.
    [[nodiscard]] std::size_t hash() const { return m_node->hash(); }

    bool operator==(const AccessibilityElement& other) const {
        return m_node == other.m_node || m_node->equals(*other.m_node);
    }

private:
    std::shared_ptr<const AccessibilityNode> m_node;
};

/// The value of an attribute. Positions have their origin at the top-left of the primary screen, y growing downwards.
using AccessibilityValue =
    std::variant<QString, bool, double, Point, Size, AccessibilityElement, std::vector<AccessibilityElement>>;

/// Reads and drives other programs' user interfaces through the host's accessibility interface.
///
/// Attribute and action names are the macOS ones on every host: "AXTitle", "AXDescription", "AXEnabled",
/// "AXChildren", "AXMenuBar", "AXWindows", "AXPosition", "AXSize", "AXCloseButton"; "AXPress", "AXCancel".
/// All calls are made on the main thread, answer at once and have a bound on how long a program that hangs can hold
/// them. None of them throws: what cannot be read is absent.
class AccessibilityClient {
public:
    AccessibilityClient() = default;
    AccessibilityClient(const AccessibilityClient&) = delete;
    AccessibilityClient& operator=(const AccessibilityClient&) = delete;
    virtual ~AccessibilityClient() = default;

    /// Whether this process may use the interface at all.
    [[nodiscard]] virtual bool isTrusted() = 0;

    /// Asks for the permission, with the host's own prompt where it has one, and says whether it is now granted.
    virtual bool requestTrust() = 0;

    /// Gets ready for the reads of that application that follow in the same turn of the event loop, where the host
    /// reads ahead at all. Waits without holding the thread, for a second at most.
    [[nodiscard]] virtual QCoro::Task<void> lookAhead([[maybe_unused]] QString bundleIdentifier) { co_return; }

    /// The element of the first running application with that bundle identifier.
    [[nodiscard]] virtual std::optional<AccessibilityElement> application(const QString& bundleIdentifier) = 0;

    /// The value of an attribute, of whatever type the element gives it.
    [[nodiscard]] virtual std::optional<AccessibilityValue> attribute(const AccessibilityElement& element,
                                                                      QStringView name) = 0;

    /// Sets an attribute; true when the element accepted it.
    virtual bool setAttribute(const AccessibilityElement& element, QStringView name,
                              const AccessibilityValue& value) = 0;

    /// Performs an action; true when the element reported success.
    virtual bool performAction(const AccessibilityElement& element, QStringView name) = 0;
};

} // namespace corvanta

template<>
struct std::hash<corvanta::AccessibilityElement> {
    std::size_t operator()(const corvanta::AccessibilityElement& element) const { return element.hash(); }
};
