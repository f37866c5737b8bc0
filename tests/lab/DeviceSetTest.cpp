// SPDX-License-Identifier: MIT
#include "DeviceSet.h"
#include "DeviceCatalogue.h"
#include "FileLock.h"
#include "LabFolders.h"
#include "SystemDescription.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>

namespace corvanta::lab {

namespace {

using namespace Qt::Literals::StringLiterals;

class DeviceSetTest : public ::testing::Test {
protected:
    QTemporaryDir folder;
    QString path = folder.path() + u"/Devices"_s;
    DeviceSet set{path};
};

TEST_F(DeviceSetTest, MakesOneDeviceForEachModelAndRuntimeOnFirstUse) {
    set.createDefaultsOnFirstUse();
    std::size_t expected = 0;
    for (const Runtime& runtime : runtimes()) {
        expected += std::size_t(
            std::ranges::count_if(deviceTypes(), [&](const DeviceType& type) { return isSupported(type, runtime); }));
    }
    EXPECT_EQ(set.devices().size(), expected);
    set.createDefaultsOnFirstUse();
    EXPECT_EQ(set.devices().size(), expected);
}

TEST_F(DeviceSetTest, DoesNotBringBackDeletedDefaults) {
    set.createDefaultsOnFirstUse();
    for (const Device& device : set.devices()) {
        set.remove(device);
    }
    set.createDefaultsOnFirstUse();
    EXPECT_TRUE(set.devices().empty());
}

TEST_F(DeviceSetTest, TakesASetLaidOutByHandAsItIs) {
    QDir().mkpath(path + u"/11111111-2222-4333-8444-555555555555"_s);
    QFile file(path + u"/11111111-2222-4333-8444-555555555555/device.json"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        R"({"UDID": "11111111-2222-4333-8444-555555555555", "name": "Mine", "deviceType": "t", "runtime": "r"})");
    file.close();
    set.createDefaultsOnFirstUse();
    ASSERT_EQ(set.devices().size(), 1U);
    EXPECT_EQ(set.devices().front().name, u"Mine");
}

TEST_F(DeviceSetTest, NamesDevicesWithUpperCaseIdentifiersAndFindsThemInAnyCase) {
    const Device device = set.create(u"Test"_s, deviceTypes().front().identifier, runtimes().back().identifier);
    EXPECT_TRUE(QRegularExpression(u"^[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"_s).match(device.udid).hasMatch());
    EXPECT_EQ(set.deviceWithId(device.udid.toLower()), device);
    EXPECT_EQ(set.deviceWithId(u"nothing"_s), std::nullopt);
}

TEST_F(DeviceSetTest, IgnoresFoldersThatHoldNoReadableDevice) {
    set.createDefaultsOnFirstUse();
    const std::size_t before = set.devices().size();
    QDir().mkpath(path + u"/junk"_s);
    QFile file(path + u"/junk/device.json"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("{ not json");
    file.close();
    EXPECT_EQ(set.devices().size(), before);
}

TEST_F(DeviceSetTest, IgnoresFoldersWhoseNameIsNoIdentifier) {
    set.createDefaultsOnFirstUse();
    const std::size_t before = set.devices().size();
    for (const QByteArray& name :
         {"mine", "11111111-2222-4333-8444-55555555555", "11111111-2222-4333-8444-55555555555g",
          "aaaaaaaa-2222-4333-8444-555555555555", "11111111-2222-4333-8444-555555555555.old"}) {
        const QString device = path + u'/' + QString::fromUtf8(name);
        ASSERT_TRUE(QDir().mkpath(device));
        QFile file(device + u"/device.json"_s);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("{\"UDID\": \"" + name + "\", \"name\": \"Mine\", \"deviceType\": \"t\", \"runtime\": \"r\"}");
    }
    EXPECT_EQ(set.devices().size(), before);
}

TEST_F(DeviceSetTest, LosesNothingWhenSeveralCreateAtOnce) {
    set.createDefaultsOnFirstUse();
    const std::size_t before = set.devices().size();
    {
        std::vector<std::jthread> threads;
        for (int index = 0; index < 8; ++index) {
            threads.emplace_back([this] {
                DeviceSet(path).create(u"Many"_s, deviceTypes().front().identifier, runtimes().back().identifier);
            });
        }
    }
    EXPECT_EQ(set.devices().size(), before + 8);
}

TEST_F(DeviceSetTest, RemembersTheLastBoot) {
    const Device device = set.create(u"Test"_s, deviceTypes().front().identifier, runtimes().back().identifier);
    EXPECT_EQ(set.lastBooted(device), std::nullopt);
    set.noteBoot(device);
    ASSERT_TRUE(set.lastBooted(device));
    EXPECT_LT(std::abs(set.lastBooted(device)->secsTo(QDateTime::currentDateTimeUtc())), 60);
}

TEST(SystemDescription, ReadsWhatAUserWrote) {
    const auto system = SystemDescription::fromJson(R"({"macOS": "14.1", "xcode": null, "commandLineTools": false})");
    EXPECT_EQ(system.macOS, u"14.1");
    EXPECT_EQ(system.xcode, std::nullopt);
    EXPECT_FALSE(system.hasDeveloperTools());
}

TEST(SystemDescription, TakesTheShippedValueOfWhatIsMissing) {
    const auto system = SystemDescription::fromJson("{}");
    EXPECT_EQ(system.macOS, u"15.5");
    EXPECT_EQ(system.xcode, u"16.4");
    EXPECT_TRUE(system.hasDeveloperTools());
    EXPECT_EQ(system.runtimes, runtimes());
}

TEST(SystemDescription, KnowsInstalledRuntimesOnly) {
    const auto system = SystemDescription::fromJson(R"({"runtimes": ["iOS 17.5"]})");
    ASSERT_NE(system.findRuntime(u"17.5"_s), nullptr);
    EXPECT_EQ(*system.findRuntime(u"17.5"_s), *findRuntime(u"17.5"_s));
    EXPECT_EQ(system.findRuntime(u"iOS 18.2"_s), nullptr);
    EXPECT_EQ(system.findRuntime(u"iOS 9.0"_s), nullptr);
}

TEST(SystemDescription, RefusesWhatItDoesNotUnderstand) {
    EXPECT_THROW((void)SystemDescription::fromJson("{"), SystemDescriptionError);
    EXPECT_THROW((void)SystemDescription::fromJson("3"), SystemDescriptionError);
    EXPECT_THROW((void)SystemDescription::fromJson(R"({"macOS": ""})"), SystemDescriptionError);
}

TEST(FileLock, GoesOnlyOnWithTheLock) {
    const QTemporaryDir folder;
    EXPECT_THROW(FileLock{folder.path()}, std::runtime_error) << "a folder cannot be opened for writing";
    EXPECT_NO_THROW(FileLock{folder.filePath(u"lock"_s)});
}

/// The variables that say where the lab's data is, put back at the end.
class LabHome : public ::testing::Test {
protected:
    void TearDown() override {
        for (const auto& [name, value] : saved) {
            value.isNull() ? qunsetenv(name) : qputenv(name, value);
        }
    }

    static QString current(const QString& path) { return QDir::currentPath() + path; }

    const std::vector<std::pair<const char*, QByteArray>> saved{
        {"CORVANTA_LAB_HOME", qgetenv("CORVANTA_LAB_HOME")},
        {"CORVANTA_DEVICE_SET", qgetenv("CORVANTA_DEVICE_SET")},
        {"XDG_DATA_HOME", qgetenv("XDG_DATA_HOME")},
        {"HOME", qgetenv("HOME")},
    };
};

TEST_F(LabHome, IsWhereTheEnvironmentSaysAndAlwaysAbsolute) {
    qputenv("CORVANTA_LAB_HOME", "/somewhere//lab/../other/");
    EXPECT_EQ(homeFolder(), u"/somewhere/other");
    qputenv("CORVANTA_LAB_HOME", "below/./here");
    EXPECT_EQ(homeFolder(), current(u"/below/here"_s));
}

TEST_F(LabHome, IsInTheUsersDataFolderOtherwise) {
    qputenv("CORVANTA_LAB_HOME", "");
    qputenv("HOME", "/home/somebody");
    qputenv("XDG_DATA_HOME", "/data");
    EXPECT_EQ(homeFolder(), u"/data/corvanta-lab");
    qputenv("XDG_DATA_HOME", "not/absolute");
    EXPECT_EQ(homeFolder(), u"/home/somebody/.local/share/corvanta-lab");
    qunsetenv("XDG_DATA_HOME");
    EXPECT_EQ(homeFolder(), u"/home/somebody/.local/share/corvanta-lab");
}

TEST_F(LabHome, HoldsTheDeviceSetUnlessTheEnvironmentSaysOtherwise) {
    qputenv("CORVANTA_LAB_HOME", "/lab");
    qunsetenv("CORVANTA_DEVICE_SET");
    EXPECT_EQ(deviceSetFolder(), u"/lab/Devices");
    qputenv("CORVANTA_DEVICE_SET", "mine/");
    EXPECT_EQ(deviceSetFolder(), current(u"/mine"_s));
}

} // namespace

} // namespace corvanta::lab
