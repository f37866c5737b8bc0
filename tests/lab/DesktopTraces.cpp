// SPDX-License-Identifier: MIT
#include "DesktopTraces.h"

#include "AccessibleObject.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString procFolder(pid_t process) {
    return u"/proc/%1"_s.arg(process);
}

/// The inodes of the sockets in the system's table on which connections are taken.
QSet<QByteArray> listeningInodes() {
    constexpr int stateColumn = 3;
    constexpr int inodeColumn = 9;
    QSet<QByteArray> inodes;
    for (const QString& table : {u"/proc/net/tcp"_s, u"/proc/net/tcp6"_s}) {
        for (const QByteArray& line : contentsOf(table).split('\n')) {
            const QList<QByteArray> columns = line.simplified().split(' ');
            if (columns.value(stateColumn) == "0A") {
                inodes.insert(columns.value(inodeColumn));
            }
        }
    }
    return inodes;
}

QStringList openTargets(pid_t process) {
    QStringList targets;
    const QDir folder(procFolder(process) + u"/fd"_s);
    for (const QString& descriptor : folder.entryList(QDir::Files | QDir::System | QDir::NoDotAndDotDot)) {
        targets.append(QFile::symLinkTarget(folder.filePath(descriptor)));
    }
    return targets;
}

/// What the system counts under that name, in bytes.
qint64 sizeOf(pid_t process, const char* name) {
    for (const QByteArray& line : contentsOf(procFolder(process) + u"/smaps_rollup"_s).split('\n')) {
        if (line.startsWith(name)) {
            return line.simplified().split(' ').value(1).toLongLong() * 1024;
        }
    }
    return 0;
}

/// Well-known names go to `names`; answers how many connections there are.
qsizetype takeNames(const QStringList& all, const QString& bus, QSet<QString>& names) {
    qsizetype connections = 0;
    for (const QString& name : all) {
        if (name.startsWith(u':')) {
            ++connections;
        } else {
            names.insert(bus + name);
        }
    }
    return connections;
}

void addDifference(QStringList& lines, const QString& what, const QSet<QString>& now, const QSet<QString>& before) {
    QStringList fresh = QSet<QString>(now).subtract(before).values();
    fresh.sort();
    for (const QString& entry : fresh) {
        lines.append(what + u": "_s + entry);
    }
}

} // namespace

QList<DesktopProcess> desktopProcesses(const QSet<pid_t>& sessions) {
    constexpr int sessionColumn = 3;
    const QByteArray marker = "CORVANTA_VIRTUAL_DESKTOP=" + qgetenv("CORVANTA_VIRTUAL_DESKTOP");
    QList<DesktopProcess> result;
    for (const QString& entry : QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs)) {
        const pid_t process = entry.toInt();
        // Behind the name, which may hold anything: state, parent, group, session.
        const QByteArray status = contentsOf(procFolder(process) + u"/stat"_s);
        const pid_t session = status.mid(status.lastIndexOf(')') + 2).split(' ').value(sessionColumn).toInt();
        const bool isMember = contentsOf(procFolder(process) + u"/environ"_s).split('\0').contains(marker);
        if (process == QCoreApplication::applicationPid() || (!isMember && !sessions.contains(session))) {
            continue;
        }
        const QString file = QFileInfo(QFile::symLinkTarget(procFolder(process) + u"/exe"_s)).fileName();
        result.append({process, file, session});
    }
    return result;
}

qint64 proportionalSize(pid_t process) {
    return sizeOf(process, "Pss:");
}

qint64 ownSize(pid_t process) {
    return sizeOf(process, "Private_Dirty:");
}

qsizetype openSockets(pid_t process) {
    return openTargets(process).filter(u"socket:["_s).size();
}

DesktopTraces DesktopTraces::now(const QSet<pid_t>& sessions, const QSet<pid_t>& creators) {
    constexpr int keyColumn = 0;
    constexpr int segmentColumn = 1;
    constexpr int creatorColumn = 4;
    DesktopTraces traces;
    const QSet<QByteArray> listening = listeningInodes();
    for (const DesktopProcess& process : desktopProcesses(sessions)) {
        traces.processes.insert(u"%1 %2"_s.arg(process.identifier).arg(process.program));
        for (const QString& target : openTargets(process.identifier)) {
            const QString inode = target.section(u'[', 1).section(u']', 0, 0);
            if (target.contains(u"socket:[") && listening.contains(inode.toLatin1())) {
                traces.listeners.insert(u"%1 of %2"_s.arg(inode, process.program));
            }
        }
    }
    QDirIterator files(QFile::decodeName(qgetenv("CORVANTA_VIRTUAL_DESKTOP")),
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        traces.files.insert(files.next());
    }
    for (const QByteArray& line : contentsOf(u"/proc/sysvipc/shm"_s).split('\n')) {
        const QList<QByteArray> columns = line.simplified().split(' ');
        if (creators.contains(columns.value(creatorColumn).toInt())) {
            traces.sharedMemory.insert(
                QString::fromLatin1(columns.value(keyColumn) + ' ' + columns.value(segmentColumn)));
        }
    }
    traces.connections =
        takeNames(QDBusConnection::sessionBus().interface()->registeredServiceNames(), u"session "_s, traces.busNames) +
        takeNames(accessibilityBusNames(), u"accessibility "_s, traces.busNames);
    return traces;
}

QStringList DesktopTraces::since(const DesktopTraces& before) const {
    QStringList lines;
    addDifference(lines, u"process"_s, processes, before.processes);
    addDifference(lines, u"file"_s, files, before.files);
    addDifference(lines, u"listening socket"_s, listeners, before.listeners);
    addDifference(lines, u"bus name"_s, busNames, before.busNames);
    addDifference(lines, u"shared memory"_s, sharedMemory, before.sharedMemory);
    if (connections > before.connections) {
        lines.append(u"%1 connections to the buses instead of %2"_s.arg(connections).arg(before.connections));
    }
    return lines;
}

} // namespace corvanta
