// SPDX-License-Identifier: MIT
#include "ConformanceRun.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

#include <gtest/gtest.h>

using namespace Qt::Literals::StringLiterals;

namespace corvanta {

namespace {

constexpr int longestRun = 60000;

struct LaidOut {
    const char* word;
    const char* udid;
    const char* name;
    const char* type;
    const char* runtime;
};

constexpr LaidOut devices[] = {
    {"phone", "ABCDEF12-2222-4333-8444-000000000001", "iPhone 16 Pro", "iPhone-16-Pro", "iOS-18-2"},
    {"older", "11111111-2222-4333-8444-000000000002", "iPhone 15", "iPhone-15", "iOS-17-5"},
    {"lost", "11111111-2222-4333-8444-000000000003", "iPhone 14", "iPhone-14", "iOS-16-4"},
};

void write(const QString& path, const QJsonObject& object) {
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << path.toStdString();
    file.write(QJsonDocument(object).toJson());
}

} // namespace

ConformanceRun::ConformanceRun(bool hasBus) {
    const QString tools = QFile::decodeName(CORVANTA_LAB_PROGRAMS);
    m_values = {{u"home"_s, m_home.path()},
                {u"set"_s, m_home.path() + u"/Devices"_s},
                {u"files"_s, m_home.path() + u"/files"_s},
                {u"tools"_s, tools}};
    m_environment.insert(u"CORVANTA_LAB_HOME"_s, m_home.path());
    m_environment.insert(u"PATH"_s, tools + u':' + m_environment.value(u"PATH"_s));
    for (const QString& name : {u"CORVANTA_DEVICE_SET"_s, u"SDKROOT"_s, u"DEVELOPER_DIR"_s}) {
        m_environment.remove(name);
    }
    if (!hasBus) {
        m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path="_s + m_home.path() + u"/none"_s);
        m_environment.remove(u"DISPLAY"_s);
    }
    layOut();
}

void ConformanceRun::layOut() {
    QDir().mkpath(m_values[u"files"_s]);
    for (const LaidOut& device : devices) {
        const QString udid = QString::fromLatin1(device.udid);
        const QString folder = m_values[u"set"_s] + u'/' + udid;
        QDir().mkpath(folder + u"/data"_s);
        write(folder + u"/device.json"_s,
              {{u"UDID"_s, udid},
               {u"name"_s, QString::fromLatin1(device.name)},
               {u"deviceType"_s, u"com.apple.CoreSimulator.SimDeviceType."_s + QLatin1StringView(device.type)},
               {u"runtime"_s, u"com.apple.CoreSimulator.SimRuntime."_s + QLatin1StringView(device.runtime)}});
        m_values[QString::fromLatin1(device.word)] = udid;
    }
}

void ConformanceRun::expect(const Transcript& transcript) const {
    TranscriptValues values = m_values;
    for (const TranscriptStep& step : transcript.steps) {
        SCOPED_TRACE(step.command.toStdString());
        for (const auto& [path, content] : step.given) {
            QFile file(filledIn(path, values));
            ASSERT_TRUE(file.open(QIODevice::WriteOnly)) << file.fileName().toStdString();
            file.write(content.toUtf8());
        }
        const QStringList words = splitCommand(filledIn(step.command, values));
        ASSERT_FALSE(words.isEmpty());
        QProcess process;
        process.setProcessEnvironment(m_environment);
        process.setWorkingDirectory(values[u"files"_s]);
        process.start(values[u"tools"_s] + u'/' + words.first(), words.sliced(1));
        process.write(step.input);
        process.closeWriteChannel();
        ASSERT_TRUE(process.waitForFinished(longestRun)) << process.errorString().toStdString();
        const QByteArray output = process.readAllStandardOutput();
        const QByteArray error = process.readAllStandardError();
        EXPECT_EQ(process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1, step.status)
            << output.constData() << error.constData();
        if (const auto problem = difference(step.output, output, values)) {
            ADD_FAILURE() << "standard output differs\n" << problem->toStdString();
        }
        if (const auto problem = difference(step.error, error, values)) {
            ADD_FAILURE() << "standard error differs\n" << problem->toStdString();
        }
        for (const auto& [path, bytes] : step.files) {
            QFile file(filledIn(path, values));
            ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << file.fileName().toStdString();
            EXPECT_EQ(file.read(bytes.size()).toHex().toStdString(), bytes.toHex().toStdString());
        }
    }
}

std::vector<Transcript> transcriptsOf(const char* file) {
    return readTranscripts(QFile::decodeName(CORVANTA_TRANSCRIPTS) + u'/' + QLatin1StringView(file));
}

} // namespace corvanta
