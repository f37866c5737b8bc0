// SPDX-License-Identifier: MIT
#include "TrayHost.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QVariantMap>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int callLimit = 5'000;

QDBusMessage callItem(const QString& service, const QString& path, const QString& interface, const QString& method,
                      const QVariantList& arguments) {
    QDBusMessage call = QDBusMessage::createMethodCall(service, path, interface, method);
    call.setArguments(arguments);
    return QDBusConnection::sessionBus().call(call, QDBus::Block, callLimit);
}

} // namespace

TrayHost::TrayHost() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.registerObject(u"/StatusNotifierWatcher"_s, this, QDBusConnection::ExportAllContents);
    moveToThread(&m_thread);
    m_thread.start();
    bus.registerService(u"org.kde.StatusNotifierWatcher"_s);
}

TrayHost::~TrayHost() {
    QThread* const here = QThread::currentThread();
    QMetaObject::invokeMethod(this, [this, here] { moveToThread(here); }, Qt::BlockingQueuedConnection);
    QDBusConnection bus = QDBusConnection::sessionBus();
    bus.unregisterService(u"org.kde.StatusNotifierWatcher"_s);
    bus.unregisterObject(u"/StatusNotifierWatcher"_s);
    m_thread.quit();
    m_thread.wait();
}

QStringList TrayHost::items() const {
    const QMutexLocker lock(&m_mutex);
    return m_item.isEmpty() ? QStringList() : QStringList(m_item);
}

void TrayHost::RegisterStatusNotifierItem(const QString& service) {
    const QMutexLocker lock(&m_mutex);
    m_item = service;
}

std::vector<TrayHost::Item> TrayHost::readMenu() const {
    if (m_item.isEmpty())
        return {};
    const QDBusMessage reply =
        callItem(m_item, u"/MenuBar"_s, u"com.canonical.dbusmenu"_s, u"GetLayout"_s, {0, -1, QStringList()});
    if (reply.arguments().size() != 2)
        return {};
    std::vector<Item> items;
    const auto layout = reply.arguments().at(1).value<QDBusArgument>();
    layout.beginStructure();
    int rootID = 0;
    QVariantMap properties;
    layout >> rootID >> properties;
    layout.beginArray();
    while (!layout.atEnd()) {
        QDBusVariant child;
        layout >> child;
        const auto structure = child.variant().value<QDBusArgument>();
        Item item;
        structure.beginStructure();
        structure >> item.id >> properties;
        structure.endStructure();
        item.text = properties.value(u"label"_s).toString().remove(u'_');
        item.isEnabled = properties.value(u"enabled"_s, true).toBool();
        item.isSeparator = properties.value(u"type"_s).toString() == u"separator";
        items.push_back(item);
    }
    layout.endArray();
    layout.endStructure();
    return items;
}

QStringList TrayHost::menu() const {
    QStringList texts;
    for (const Item& item : readMenu())
        texts.append(item.isSeparator ? u"---"_s : item.text + (item.isEnabled ? u""_s : u" off"_s));
    return texts;
}

bool TrayHost::choose(const QString& text) const {
    for (const Item& item : readMenu()) {
        if (item.text != text)
            continue;
        return item.isEnabled && callItem(items().constFirst(), u"/MenuBar"_s, u"com.canonical.dbusmenu"_s, u"Event"_s,
                                          {item.id, u"clicked"_s, QVariant::fromValue(QDBusVariant(QString())), 0U})
                                         .type() == QDBusMessage::ReplyMessage;
    }
    return false;
}

} // namespace corvanta::testing
