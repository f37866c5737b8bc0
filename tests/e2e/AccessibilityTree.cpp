// SPDX-License-Identifier: MIT
#include "AccessibilityTree.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusReply>
#include <QDBusVariant>

#include <utility>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int callLimit = 3000;
constexpr unsigned focusedState = 12;
constexpr unsigned sensitiveState = 24;
constexpr unsigned showingState = 25;

const QString accessibleInterface = u"org.a11y.atspi.Accessible"_s;

/// A reference to an object of some program: its bus name and its path.
std::optional<Accessible> reference(const QVariantList& reply) {
    if (reply.isEmpty() || !reply.front().canConvert<QDBusArgument>())
        return std::nullopt;
    const auto argument = reply.front().value<QDBusArgument>();
    QString busName;
    QDBusObjectPath path;
    argument.beginStructure();
    argument >> busName >> path;
    argument.endStructure();
    if (path.path().endsWith(u"/null"))
        return std::nullopt;
    return Accessible(busName, path.path());
}

Accessible desktop() {
    return Accessible(u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/accessible/root"_s);
}

} // namespace

QDBusConnection accessibilityBus() {
    static const QString name = u"accessibility"_s;
    if (const QDBusConnection known(name); known.isConnected())
        return known;
    auto request =
        QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, u"org.a11y.Bus"_s, u"GetAddress"_s);
    const QDBusReply<QString> address = QDBusConnection::sessionBus().call(request);
    return QDBusConnection::connectToBus(address.value(), name);
}

Accessible::Accessible(QString busName, QString path)
    : m_busName(std::move(busName))
    , m_path(std::move(path)) {}

QVariantList Accessible::call(const QString& interface, const QString& method, const QVariantList& arguments) const {
    auto message = QDBusMessage::createMethodCall(m_busName, m_path, interface, method);
    message.setArguments(arguments);
    const QDBusMessage reply = accessibilityBus().call(message, QDBus::Block, callLimit);
    return reply.type() == QDBusMessage::ReplyMessage ? reply.arguments() : QVariantList();
}

QVariant Accessible::property(const QString& interface, const QString& name) const {
    const QVariantList reply = call(u"org.freedesktop.DBus.Properties"_s, u"Get"_s, {interface, name});
    return reply.isEmpty() ? QVariant() : reply.front().value<QDBusVariant>().variant();
}

bool Accessible::hasState(unsigned state) const {
    const QVariantList reply = call(accessibleInterface, u"GetState"_s);
    if (reply.isEmpty())
        return false;
    const auto words = qdbus_cast<QList<uint>>(reply.front());
    constexpr unsigned bitsPerWord = 32;
    const auto word = static_cast<qsizetype>(state / bitsPerWord);
    return word < words.size() && ((words[word] >> (state % bitsPerWord)) & 1U) != 0;
}

QString Accessible::name() const {
    return property(accessibleInterface, u"Name"_s).toString();
}

QString Accessible::description() const {
    return property(accessibleInterface, u"Description"_s).toString();
}

QString Accessible::role() const {
    const QVariantList reply = call(accessibleInterface, u"GetRoleName"_s);
    return reply.isEmpty() ? QString() : reply.front().toString();
}

int Accessible::processID() const {
    const QDBusMessage reply = accessibilityBus().call(
        [this] {
            auto message = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                          u"org.freedesktop.DBus"_s, u"GetConnectionUnixProcessID"_s);
            message.setArguments({m_busName});
            return message;
        }(),
        QDBus::Block, callLimit);
    return reply.arguments().isEmpty() ? 0 : reply.arguments().front().toInt();
}

bool Accessible::isSensitive() const {
    return hasState(sensitiveState);
}

bool Accessible::isShowing() const {
    return hasState(showingState);
}

bool Accessible::isFocused() const {
    return hasState(focusedState);
}

QString Accessible::text() const {
    const QVariantList interfaces = call(accessibleInterface, u"GetInterfaces"_s);
    if (interfaces.isEmpty() || !interfaces.front().toStringList().contains(u"org.a11y.atspi.Text"_s))
        return {};
    const QVariantList reply = call(u"org.a11y.atspi.Text"_s, u"GetText"_s, {0, -1});
    return reply.isEmpty() ? QString() : reply.front().toString();
}

std::vector<Accessible> Accessible::children() const {
    std::vector<Accessible> result;
    const int count = property(accessibleInterface, u"ChildCount"_s).toInt();
    for (int index = 0; index < count; ++index) {
        // One by one: a page's socket names its page only this way.
        if (const auto child = reference(call(accessibleInterface, u"GetChildAtIndex"_s, {index})))
            result.push_back(*child);
    }
    return result;
}

bool Accessible::press() const {
    const QVariantList reply = call(u"org.a11y.atspi.Action"_s, u"DoAction"_s, {0});
    return !reply.isEmpty() && reply.front().toBool();
}

bool Accessible::takeFocus() const {
    const QVariantList reply = call(u"org.a11y.atspi.Component"_s, u"GrabFocus"_s);
    return !reply.isEmpty() && reply.front().toBool();
}

bool Accessible::setText(const QString& text) const {
    const QVariantList reply = call(u"org.a11y.atspi.EditableText"_s, u"SetTextContents"_s, {text});
    return !reply.isEmpty() && reply.front().toBool();
}

std::optional<Accessible> Accessible::find(const std::function<bool(const Accessible&)>& matches, int depth) const {
    if (matches(*this))
        return *this;
    if (depth == 0)
        return std::nullopt;
    for (const Accessible& child : children()) {
        if (auto found = child.find(matches, depth - 1))
            return found;
    }
    return std::nullopt;
}

std::optional<Accessible> Accessible::find(const QString& role, const QString& name) const {
    return find([&](const Accessible& object) { return object.name() == name && object.role() == role; });
}

QStringList Accessible::allTexts(Objects objects, int depth) const {
    if (objects == Objects::showing && !isShowing())
        return {};
    QStringList texts;
    for (const QString& own : {name(), text()}) {
        if (!own.trimmed().isEmpty())
            texts.append(own.trimmed());
    }
    if (depth > 0) {
        for (const Accessible& child : children())
            texts.append(child.allTexts(objects, depth - 1));
    }
    return texts;
}

std::vector<Accessible> applications(const QString& name) {
    std::vector<Accessible> result;
    for (const Accessible& application : desktop().children()) {
        if (application.name() == name)
            result.push_back(application);
    }
    return result;
}

std::optional<Accessible> application(int processID) {
    for (const Accessible& application : desktop().children()) {
        if (application.processID() == processID)
            return application;
    }
    return std::nullopt;
}

std::vector<Accessible> frames(const QString& applicationName) {
    std::vector<Accessible> result;
    for (const Accessible& application : applications(applicationName)) {
        for (const Accessible& child : application.children()) {
            if (const QString role = child.role(); role == u"frame" || role == u"window" || role == u"dialog")
                result.push_back(child);
        }
    }
    return result;
}

} // namespace corvanta::testing
