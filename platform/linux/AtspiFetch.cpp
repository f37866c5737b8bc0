// SPDX-License-Identifier: MIT
#include "AtspiFetch.h"

#include "AtspiMessages.h"

#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QSet>

#include <utility>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

const QString accessibleInterface = u"org.a11y.atspi.Accessible"_s;
const QString rootPath = u"/org/a11y/atspi/accessible/root"_s;

/// Far above what menus and windows need; a program that claims more is not followed.
constexpr AtspiFetch::Limits everythingLimits{64, 5000};

} // namespace

struct AtspiFetch::ChildrenCall {
    QString path;
    int level;
    QDBusPendingCall children;
};

struct AtspiFetch::ObjectCalls {
    QString path;
    QString parent;
    int level;
    QDBusPendingCall properties;
    QDBusPendingCall role;
    QDBusPendingCall states;
    QDBusPendingCall children;

    [[nodiscard]] bool isFinished() const {
        return properties.isFinished() && role.isFinished() && states.isFinished() && children.isFinished();
    }
};

struct AtspiFetch::PlugCall {
    QString path;
    QDBusPendingCall plug;
};

AtspiFetch::AtspiFetch(const AtspiBus& bus, QString process, Limits limits)
    : m_bus(bus)
    , m_process(std::move(process))
    , m_limits(limits) {}

AtspiFetch::~AtspiFetch() = default;

std::unique_ptr<AtspiFetch> AtspiFetch::everything(const AtspiBus& bus, const QString& process) {
    std::unique_ptr<AtspiFetch> fetch(new AtspiFetch(bus, process, everythingLimits));
    fetch->m_itemsCall = bus.call({process, u"/org/a11y/atspi/cache"_s}, u"org.a11y.atspi.Cache"_s, u"GetItems"_s);
    return fetch;
}

std::unique_ptr<AtspiFetch> AtspiFetch::below(const AtspiBus& bus, const AtspiReference& top, Limits limits) {
    std::unique_ptr<AtspiFetch> fetch(new AtspiFetch(bus, top.bus, limits));
    fetch->askObject(top.path, {}, 0);
    return fetch;
}

bool AtspiFetch::advance() {
    if (m_itemsCall && m_itemsCall->isFinished())
        takeItems(m_itemsCall->reply());
    // Taking a reply may ask for more, so the lists are exchanged before they are walked.
    for (const ChildrenCall& call : std::exchange(m_childrenCalls, {})) {
        if (!takeChildren(call))
            m_childrenCalls.push_back(call);
    }
    for (const ObjectCalls& calls : std::exchange(m_objectCalls, {})) {
        if (!takeObject(calls))
            m_objectCalls.push_back(calls);
    }
    for (const PlugCall& call : std::exchange(m_plugCalls, {})) {
        if (!takePlug(call))
            m_plugCalls.push_back(call);
    }
    return !m_itemsCall && m_childrenCalls.empty() && m_objectCalls.empty() && m_plugCalls.empty();
}

void AtspiFetch::watch(std::function<void()> progress) {
    m_progress = std::move(progress);
    m_watchers = std::make_unique<QObject>();
    if (m_itemsCall)
        observe(*m_itemsCall);
    for (const ChildrenCall& call : m_childrenCalls)
        observe(call.children);
    for (const ObjectCalls& calls : m_objectCalls)
        observe(calls.children);
    for (const PlugCall& call : m_plugCalls)
        observe(call.plug);
}

AtspiTree AtspiFetch::takeTree() {
    return std::exchange(m_tree, {});
}

void AtspiFetch::observe(const QDBusPendingCall& call) {
    if (!m_watchers)
        return;
    auto* const watcher = new QDBusPendingCallWatcher(call, m_watchers.get());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, m_watchers.get(), [this, watcher] {
        watcher->deleteLater();
        // The callback may end this fetch.
        const std::function<void()> progress = m_progress;
        progress();
    });
}

