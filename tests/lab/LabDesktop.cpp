// SPDX-License-Identifier: MIT
#include "LabDesktop.h"

#include "DeviceBus.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QTimer>

#include <chrono>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr std::chrono::milliseconds limit = 20s;

} // namespace

/// Serves events until the condition holds. The condition may itself serve events.
bool waitFor(const std::function<bool()>& condition) {
    QElapsedTimer elapsed;
    elapsed.start();
    while (!condition()) {
        if (elapsed.elapsed() > limit.count()) {
            return false;
        }
        QEventLoop pause;
        QTimer::singleShot(20ms, &pause, &QEventLoop::quit);
        pause.exec();
    }
    return true;
}

/// Runs a tool without holding up the pages that report here.
ToolRun runServing(const QString& program, const QStringList& arguments) {
    QProcess process;
    QEventLoop loop;
    QObject::connect(&process, &QProcess::finished, &loop, &QEventLoop::quit);
    QTimer::singleShot(60s, &loop, &QEventLoop::quit);
    process.start(program, arguments);
    loop.exec();
    ToolRun run;
    run.status = process.state() == QProcess::NotRunning ? process.exitCode() : -1;
    run.output = process.readAllStandardOutput();
    run.error = process.readAllStandardError();
    return run;
}

ToolRun runLab(const QString& program, const QStringList& arguments) {
    return runServing(QFile::decodeName(CORVANTA_LAB_PROGRAMS) + u'/' + program, arguments);
}

ToolRun simctl(const QStringList& arguments) {
    return runLab(u"xcrun"_s, QStringList{u"simctl"_s} + arguments);
}

/// Programs of this desktop that the lab started.
QStringList labProcesses() {
    const QByteArray marker = "CORVANTA_VIRTUAL_DESKTOP=" + qgetenv("CORVANTA_VIRTUAL_DESKTOP");
    QStringList result;
    for (const QString& process : QDir(u"/proc"_s).entryList({u"[0-9]*"_s}, QDir::Dirs)) {
        QFile environment(u"/proc/"_s + process + u"/environ"_s);
        QFile command(u"/proc/"_s + process + u"/cmdline"_s);
        if (environment.open(QIODevice::ReadOnly) && environment.readAll().split('\0').contains(marker) &&
            command.open(QIODevice::ReadOnly)) {
            const QByteArray words = command.readAll();
            if (words.contains("WebKit") || words.contains("SimulatorDevice")) {
                result.append(process + u' ' + QString::fromUtf8(words).replace(QChar(0), u' '));
            }
        }
    }
    return result;
}

void Simulator::SetUp() {
    if (qEnvironmentVariableIsEmpty("CORVANTA_VIRTUAL_DESKTOP")) {
        GTEST_SKIP() << "needs a desktop of its own: run it through tests/support/virtual-desktop";
    }
}

void Simulator::TearDown() {
    simctl({u"shutdown"_s, u"all"_s});
    const QStringList left = labProcesses();
    EXPECT_TRUE(left.isEmpty()) << left.join(u'\n').toStdString();
}

QString Simulator::create(const QString& type) {
    const ToolRun run = simctl({u"create"_s, type, type, u"iOS 18.2"_s});
    EXPECT_EQ(run.status, 0) << run.error.constData();
    return QString::fromUtf8(run.output).trimmed();
}

QString Simulator::createBooted(const QString& type) {
    const QString udid = create(type);
    const ToolRun run = simctl({u"bootstatus"_s, udid, u"-b"_s});
    EXPECT_EQ(run.status, 0) << run.error.constData();
    return udid;
}

QString Simulator::stateOf(const QString& udid) {
    const QJsonObject devices =
        QJsonDocument::fromJson(simctl({u"list"_s, u"-j"_s, u"devices"_s}).output).object()[u"devices"].toObject();
    for (const QJsonValue runtime : devices) {
        for (const QJsonValue device : runtime.toArray()) {
            if (device[u"udid"].toString() == udid) {
                return device[u"state"].toString();
            }
        }
    }
    return {};
}

QString Simulator::window(const QString& title) {
    const QStringList search{u"search"_s, u"--onlyvisible"_s, u"--name"_s,
                             u"^"_s + QRegularExpression::escape(title) + u"$"_s};
    ToolRun found = runServing(u"xdotool"_s, search);
    // A window that goes while the search looks at it ends the search.
    for (int attempt = 0; attempt < 10 && found.error.contains("BadWindow"); ++attempt) {
        found = runServing(u"xdotool"_s, search);
    }
    return QString::fromUtf8(found.output).section(u'\n', 0, 0);
}

void Simulator::turn(const QString& udid, const QString& orientation) {
    QDBusMessage call =
        QDBusMessage::createMethodCall(lab::deviceBusName(udid), QLatin1StringView(lab::deviceObjectPath),
                                       QLatin1StringView(lab::deviceInterface), u"SetOrientation"_s);
    call << orientation;
    const QDBusMessage reply = QDBusConnection::sessionBus().call(call);
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
}

} // namespace corvanta
