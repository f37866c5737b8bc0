// SPDX-License-Identifier: MIT
#include "AtspiBus.h"

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>

#include <limits>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

constexpr int noTimeLimit = std::numeric_limits<int>::max();
constexpr std::chrono::milliseconds enabledLifetime = 200ms;

const QString propertiesInterface = u"org.freedesktop.DBus.Properties"_s;
const QString statusInterface = u"org.a11y.Status"_s;

QDBusMessage sessionCall(const QString& interface, const QString& method) {
    return QDBusMessage::createMethodCall(u"org.a11y.Bus"_s, u"/org/a11y/bus"_s, interface, method);
}

} // namespace

AtspiBus::AtspiBus(HangAllowance& allowance)
    : m_allowance(allowance) {}

AtspiBus::~AtspiBus() {
    disconnectFromBus();
}

bool AtspiBus::isConnected() {
    if (m_connection && !m_connection->isConnected())
        disconnectFromBus();
    if (!m_connection) {
        requestAddress();
        if (m_addressCall && m_allowance.wait(*m_addressCall))
            takeAddress(m_addressCall->pending);
    }
    return m_connection.has_value();
}

std::optional<QDBusPendingCall> AtspiBus::askWhetherEnabled() {
    if (m_enabledCall && m_enabledCall->isStale())
        takeWhetherEnabled();
    if (!m_enabledCall) {
        QDBusMessage message = sessionCall(propertiesInterface, u"Get"_s);
        message << statusInterface << u"IsEnabled"_s;
        m_enabledCall.emplace(QDBusConnection::sessionBus().asyncCall(message, noTimeLimit));
    }
    return m_enabledCall->pending.isFinished() ? std::nullopt : std::optional(m_enabledCall->pending);
}

bool AtspiBus::isEnabled() {
    if (!m_enabledAge.hasExpired(enabledLifetime.count()))
        return m_isEnabled;
    (void)askWhetherEnabled();
    if (!m_allowance.wait(*m_enabledCall))
        return m_isEnabled && !m_enabledCall->isOverdue();
    takeWhetherEnabled();
    m_enabledAge.start();
    return m_isEnabled;
}

void AtspiBus::takeWhetherEnabled() {
    const QDBusPendingReply<QDBusVariant> reply = m_enabledCall->pending;
    m_isEnabled = reply.isValid() && reply.value().variant().toBool();
    m_enabledCall.reset();
}

void AtspiBus::enable() {
    QDBusMessage message = sessionCall(propertiesInterface, u"Set"_s);
    message << statusInterface << u"IsEnabled"_s << QVariant::fromValue(QDBusVariant(true));
    const QDBusPendingCall pending = QDBusConnection::sessionBus().asyncCall(message, noTimeLimit);
    m_allowance.wait([&] { return pending.isFinished(); });
    // What was asked before tells of before.
    m_enabledCall.reset();
    m_enabledAge.invalidate();
}

QDBusPendingCall AtspiBus::call(const AtspiReference& object, const QString& interface, const QString& method,
                                const QVariantList& arguments) const {
    QDBusMessage message = QDBusMessage::createMethodCall(object.bus, object.path, interface, method);
    message.setArguments(arguments);
    if (!m_connection)
        return QDBusPendingCall::fromError(QDBusError(QDBusError::Disconnected, u"no accessibility bus"_s));
    return m_connection->asyncCall(message, noTimeLimit);
}

void AtspiBus::noteOwnerChange(const QString& name, const QString& oldOwner, const QString& newOwner) {
    Q_UNUSED(oldOwner);
    if (newOwner.isEmpty())
        Q_EMIT processLeft(name);
}

void AtspiBus::requestAddress() {
    if (m_addressCall)
        return;
    const QDBusMessage message = sessionCall(u"org.a11y.Bus"_s, u"GetAddress"_s);
    m_addressCall.emplace(QDBusConnection::sessionBus().asyncCall(message, noTimeLimit));
}

void AtspiBus::takeAddress(const QDBusPendingReply<QString>& reply) {
    m_addressCall.reset();
    if (!reply.isValid())
        return;
    ++m_generation;
    const QString name = u"corvanta-accessibility-%1"_s.arg(m_generation);
    QDBusConnection connection = QDBusConnection::connectToBus(reply.value(), name);
    if (!connection.isConnected()) {
        QDBusConnection::disconnectFromBus(name);
        return;
    }
    m_connection = connection;
    m_connection->connect(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s,
                          u"NameOwnerChanged"_s, this, SLOT(noteOwnerChange(QString, QString, QString)));
    // Programs keep the cache that is read in one go only while somebody listens to an event. This one is rare.
    const QDBusPendingCall registration =
        call({u"org.a11y.atspi.Registry"_s, u"/org/a11y/atspi/registry"_s}, u"org.a11y.atspi.Registry"_s,
             u"RegisterEvent"_s, {u"window:create"_s, QStringList(), QString()});
    Q_UNUSED(registration);
}

void AtspiBus::disconnectFromBus() {
    if (!m_connection)
        return;
    const QString name = m_connection->name();
    m_connection.reset();
    QDBusConnection::disconnectFromBus(name);
}

} // namespace corvanta
