// SPDX-License-Identifier: MIT
#include "AtspiMessages.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QStringList>

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
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> reference.bus >> path;
    argument.endStructure();
    reference.path = path.path();
    return reference;
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
    QStringList interfaces;
    quint32 role = 0;
    argument.beginStructure();
    item.reference = readReference(argument);
    readReference(argument);
    item.parent = readReference(argument);
    argument >> item.indexInParent >> item.childCount >> interfaces >> item.name >> role >> item.description;
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
    while (!argument->atEnd())
        items.append(readItem(*argument));
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
