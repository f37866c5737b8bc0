// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

namespace corvanta {

/// A run of a program of the lab that is ended at one of its changes to files.
struct EndedRun {
    /// The system calls by which the program changed files or the locks on them, as far as it came.
    int changes = 0;
    /// Whether it was ended before it ended by itself.
    bool isEnded = false;
    /// Its exit status when it ended by itself.
    int status = -1;
};

/// Where in a change the program is ended.
enum class EndPoint {
    beforeIt,
    afterIt,
};

/// Runs the program and ends it with SIGKILL at its change with that number, from 1; with 0 it runs to its end.
/// Everything that it prints is dropped. Throws std::runtime_error when it cannot be traced.
[[nodiscard]] EndedRun runAndEnd(const QString& program, const QStringList& arguments,
                                 const QList<QByteArray>& environment, int change, EndPoint point);

} // namespace corvanta
