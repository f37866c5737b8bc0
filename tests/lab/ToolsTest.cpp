// SPDX-License-Identifier: MIT
#include "ToolRun.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonArray>
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
    EXPECT_EQ(run(u"xcrun"_s, {u"simctl"_s, u"help"_s, u"rename"_s}).output,
              "Rename a device.\nUsage: simctl rename <device> <name>\n");
}

TEST_F(ToolsTest, XcrunSaysWhenAToolIsMissing) {
    const ToolRun unknown = run(u"xcrun"_s, {u"frobnicate"_s});
    EXPECT_EQ(unknown.status, 72);
    EXPECT_EQ(unknown.error, "xcrun: error: unable to find utility \"frobnicate\", not a developer tool or in PATH\n");
}

TEST_F(ToolsTest, ASystemWithoutToolsHasNoSimctl) {
    for (const char* system :
         {R"({"commandLineTools": false})", R"({"xcode": null})", R"({"xcode": null, "commandLineTools": false})"}) {
        SCOPED_TRACE(system);
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
    EXPECT_EQ(missing.error, "xcode-select: error: tool 'xcodebuild' requires Xcode, but active developer directory "
                             "'/Library/Developer/CommandLineTools' is a command line tools instance\n");
    writeSystem(R"({"xcode": null, "commandLineTools": false})");
    const ToolRun nothing = run(u"xcodebuild"_s, {u"-version"_s});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_TRUE(nothing.error.startsWith("xcode-select: note: No developer tools were found"))
        << nothing.error.constData();
}

TEST_F(ToolsTest, XcodeIsThereWithoutTheCommandLineTools) {
    writeSystem(R"({"xcode": "16.4", "commandLineTools": false})");
    EXPECT_EQ(run(u"xcodebuild"_s, {u"-version"_s}).output, "Xcode 16.4\nBuild version 16F6\n");
}

TEST_F(ToolsTest, ListsTheRuntimesThatTheUserHasInstalled) {
    struct Case {
        const char* system;
        QStringList runtimes;
    };

    for (const Case& given : {Case{"{}", {u"iOS 17.5"_s, u"iOS 18.2"_s}},
                              Case{R"({"runtimes": ["iOS 18.2", "iOS 17.5"]})", {u"iOS 17.5"_s, u"iOS 18.2"_s}},
                              Case{R"({"runtimes": ["18.2"]})", {u"iOS 18.2"_s}},
                              Case{R"({"runtimes": ["com.apple.CoreSimulator.SimRuntime.iOS-17-5"]})", {u"iOS 17.5"_s}},
                              Case{R"({"runtimes": []})", {}}}) {
        SCOPED_TRACE(given.system);
        writeSystem(given.system);
        const ToolRun list = run(u"xcrun"_s, {u"simctl"_s, u"list"_s, u"-j"_s, u"runtimes"_s, u"available"_s});
        EXPECT_EQ(list.status, 0) << list.error.constData();
        const QJsonValue runtimes = QJsonDocument::fromJson(list.output).object()[u"runtimes"];
        ASSERT_TRUE(runtimes.isArray()) << list.output.constData();
        QStringList names;
        for (const QJsonValue runtime : runtimes.toArray()) {
            EXPECT_TRUE(runtime[u"isAvailable"].toBool());
            names.append(runtime[u"name"].toString());
        }
        EXPECT_EQ(names, given.runtimes);
    }
}

TEST_F(ToolsTest, DevicesOfAMissingRuntimeAreUnavailable) {
    const QString missing = u"com.apple.CoreSimulator.SimRuntime.iOS-17-5"_s;
    const auto devices = [this](const QStringList& filter) {
        return QJsonDocument::fromJson(run(u"simctl"_s, QStringList{u"list"_s, u"-j"_s, u"devices"_s} + filter).output)
            .object()[u"devices"]
            .toObject();
    };
    const qsizetype before = devices({})[missing].toArray().size();
    ASSERT_GT(before, 0);
    writeSystem(R"({"runtimes": ["iOS 18.2"]})");
    EXPECT_TRUE(devices({u"available"_s})[missing].toArray().isEmpty());
    const QJsonArray listed = devices({})[missing].toArray();
    EXPECT_EQ(listed.size(), before);
    EXPECT_FALSE(listed.first()[u"isAvailable"].toBool(true));
    EXPECT_EQ(listed.first()[u"availabilityError"].toString(),
              u"runtime profile not found using \"System\" match policy");
    EXPECT_TRUE(run(u"simctl"_s, {u"list"_s, u"devices"_s}).output.contains("-- Unavailable: " + missing.toUtf8()));
    writeSystem(R"({"runtimes": ["iOS 17.5", "iOS 18.2"]})");
    EXPECT_EQ(devices({u"available"_s})[missing].toArray().size(), before) << "they come back with their runtime";
}

TEST_F(ToolsTest, CreatesForInstalledRuntimesOnly) {
    writeSystem(R"({"runtimes": ["iOS 17.5"]})");
    EXPECT_EQ(run(u"simctl"_s, {u"create"_s, u"X"_s, u"iPhone 16"_s, u"iOS 18.2"_s}).error,
              "Invalid runtime: iOS 18.2\n");
    EXPECT_EQ(run(u"simctl"_s, {u"create"_s, u"X"_s, u"iPhone 15"_s}).status, 0);
    EXPECT_EQ(run(u"simctl"_s, {u"create"_s, u"X"_s, u"iPhone 16"_s}).status, 147);
    writeSystem(R"({"runtimes": []})");
    const ToolRun none = run(u"simctl"_s, {u"create"_s, u"X"_s, u"iPhone 16"_s});
    EXPECT_EQ(none.status, 147);
    EXPECT_TRUE(none.error.endsWith("No installed runtime supports device type: iPhone 16\n"))
        << none.error.constData();
}

TEST_F(ToolsTest, EveryToolSaysWhatIsWrongWithADamagedSystem) {
    struct Case {
        const char* system;
        const char* problem;
    };

    const QByteArray path = home().toUtf8() + "/system.json";
    for (const Case& given :
         {Case{"", ": line 1: "}, Case{"{\n  \"xcode\": \"16.4\",\n}\n", ": line 3: "},
          Case{"[]", ": the file must hold one object in braces\n"},
          Case{R"({"macOS": 15})", ": \"macOS\" must be a text such as \"15.5\"\n"},
          Case{R"({"xcode": false})", ": \"xcode\" must be a text such as \"16.4\"\n"},
          Case{R"({"commandLineTools": "no"})", ": \"commandLineTools\" must be true or false\n"},
          Case{R"({"runtimes": "iOS 18.2"})", ": \"runtimes\" must be a list such as [\"iOS 18.2\"]\n"},
          Case{R"({"runtimes": ["iOS 9.0"]})",
               ": \"runtimes\" names what the lab does not have; it has iOS 17.5, iOS 18.2\n"},
          Case{R"({"runtimes": [18.2]})",
               ": \"runtimes\" names what the lab does not have; it has iOS 17.5, iOS 18.2\n"}}) {
        SCOPED_TRACE(given.system);
        writeSystem(given.system);
        const ToolRun version = run(u"xcodebuild"_s, {u"-version"_s});
        EXPECT_EQ(version.status, 1);
        EXPECT_EQ(version.output, "");
        EXPECT_TRUE(version.error.startsWith("xcodebuild: error: " + path + given.problem))
            << version.error.constData();
        const ToolRun find = run(u"xcrun"_s, {u"--find"_s, u"simctl"_s});
        EXPECT_EQ(find.status, 1);
        EXPECT_TRUE(find.error.startsWith("xcrun: error: " + path + given.problem)) << find.error.constData();
        const ToolRun list = run(u"simctl"_s, {u"list"_s, u"-j"_s, u"runtimes"_s, u"available"_s});
        EXPECT_EQ(list.status, 1);
        EXPECT_EQ(list.output, "");
        EXPECT_TRUE(list.error.startsWith("simctl: " + path + given.problem)) << list.error.constData();
        const ToolRun show = run(u"open"_s, {u"-a"_s, u"Simulator"_s});
        EXPECT_EQ(show.status, 1);
        EXPECT_TRUE(show.error.startsWith("open: " + path + given.problem)) << show.error.constData();
    }
    QFile file(QString::fromUtf8(path));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), R"({"runtimes": [18.2]})") << "the user's file is left as it is";
}

