// SPDX-License-Identifier: MIT
#pragma once

#include "AtspiBus.h"
#include "AtspiTree.h"

#include <QDBusPendingCall>

#include <functional>
#include <memory>
#include <vector>

class QDBusMessage;
class QObject;

namespace corvanta {

/// Fetches accessible objects of one process in few round trips: each trip asks everything at once.
///
/// The replies arrive whether or not somebody waits; `advance` takes what has arrived and asks what is missing.
class AtspiFetch {
public:
    /// Everything that the process has, from its cache; from its root downwards when it keeps no cache.
    [[nodiscard]] static std::unique_ptr<AtspiFetch> everything(const AtspiBus& bus, const QString& process);

    /// How far a fetch goes: levels below its top, and objects in all.
    struct Limits {
        int levels;
        qsizetype objects;
    };

    /// One object and what is below it.
    [[nodiscard]] static std::unique_ptr<AtspiFetch> below(const AtspiBus& bus, const AtspiReference& top,
                                                           Limits limits);

    ~AtspiFetch();
    AtspiFetch(const AtspiFetch&) = delete;
    AtspiFetch& operator=(const AtspiFetch&) = delete;

    /// True once nothing is missing any more. True as well when the process is gone; the tree is empty then.
    bool advance();

    /// Calls `advance` and then `progress` from the event loop whenever something has arrived.
    void watch(std::function<void()> progress);

    /// How many answers have been taken so far.
    [[nodiscard]] unsigned answers() const { return m_answers; }

    [[nodiscard]] AtspiTree takeTree();

private:
    struct ChildrenCall;
    struct ObjectCalls;
    struct PlugCall;

    AtspiFetch(const AtspiBus& bus, QString process, Limits limits);

    void askObject(const QString& path, const QString& parent, int level);
    void askChildren(const QString& path, int level);
    void takeItems(const QDBusMessage& reply);
    bool takeChildren(const ChildrenCall& call);
    bool takeObject(const ObjectCalls& calls);
    bool takePlug(const PlugCall& call);
    void takeList(const QString& parent, const QDBusPendingCall& reply, int level);
    void askMissing(const QString& parent, const QList<AtspiReference>& children, int level);
    void observe(const QDBusPendingCall& call);

    const AtspiBus& m_bus;
    QString m_process;
    Limits m_limits;
    AtspiTree m_tree;
    std::optional<QDBusPendingCall> m_itemsCall;
    std::vector<ChildrenCall> m_childrenCalls;
    std::vector<ObjectCalls> m_objectCalls;
    std::vector<PlugCall> m_plugCalls;
    qsizetype m_asked = 0;
    unsigned m_answers = 0;
    std::function<void()> m_progress;
    std::unique_ptr<QObject> m_watchers;
};

} // namespace corvanta
