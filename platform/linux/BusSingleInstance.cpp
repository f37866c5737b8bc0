// SPDX-License-Identifier: MIT
#include "BusSingleInstance.h"

#include <QDBusError>
#include <QDBusMessage>

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

const QString busName = u"dev.corvanta.Corvanta"_s;
const QString objectPath = u"/dev/corvanta/Corvanta"_s;
/// The first one may have come only just before, and be busy with its own beginning.
constexpr int answerLimit = 10'000;
/// The first one may leave between the look at its name and the call.
constexpr int attempts = 3;

} // namespace

BusSingleInstance::BusSingleInstance(QDBusConnection bus)
    : m_bus(std::move(bus)) {}

BusSingleInstance::~BusSingleInstance() {
    giveNameUp();
}

SingleInstance::Standing BusSingleInstance::claim(const QStringList& arguments) {
    if (!m_bus.isConnected())
        return Standing::alone;
    // First the object and then the name: whoever finds the name finds the object.
    m_bus.registerObject(objectPath, this, QDBusConnection::ExportScriptableSlots);
    for (int attempt = 0; attempt < attempts; ++attempt) {
        m_hasName = m_bus.registerService(busName);
        if (m_hasName)
            return Standing::alone;
        QDBusMessage call = QDBusMessage::createMethodCall(busName, objectPath, busName, u"Open"_s);
        call.setAutoStartService(false);
        call.setArguments({arguments});
        const QDBusMessage reply = m_bus.call(call, QDBus::Block, answerLimit);
        if (reply.type() == QDBusMessage::ReplyMessage) {
            m_bus.unregisterObject(objectPath);
            return Standing::handedOver;
        }
        // Whoever is only slow has the request and would carry it out once more.
        const QDBusError::ErrorType error = QDBusError(reply).type();
        if (error == QDBusError::NoReply || error == QDBusError::Timeout || error == QDBusError::TimedOut)
            break;
    }
    m_bus.unregisterObject(objectPath);
    return Standing::unanswered;
}

void BusSingleInstance::release() {
    giveNameUp();
}

void BusSingleInstance::giveNameUp() {
    if (!std::exchange(m_hasName, false))
        return;
    m_bus.unregisterService(busName);
    m_bus.unregisterObject(objectPath);
}

void BusSingleInstance::Open(const QStringList& arguments) {
    tellOpened(arguments);
}

std::unique_ptr<SingleInstance> makeSingleInstance() {
    return std::make_unique<BusSingleInstance>();
}

} // namespace corvanta
