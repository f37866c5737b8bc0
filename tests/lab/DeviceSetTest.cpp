// SPDX-License-Identifier: MIT
#include "DeviceSet.h"
#include "DeviceCatalogue.h"
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

TEST(SystemDescription, FallsBackToTheShippedValues) {
    const auto system = SystemDescription::fromJson("{");
    EXPECT_EQ(system.macOS, u"15.5");
    EXPECT_EQ(system.xcode, u"16.4");
    EXPECT_TRUE(system.hasDeveloperTools());
}

} // namespace

} // namespace corvanta::lab
