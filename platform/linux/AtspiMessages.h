// SPDX-License-Identifier: MIT
#pragma once

#include "AtspiItem.h"
#include "PixelGeometry.h"

#include <QDBusMessage>
#include <QList>

#include <optional>

namespace corvanta {

/// The objects of a reply to `org.a11y.atspi.Cache.GetItems`; nothing when it is an error or of another shape.
[[nodiscard]] std::optional<QList<AtspiItem>> parseItems(const QDBusMessage& reply);

/// The references of a reply to `org.a11y.atspi.Accessible.GetChildren`, null ones left out.
[[nodiscard]] std::optional<QList<AtspiReference>> parseReferences(const QDBusMessage& reply);

/// The reference of a reply to `org.a11y.atspi.Accessible.GetChildAtIndex`; nothing for a null one.
[[nodiscard]] std::optional<AtspiReference> parseReference(const QDBusMessage& reply);

/// The bit set of a reply to `org.a11y.atspi.Accessible.GetState`.
[[nodiscard]] std::optional<std::uint64_t> parseStates(const QDBusMessage& reply);

/// The rectangle of a reply to `org.a11y.atspi.Component.GetExtents`.
[[nodiscard]] std::optional<PixelRect> parseExtents(const QDBusMessage& reply);

} // namespace corvanta
