// SPDX-License-Identifier: MIT
#include "AccessibleObject.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto objectInterface = "org.a11y.atspi.Accessible"_L1;
constexpr int answerLimit = 1000;

QDBusConnection accessibilityBus() {
    static const QDBusConnection bus = [] {
        const QDBusMessage reply = QDBusConnection::sessionBus().call(
            QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s));
        return QDBusConnection::connectToBus(reply.arguments().value(0).toString(), u"accessibility"_s);
    }();
    return bus;
}

/// The arguments of the answer; none from an object that is gone.
QVariantList ask(const AccessibleObject& object, const QString& interface, const QString& method,
                 const QVariantList& arguments = {}) {
    QDBusMessage call = QDBusMessage::createMethodCall(object.owner, object.path, interface, method);
    call.setArguments(arguments);
    const QDBusMessage reply = accessibilityBus().call(call, QDBus::Block, answerLimit);
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments() : QVariantList();
}

AccessibleObject takeObject(const QDBusArgument& argument) {
    AccessibleObject object;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> object.owner >> path;
    argument.endStructure();
    object.path = path.path();
    return object;
}

} // namespace

QString AccessibleObject::name() const {
    return ask(*this, u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {QString(objectInterface), u"Name"_s})
        .value(0)
        .value<QDBusVariant>()
        .variant()
        .toString();
}

unsigned AccessibleObject::role() const {
    return ask(*this, objectInterface, u"GetRole"_s).value(0).toUInt();
}

bool AccessibleObject::hasState(unsigned state) const {
    const QVariantList answer = ask(*this, objectInterface, u"GetState"_s);
    if (answer.isEmpty()) {
        return false;
    }
    const auto states = qdbus_cast<QList<uint>>(answer.first());
    return (states.value(0) >> state & 1U) != 0;
}

QList<AccessibleObject> AccessibleObject::children() const {
    QList<AccessibleObject> result;
    const QVariantList answer = ask(*this, objectInterface, u"GetChildren"_s);
    if (answer.isEmpty()) {
        return result;
    }
    const auto list = answer.first().value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        result.append(takeObject(list));
    }
    list.endArray();
    if (result.isEmpty()) {
        // What another process has put into this one's window, as pages are, is told one by one only.
        const QVariantList single = ask(*this, objectInterface, u"GetChildAtIndex"_s, {0});
        if (!single.isEmpty()) {
            const AccessibleObject child = takeObject(single.first().value<QDBusArgument>());
            if (!child.path.endsWith(u"/null")) {
                result.append(child);
            }
        }
    }
    return result;
}

bool AccessibleObject::press() const {
    return ask(*this, u"org.a11y.atspi.Action"_s, u"DoAction"_s, {0}).value(0).toBool();
}

void AccessibleObject::pressAndGoOn() const {
    QDBusMessage call = QDBusMessage::createMethodCall(owner, path, u"org.a11y.atspi.Action"_s, u"DoAction"_s);
    call.setArguments({0});
    accessibilityBus().send(call);
}

std::optional<AccessibleObject> AccessibleObject::find(const std::function<bool(const AccessibleObject&)>& isWanted,
                                                       int depth) const {
    if (depth == 0) {
        return std::nullopt;
    }
    // What lies on top first: a page below that waits for an answer does not answer itself.
    const QList<AccessibleObject> all = children();
    for (auto child = all.crbegin(); child != all.crend(); ++child) {
        if (isWanted(*child)) {
            return *child;
        }
        if (auto found = child->find(isWanted, depth - 1)) {
            return found;
        }
    }
    return std::nullopt;
}

QList<AccessibleObject> AccessibleObject::windows(const QString& program) {
    QList<AccessibleObject> result;
    const AccessibleObject desktop{u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s};
    for (const AccessibleObject& application : desktop.children()) {
        if (application.name() == program) {
            result += application.children();
        }
    }
    return result;
}

QList<QString> accessibilityBusNames() {
    return accessibilityBus().interface()->registeredServiceNames();
}

} // namespace corvanta
