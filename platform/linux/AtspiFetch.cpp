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

/// Pages can be of any size; what a menu or a window's frame needs is far below this.
constexpr qsizetype objectLimit = 5000;
constexpr int deepest = 64;

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

AtspiFetch::AtspiFetch(const AtspiBus& bus, QString process, int levels)
    : m_bus(bus)
    , m_process(std::move(process))
    , m_levels(levels) {}

AtspiFetch::~AtspiFetch() = default;

std::unique_ptr<AtspiFetch> AtspiFetch::everything(const AtspiBus& bus, const QString& process) {
    std::unique_ptr<AtspiFetch> fetch(new AtspiFetch(bus, process, deepest));
    fetch->m_itemsCall =
        bus.call({process, u"/org/a11y/atspi/cache"_s}, u"org.a11y.atspi.Cache"_s, u"GetItems"_s);
    return fetch;
}

std::unique_ptr<AtspiFetch> AtspiFetch::below(const AtspiBus& bus, const AtspiReference& top, int levels) {
    std::unique_ptr<AtspiFetch> fetch(new AtspiFetch(bus, top.bus, levels));
    fetch->askObject(top.path, {}, 0);
    return fetch;
}

bool AtspiFetch::advance() {
    if (m_itemsCall && m_itemsCall->isFinished())
        takeItems();
    // Taking a reply may ask for more, so the lists are exchanged before they are walked.
    for (const ChildrenCall& call : std::exchange(m_childrenCalls, {})) {
        if (!takeChildren(call))
            m_childrenCalls.push_back(call);
    }
    for (const ObjectCalls& calls : std::exchange(m_objectCalls, {})) {
        if (!takeObject(calls))
            m_objectCalls.push_back(calls);
    }
    return !m_itemsCall && m_childrenCalls.empty() && m_objectCalls.empty();
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
}

bool AtspiFetch::takeProgress() {
    return std::exchange(m_hasProgress, false);
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
    if (m_asked >= objectLimit)
        return;
    ++m_asked;
    const AtspiReference object{m_process, path};
    m_objectCalls.push_back({path, parent, level,
                             m_bus.call(object, u"org.freedesktop.DBus.Properties"_s, u"GetAll"_s,
                                        {accessibleInterface}),
                             m_bus.call(object, accessibleInterface, u"GetRole"_s),
                             m_bus.call(object, accessibleInterface, u"GetState"_s),
                             m_bus.call(object, accessibleInterface, u"GetChildren"_s)});
    observe(m_objectCalls.back().children);
}

void AtspiFetch::askChildren(const QString& path, int level) {
    m_childrenCalls.push_back({path, level, m_bus.call({m_process, path}, accessibleInterface, u"GetChildren"_s)});
    observe(m_childrenCalls.back().children);
}

void AtspiFetch::takeItems() {
    const QDBusMessage reply = m_itemsCall->reply();
    m_itemsCall.reset();
    m_hasProgress = true;
    const std::optional<QList<AtspiItem>> items = parseItems(reply);
    if (!items) {
        askObject(rootPath, {}, 0);
        return;
    }
    for (const AtspiItem& item : *items)
        m_tree.insert(item);
    m_tree.link();
    const QList<QString> incomplete = m_tree.withUnknownChildren();
    for (const QString& path : incomplete)
        askChildren(path, 0);
}

bool AtspiFetch::takeChildren(const ChildrenCall& call) {
    if (!call.children.isFinished())
        return false;
    m_hasProgress = true;
    const QList<AtspiReference> children =
        parseReferences(call.children.reply()).value_or(QList<AtspiReference>());
    askMissing(call.path, children, call.level);
    return true;
}

bool AtspiFetch::takeObject(const ObjectCalls& calls) {
    if (!calls.isFinished())
        return false;
    m_hasProgress = true;
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
    item.role = static_cast<AtspiRole>(role.value());
    item.states = parseStates(calls.states.reply()).value_or(0);
    m_tree.insert(item);
    if (calls.level >= m_levels)
        return true;
    askMissing(calls.path, parseReferences(calls.children.reply()).value_or(QList<AtspiReference>()), calls.level);
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
