// SPDX-License-Identifier: MIT
#include "ToolRun.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

/// The tools on a home of their own, without a session bus or a display.
class ToolsTest : public ::testing::Test {
protected:
    ToolsTest() {
        m_environment.insert(u"CORVANTA_LAB_HOME"_s, m_home.path());
        m_environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path="_s + m_home.path() + u"/none"_s);
        for (const QString& name : {u"CORVANTA_DEVICE_SET"_s, u"DISPLAY"_s}) {
            m_environment.remove(name);
        }
    }

    ToolRun run(const QString& program, const QStringList& arguments) const {
        return runTool(program, arguments, m_environment);
    }

    void writeSystem(const QByteArray& json) const {
        QFile file(m_home.path() + u"/system.json"_s);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(json);
    }

    [[nodiscard]] QString home() const { return m_home.path(); }

private:
    QTemporaryDir m_home;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(ToolsTest, XcrunFindsSimctlAndRunsIt) {
    const ToolRun found = run(u"xcrun"_s, {u"--find"_s, u"simctl"_s});
    EXPECT_EQ(found.status, 0);
    EXPECT_EQ(found.output, QByteArray(CORVANTA_LAB_PROGRAMS) + "/simctl\n");
    EXPECT_EQ(run(u"xcrun"_s, {u"simctl"_s, u"help"_s, u"boot"_s}).output,
              "Boot a device.\nUsage: simctl boot <device>\n");
}

TEST_F(ToolsTest, XcrunSaysWhenAToolIsMissing) {
    const ToolRun unknown = run(u"xcrun"_s, {u"frobnicate"_s});
    EXPECT_EQ(unknown.status, 72);
    EXPECT_EQ(unknown.error, "xcrun: error: unable to find utility \"frobnicate\", not a developer tool or in PATH\n");
}

TEST_F(ToolsTest, ASystemWithoutToolsHasNoSimctl) {
    for (const char* system : {R"({"commandLineTools": false})", R"({"xcode": null})"}) {
        writeSystem(system);
        const ToolRun missing = run(u"xcrun"_s, {u"--find"_s, u"simctl"_s});
        EXPECT_EQ(missing.status, 72);
        EXPECT_EQ(missing.output, "");
        EXPECT_EQ(missing.error, "xcrun: error: unable to find utility \"simctl\", not a developer tool or in PATH\n");
    }
}

TEST_F(ToolsTest, XcodebuildTellsTheVersionOfTheSystem) {
    EXPECT_EQ(run(u"xcodebuild"_s, {u"-version"_s}).output, "Xcode 16.4\nBuild version 16F6\n");
    EXPECT_TRUE(QFileInfo::exists(home() + u"/system.json"_s));
    writeSystem(R"({"xcode": "15.0", "xcodeBuild": "15A240d"})");
    EXPECT_EQ(run(u"xcodebuild"_s, {u"-version"_s}).output, "Xcode 15.0\nBuild version 15A240d\n");
    writeSystem(R"({"xcode": null})");
    const ToolRun missing = run(u"xcodebuild"_s, {u"-version"_s});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.output, "");
    EXPECT_TRUE(missing.error.startsWith("xcode-select: error: tool 'xcodebuild' requires Xcode"));
}

TEST_F(ToolsTest, ListsDevicesWithoutASessionBus) {
    const ToolRun list = run(u"simctl"_s, {u"list"_s, u"-j"_s, u"devices"_s, u"available"_s});
    EXPECT_EQ(list.status, 0) << list.error.constData();
    EXPECT_EQ(QJsonDocument::fromJson(list.output).object()[u"devices"].toObject().size(), 2);
}

TEST_F(ToolsTest, CreatesAndDeletesDevices) {
    const ToolRun created = run(u"simctl"_s, {u"create"_s, u"Mine"_s, u"iPhone 16 Pro"_s, u"iOS18.2"_s});
    ASSERT_EQ(created.status, 0) << created.error.constData();
    const QString udid = QString::fromUtf8(created.output).trimmed();
    EXPECT_TRUE(
        run(u"simctl"_s, {u"list"_s, u"devices"_s}).output.contains("    Mine (" + udid.toUtf8() + ") (Shutdown) \n"));
    EXPECT_EQ(run(u"simctl"_s, {u"delete"_s, udid}).status, 0);
    EXPECT_FALSE(run(u"simctl"_s, {u"list"_s, u"devices"_s}).output.contains(udid.toUtf8()));
}

TEST_F(ToolsTest, RefusesWhatCannotBeCreated) {
    const ToolRun type = run(u"simctl"_s, {u"create"_s, u"X"_s, u"iPhone 99"_s});
    EXPECT_EQ(type.status, 148);
    EXPECT_EQ(type.error, "Invalid device type: iPhone 99\n");
    const ToolRun runtime = run(u"simctl"_s, {u"create"_s, u"X"_s, u"iPhone 16"_s, u"iOS 9.0"_s});
    EXPECT_EQ(runtime.status, 148);
    EXPECT_EQ(runtime.error, "Invalid runtime: iOS 9.0\n");
    const ToolRun both = run(u"simctl"_s, {u"create"_s, u"X"_s, u"iPhone 16"_s, u"iOS 17.5"_s});
    EXPECT_EQ(both.status, 147);
    EXPECT_TRUE(both.error.endsWith("(domain=com.apple.CoreSimulator.SimError, code=403):\nIncompatible device\n"));
}

TEST_F(ToolsTest, NamesAnUnknownDevice) {
    const ToolRun run1 = run(u"simctl"_s, {u"boot"_s, u"nonsense"_s});
    EXPECT_EQ(run1.status, 148);
    EXPECT_EQ(run1.error, "Invalid device: nonsense\n");
    const ToolRun none = run(u"simctl"_s, {u"openurl"_s, u"booted"_s, u"http://localhost/"_s});
    EXPECT_EQ(none.status, 149);
    EXPECT_EQ(none.error, "No devices are booted.\n");
}

TEST_F(ToolsTest, RefusesToWorkOnADeviceThatIsOff) {
    for (const QStringList& command : {QStringList{u"openurl"_s, u"iPhone 16"_s, u"http://localhost/"_s},
                                       QStringList{u"location"_s, u"iPhone 16"_s, u"set"_s, u"1,2"_s},
                                       QStringList{u"location"_s, u"iPhone 16"_s, u"clear"_s}}) {
        const ToolRun off = run(u"simctl"_s, command);
        EXPECT_EQ(off.status, 149);
        EXPECT_EQ(off.error, "An error was encountered processing the command "
                             "(domain=com.apple.CoreSimulator.SimError, code=405):\n"
                             "Unable to lookup in current state: Shutdown\n");
    }
}

TEST_F(ToolsTest, OpenNamesAnUnknownApplication) {
    const ToolRun unknown = run(u"open"_s, {u"-a"_s, u"Nonsense"_s});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.error, "Unable to find application named 'Nonsense'\n");
}

} // namespace

} // namespace corvanta
