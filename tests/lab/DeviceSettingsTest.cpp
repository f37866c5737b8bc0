// SPDX-License-Identifier: MIT
#include "DeviceSettings.h"

#include <QJsonDocument>

#include <gtest/gtest.h>

namespace corvanta::lab {

namespace {

using namespace Qt::Literals::StringLiterals;

DeviceSettings read(const QByteArray& json) {
    return DeviceSettings::fromJson(QJsonDocument::fromJson(json).object());
}

TEST(DeviceSettings, AreKeptAsTheyAre) {
    DeviceSettings settings;
    settings.appearance = u"dark"_s;
    settings.contentSize = u"accessibility-large"_s;
    settings.increaseContrast = true;
    settings.reduceMotion = true;
    settings.statusBar = {{u"time"_s, u"9:41"_s}, {u"operatorName"_s, u""_s}};
    settings.privacy = {{u"com.apple.mobilesafari/location"_s, u"denied"_s}};
    EXPECT_EQ(DeviceSettings::fromJson(settings.toJson()), settings);
}

TEST(DeviceSettings, AreThoseOfANewDeviceWhereTheFileSaysNothingOfUse) {
    for (const QByteArray& json :
         {"", "[]", "{}", R"({"ui": 3, "statusBar": [], "privacy": null})",
          R"({"ui": {"appearance": "purple", "contentSize": "huge", "increaseContrast": "yes", "reduceMotion": 1}})",
          R"({"statusBar": {"time": 941}, "privacy": {"a/location": true}})"}) {
        EXPECT_EQ(read(json), DeviceSettings()) << json.constData();
    }
}

TEST(DeviceSettings, DecideWhetherPagesHearTheLocation) {
    struct Case {
        QMap<QString, QString> privacy;
        LocationAccess access;
    };

    using enum LocationAccess;
    const QString browser = u"com.apple.mobilesafari/"_s;
    for (const Case& given :
         {Case{{}, granted}, Case{{{browser + u"location"_s, u"denied"_s}}, denied},
          Case{{{browser + u"location"_s, u"granted"_s}}, granted}, Case{{{browser + u"all"_s, u"denied"_s}}, denied},
          Case{{{browser + u"all"_s, u"denied"_s}, {browser + u"location"_s, u"granted"_s}}, granted},
          Case{{{browser + u"location"_s, u"ask"_s}}, ask}, Case{{{browser + u"location"_s, u"once"_s}}, grantedOnce},
          Case{{{browser + u"location-always"_s, u"granted"_s}, {browser + u"location"_s, u"ask"_s}}, granted},
          Case{{{browser + u"location"_s, u"nonsense"_s}}, denied},
          Case{{{browser + u"photos"_s, u"denied"_s}}, granted},
          Case{{{u"com.example/location"_s, u"denied"_s}}, granted}}) {
        DeviceSettings settings;
        settings.privacy = given.privacy;
        EXPECT_EQ(settings.locationAccess(), given.access)
            << given.privacy.keys().join(u' ').toStdString() << ' ' << given.privacy.values().join(u' ').toStdString();
    }
}

TEST(DeviceSettings, TakeAChoiceAboutTheLocation) {
    using enum LocationAccess;
    for (const LocationAccess access : {granted, grantedOnce, denied, ask}) {
        DeviceSettings settings;
        settings.privacy = {{u"com.apple.mobilesafari/location-always"_s, u"granted"_s},
                            {u"com.apple.mobilesafari/photos"_s, u"denied"_s}};
        settings.setLocationAccess(access);
        EXPECT_EQ(settings.locationAccess(), access);
        EXPECT_EQ(settings.privacy.value(u"com.apple.mobilesafari/photos"_s), u"denied");
        EXPECT_EQ(DeviceSettings::fromJson(settings.toJson()), settings);
    }
}

TEST(DeviceSettings, ForgetAtTheEndWhatCountsForOneSession) {
    DeviceSettings settings;
    settings.statusBar = {{u"time"_s, u"9:41"_s}};
    settings.reduceMotion = true;
    settings.setLocationAccess(LocationAccess::grantedOnce);
    settings.endSession();
    EXPECT_TRUE(settings.statusBar.isEmpty());
    EXPECT_TRUE(settings.reduceMotion);
    EXPECT_EQ(settings.locationAccess(), LocationAccess::ask);
    settings.setLocationAccess(LocationAccess::granted);
    settings.endSession();
    EXPECT_EQ(settings.locationAccess(), LocationAccess::granted);
}

TEST(DeviceSettings, KnowTheTextSizesFromSmallToLarge) {
    EXPECT_EQ(contentSizes().size(), 12);
    EXPECT_EQ(contentSizes().indexOf(u"large"_s), 3);
}

} // namespace

} // namespace corvanta::lab
