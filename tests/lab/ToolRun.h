// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QString>
#include <QStringList>

namespace corvanta {

/// What a finished tool left behind.
struct ToolRun {
    int status = -1;
    QByteArray output;
    QByteArray error;
};

/// Runs one of the lab's programs to its end; the status stays -1 when it does not start or takes longer than a minute.
inline ToolRun runTool(const QString& program, const QStringList& arguments,
                       const QProcessEnvironment& environment = QProcessEnvironment::systemEnvironment()) {
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QFile::decodeName(CORVANTA_LAB_PROGRAMS) + u'/' + program, arguments);
    ToolRun run;
    if (process.waitForFinished(60000) && process.exitStatus() == QProcess::NormalExit) {
        run.status = process.exitCode();
    }
    run.output = process.readAllStandardOutput();
    run.error = process.readAllStandardError();
    return run;
}

} // namespace corvanta