TEST_F(ToolsTest, SaysThatTheSystemCannotBeRead) {
    ASSERT_TRUE(QDir().mkpath(home() + u"/system.json"_s));
    const ToolRun version = run(u"xcodebuild"_s, {u"-version"_s});
    EXPECT_EQ(version.status, 1);
    EXPECT_TRUE(version.error.startsWith("xcodebuild: error: " + home().toUtf8() + "/system.json: "))
        << version.error.constData();
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
    EXPECT_EQ(run1.error, "Invalid device or device pair: nonsense\n");
    const ToolRun run2 = run(u"simctl"_s, {u"shutdown"_s, u"nonsense"_s});
    EXPECT_EQ(run2.status, 148);
    EXPECT_EQ(run2.error, "Invalid device: nonsense\n");
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

TEST_F(ToolsTest, OpenRefusesAnAddressThatIsNoBrowsers) {
    const ToolRun mail = run(u"open"_s, {u"mailto:somebody@example.org"_s});
    EXPECT_EQ(mail.status, 1);
    EXPECT_TRUE(mail.error.startsWith("No application knows how to open URL mailto:somebody@example.org"))
        << mail.error.constData();
    const ToolRun file = run(u"open"_s, {u"-a"_s, u"Safari"_s, home() + u"/none.html"_s});
    EXPECT_EQ(file.status, 1);
    EXPECT_EQ(file.error, "The file " + home().toUtf8() + "/none.html does not exist.\n");
}

TEST_F(ToolsTest, OpenNamesAnUnknownApplication) {
    const ToolRun unknown = run(u"open"_s, {u"-a"_s, u"Nonsense"_s});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.error, "Unable to find application named 'Nonsense'\n");
}

TEST_F(ToolsTest, OpenTakesAnAddressThatEndsLikeAnApplication) {
    const ToolRun address = run(u"open"_s, {u"https://example.app"_s});
    EXPECT_EQ(address.status, 1) << "there is no session bus";
    EXPECT_FALSE(address.error.contains("example.app")) << address.error.constData();
}

} // namespace

} // namespace corvanta
