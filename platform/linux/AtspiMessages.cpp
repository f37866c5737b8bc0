// SPDX-License-Identifier: MIT
#include "AtspiMessages.h"

#include <QDBusArgument>

#include <utility>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

/// The only argument of a reply, when the reply has the expected signature.
std::optional<QDBusArgument> onlyArgument(const QDBusMessage& reply, QStringView signature) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != signature || reply.arguments().isEmpty())
        return std::nullopt;
    const QVariant value = reply.arguments().constFirst();
    if (value.metaType() != QMetaType::fromType<QDBusArgument>())
        return std::nullopt;
    return value.value<QDBusArgument>();
}

AtspiReference readReference(const QDBusArgument& argument) {
    AtspiReference reference;
    argument.beginStructure();
    // The bus has checked the path, so that it is read as the text that it is.
    argument >> reference.bus >> reference.path;
    argument.endStructure();
    return reference;
}

void skipReference(const QDBusArgument& argument) {
    argument.beginStructure();
    argument.endStructure();
}

void skipArray(const QDBusArgument& argument) {
    argument.beginArray();
    argument.endArray();
}

std::uint64_t readStates(const QDBusArgument& argument) {
    std::uint64_t states = 0;
    unsigned shift = 0;
    argument.beginArray();
    while (!argument.atEnd()) {
        quint32 word = 0;
        argument >> word;
        if (shift < 64)
            states |= std::uint64_t{word} << shift;
        shift += 32;
    }
    argument.endArray();
    return states;
}

AtspiItem readItem(const QDBusArgument& argument) {
    AtspiItem item;
    quint32 role = 0;
    argument.beginStructure();
    item.reference = readReference(argument);
    skipReference(argument);
    item.parent = readReference(argument);
    argument >> item.indexInParent >> item.childCount;
    skipArray(argument);
    argument >> item.name >> role >> item.description;
    item.states = readStates(argument);
    argument.endStructure();
    item.role = static_cast<AtspiRole>(role);
    return item;
}

} // namespace

std::optional<QList<AtspiItem>> parseItems(const QDBusMessage& reply) {
    const std::optional<QDBusArgument> argument = onlyArgument(reply, u"a((so)(so)(so)iiassusau)");
    if (!argument)
        return std::nullopt;
    QList<AtspiItem> items;
    argument->beginArray();
    while (!argument->atEnd()) {
        AtspiItem item = readItem(*argument);
        // Most have the same process and neighbours the same parent, whose names are kept once.
        if (!items.isEmpty()) {
            const AtspiItem& last = items.constLast();
            if (item.reference.bus == last.reference.bus)
                item.reference.bus = last.reference.bus;
            if (item.parent == last.parent)
                item.parent = last.parent;
        }
        items.append(std::move(item));
    }
    argument->endArray();
    return items;
}

std::optional<QList<AtspiReference>> parseReferences(const QDBusMessage& reply) {
    const std::optional<QDBusArgument> argument = onlyArgument(reply, u"a(so)");
    if (!argument)
        return std::nullopt;
    QList<AtspiReference> references;
    argument->beginArray();
    while (!argument->atEnd()) {
        AtspiReference reference = readReference(*argument);
        if (!reference.isNull())
            references.append(std::move(reference));
    }
    argument->endArray();
    return references;
}

std::optional<AtspiReference> parseReference(const QDBusMessage& reply) {
    const std::optional<QDBusArgument> argument = onlyArgument(reply, u"(so)");
    if (!argument)
        return std::nullopt;
    AtspiReference reference = readReference(*argument);
    return reference.isNull() ? std::nullopt : std::optional(std::move(reference));
}

std::optional<std::uint64_t> parseStates(const QDBusMessage& reply) {
    const std::optional<QDBusArgument> argument = onlyArgument(reply, u"au");
    if (!argument)
        return std::nullopt;
    return readStates(*argument);
}

std::optional<PixelRect> parseExtents(const QDBusMessage& reply) {
    const std::optional<QDBusArgument> argument = onlyArgument(reply, u"(iiii)");
    if (!argument)
        return std::nullopt;
    PixelRect rect;
    argument->beginStructure();
    *argument >> rect.x >> rect.y >> rect.width >> rect.height;
    argument->endStructure();
    return rect;
}

} // namespace corvanta
