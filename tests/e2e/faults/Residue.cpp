// SPDX-License-Identifier: MIT
#include "Residue.h"

#include "AccessibilityTree.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>

#include <cstdlib>
#include <memory>

#include <xcb/xcb.h>

namespace corvanta::testing {

using namespace Qt::Literals::StringLiterals;

namespace {

template<typename Reply>
using Owned = std::unique_ptr<Reply, decltype([](Reply* reply) { std::free(reply); })>;

QByteArray contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// In KiB: what is shared with others counts in part.
std::int64_t memory(int processID) {
    for (const QByteArray& line : contents(u"/proc/%1/smaps_rollup"_s.arg(processID)).split('\n')) {
        if (line.startsWith("Pss:"))
            return line.sliced(4).trimmed().chopped(3).toLongLong();
    }
    return 0;
}

std::int64_t entries(const QString& folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size();
}

/// The processes that carry this desktop's mark in their environments, zombies left out.
std::int64_t processes() {
    const QByteArray mark = "CORVANTA_VIRTUAL_DESKTOP=" + qgetenv("CORVANTA_VIRTUAL_DESKTOP");
    std::int64_t count = 0;
    const QStringList all = QDir(u"/proc"_s).entryList(QDir::Dirs);
    for (const QString& process : all)
        count +=
            process.at(0).isDigit() && contents(u"/proc/%1/environ"_s.arg(process)).split('\0').contains(mark) ? 1 : 0;
    return count;
}

std::int64_t windowsBelow(xcb_connection_t* connection, xcb_window_t window) {
    const Owned<xcb_query_tree_reply_t> reply(
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
    if (!reply)
        return 0;
    const xcb_window_t* const children = xcb_query_tree_children(reply.get());
    const int count = xcb_query_tree_children_length(reply.get());
    std::int64_t result = count;
    for (int index = 0; index < count; ++index)
        result += windowsBelow(connection, children[index]);
    return result;
}

std::int64_t windows() {
    xcb_connection_t* const connection = xcb_connect(nullptr, nullptr);
    const std::int64_t count = windowsBelow(connection, xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root);
    xcb_disconnect(connection);
    return count;
}

std::int64_t names(const QDBusConnection& bus) {
    const QDBusMessage question = QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                                                 u"org.freedesktop.DBus"_s, u"ListNames"_s);
    return bus.call(question).arguments().value(0).toStringList().size();
}

} // namespace

Residue Residue::now(int processID) {
    // What an allocator keeps for later, and a place in the program's caches for each page that it has seen.
    constexpr std::int64_t memoryTolerance = 2048;
    const QString process = u"/proc/%1/"_s.arg(processID);
    return {{{u"Memory of Corvanta (PSS, KiB)"_s, memory(processID), memoryTolerance},
             {u"Descriptors of Corvanta"_s, entries(process + u"fd"_s)},
             {u"Threads of Corvanta"_s, entries(process + u"task"_s)},
             {u"Processes on the desktop"_s, processes()},
             {u"X windows on the desktop"_s, windows()},
             {u"Names on the session bus"_s, names(QDBusConnection::sessionBus())},
             {u"Names on the accessibility bus"_s, names(accessibilityBus())}}};
}

} // namespace corvanta::testing
