// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <sys/types.h>

namespace corvanta {

/// A program that runs on the test's virtual desktop.
struct DesktopProcess {
    pid_t identifier = 0;
    /// The file name of its program.
    QString program;
    /// The process that leads its session: for a device, the device's own.
    pid_t session = 0;
};

/// Every program of the desktop but the test itself, and whoever else is in one of those sessions.
[[nodiscard]] QList<DesktopProcess> desktopProcesses(const QSet<pid_t>& sessions = {});

/// The process's own memory and its part of what it shares, in bytes; 0 when it has gone.
[[nodiscard]] qint64 proportionalSize(pid_t process);

/// The memory that the process has written and shares with nobody, in bytes, whatever else runs; 0 when it has gone.
[[nodiscard]] qint64 ownSize(pid_t process);

/// How many sockets the process has open.
[[nodiscard]] qsizetype openSockets(pid_t process);

/// What programs could leave behind on the desktop, each as a line that is the same before and after.
struct DesktopTraces {
    QSet<QString> processes;
    /// In the desktop's own folders, which are the home, the runtime folder and the folder for temporary files.
    QSet<QString> files;
    /// Sockets of the desktop's programs on which they take connections.
    QSet<QString> listeners;
    /// Well-known names on both buses.
    QSet<QString> busNames;
    /// Segments of shared memory that were made by one of the processes in `creators`.
    QSet<QString> sharedMemory;
    /// How many programs are connected to the session bus and to the accessibility bus.
    qsizetype connections = 0;

    /// What is there now; `sessions` and `creators` are the processes that devices have had.
    [[nodiscard]] static DesktopTraces now(const QSet<pid_t>& sessions = {}, const QSet<pid_t>& creators = {});

    /// What of this was not there before; one line each, empty when nothing was left behind.
    [[nodiscard]] QStringList since(const DesktopTraces& before) const;
};

} // namespace corvanta
