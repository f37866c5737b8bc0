// SPDX-License-Identifier: MIT
#include "DeviceCatalogue.h"

#include <QSet>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace corvanta::lab {

namespace {

using namespace Qt::Literals::StringLiterals;

TEST(DeviceCatalogue, GivesEveryTypeItsOwnIdentifierAndName) {
    QSet<QString> seen;
    for (const DeviceType& type : deviceTypes()) {
        EXPECT_TRUE(type.identifier.startsWith(u"com.apple.CoreSimulator.SimDeviceType."));
        seen << type.identifier << type.name;
    }
    EXPECT_EQ(seen.size(), 2 * qsizetype(deviceTypes().size()));
}

TEST(DeviceCatalogue, HoldsTheModelsThatPeopleTestOn) {
    for (const QString& name : {u"iPhone SE (3rd generation)"_s, u"iPhone 16"_s, u"iPhone 16 Pro"_s,
                                u"iPhone 16 Pro Max"_s, u"iPad mini (A17 Pro)"_s, u"iPad Pro 13-inch (M4)"_s}) {
        EXPECT_NE(findDeviceType(name), nullptr) << name.toStdString();
    }
}

TEST(DeviceCatalogue, LeavesRoomForTheBarsAroundThePage) {
    for (const DeviceType& type : deviceTypes()) {
        EXPECT_EQ(type.viewport.width(), type.screen.width());
        EXPECT_GE(type.screen.height() - type.statusBar - type.viewport.height(), 50) << type.name.toStdString();
    }
}

TEST(DeviceCatalogue, FindsARuntimeByIdentifierNameAndVersion) {
    const Runtime* runtime = findRuntime(u"com.apple.CoreSimulator.SimRuntime.iOS-18-2"_s);
    ASSERT_NE(runtime, nullptr);
    EXPECT_EQ(findRuntime(u"iOS 18.2"_s), runtime);
    EXPECT_EQ(findRuntime(u"iOS18.2"_s), runtime);
    EXPECT_EQ(findRuntime(u"18.2"_s), runtime);
    EXPECT_EQ(findRuntime(u"iOS 99.0"_s), nullptr);
}

TEST(DeviceCatalogue, KeepsNewModelsOffOldSystems) {
    EXPECT_FALSE(isSupported(*findDeviceType(u"iPhone 16 Pro"_s), *findRuntime(u"17.5"_s)));
    EXPECT_TRUE(isSupported(*findDeviceType(u"iPhone 16 Pro"_s), *findRuntime(u"18.2"_s)));
    EXPECT_TRUE(isSupported(*findDeviceType(u"iPad Pro 13-inch (M4)"_s), *findRuntime(u"17.5"_s)));
}

TEST(DeviceCatalogue, SendsAPhoneUserAgentFromPhonesAndADesktopOneFromTablets) {
    EXPECT_EQ(userAgent(*findDeviceType(u"iPhone 15"_s), *findRuntime(u"17.5"_s)),
              u"Mozilla/5.0 (iPhone; CPU iPhone OS 17_5 like Mac OS X) AppleWebKit/605.1.15 (KHTML, like Gecko) "
              "Version/17.5 Mobile/15E148 Safari/604.1");
    EXPECT_EQ(userAgent(*findDeviceType(u"iPad mini (A17 Pro)"_s), *findRuntime(u"18.2"_s)),
              u"Mozilla/5.0 (Macintosh; Intel Mac OS X 10_15_7) AppleWebKit/605.1.15 (KHTML, like Gecko) "
              "Version/18.2 Safari/605.1.15");
}

} // namespace

} // namespace corvanta::lab