void AtspiFetch::askObject(const QString& path, const QString& parent, int level) {
    if (m_asked >= m_limits.objects)
        return;
    ++m_asked;
    const AtspiReference object{m_process, path};
    m_objectCalls.push_back(
        {path, parent, level,
         m_bus.call(object, u"org.freedesktop.DBus.Properties"_s, u"GetAll"_s, {accessibleInterface}),
         m_bus.call(object, accessibleInterface, u"GetRole"_s), m_bus.call(object, accessibleInterface, u"GetState"_s),
         m_bus.call(object, accessibleInterface, u"GetChildren"_s)});
    observe(m_objectCalls.back().children);
}

void AtspiFetch::askChildren(const QString& path, int level) {
    if (m_asked >= m_limits.objects)
        return;
    ++m_asked;
    m_childrenCalls.push_back({path, level, m_bus.call({m_process, path}, accessibleInterface, u"GetChildren"_s)});
    observe(m_childrenCalls.back().children);
}

void AtspiFetch::takeItems(const QDBusMessage& reply) {
    m_itemsCall.reset();
    ++m_answers;
    std::optional<QList<AtspiItem>> items = parseItems(reply);
    if (!items) {
        askObject(rootPath, {}, 0);
        return;
    }
    m_tree.reserve(items->size());
    for (AtspiItem& item : *items)
        m_tree.insert(std::move(item));
    m_tree.link();
    const QList<QString> incomplete = m_tree.withUnknownChildren();
    for (const QString& path : incomplete)
        askChildren(path, 0);
}

bool AtspiFetch::takeChildren(const ChildrenCall& call) {
    if (!call.children.isFinished())
        return false;
    ++m_answers;
    takeList(call.path, call.children, call.level);
    return true;
}

bool AtspiFetch::takeObject(const ObjectCalls& calls) {
    if (!calls.isFinished())
        return false;
    ++m_answers;
    const QDBusPendingReply<QVariantMap> properties = calls.properties;
    const QDBusPendingReply<quint32> role = calls.role;
    if (!properties.isValid() || !role.isValid())
        return true;
    AtspiItem item;
    item.reference = {m_process, calls.path};
    if (!calls.parent.isEmpty())
        item.parent = {m_process, calls.parent};
    item.name = properties.value().value(u"Name"_s).toString();
    item.description = properties.value().value(u"Description"_s).toString();
    item.childCount = properties.value().value(u"ChildCount"_s, -1).toInt();
    item.role = static_cast<AtspiRole>(role.value());
    item.states = parseStates(calls.states.reply()).value_or(0);
    m_tree.insert(std::move(item));
    if (calls.level >= m_limits.levels)
        return true;
    takeList(calls.path, calls.children, calls.level);
    return true;
}

void AtspiFetch::takeList(const QString& parent, const QDBusPendingCall& reply, int level) {
    const QList<AtspiReference> children = parseReferences(reply.reply()).value_or(QList<AtspiReference>());
    const AtspiItem* const item = m_tree.item(parent);
    if (children.isEmpty() && item != nullptr && item->childCount == 1) {
        // A socket that shows another process's page counts it, but names it only when asked by its index.
        m_plugCalls.push_back(
            {parent, m_bus.call({m_process, parent}, accessibleInterface, u"GetChildAtIndex"_s, {qint32{0}})});
        observe(m_plugCalls.back().plug);
        return;
    }
    askMissing(parent, children, level);
}

bool AtspiFetch::takePlug(const PlugCall& call) {
    if (!call.plug.isFinished())
        return false;
    ++m_answers;
    QList<AtspiReference> children;
    if (const std::optional<AtspiReference> plug = parseReference(call.plug.reply()))
        children.append(*plug);
    m_tree.setChildren(call.path, children);
    return true;
}

void AtspiFetch::askMissing(const QString& parent, const QList<AtspiReference>& children, int level) {
    m_tree.setChildren(parent, children);
    for (const AtspiReference& child : children) {
        if (child.bus == m_process && m_tree.item(child.path) == nullptr)
            askObject(child.path, parent, level + 1);
    }
}

} // namespace corvanta
