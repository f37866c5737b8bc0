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
    settings.statusBar = {{u"time"_s, u"9:41"_s}, {u"operatorName"_s, u""_s}};
    settings.privacy = {{u"com.apple.mobilesafari/location"_s, u"denied"_s}};
    EXPECT_EQ(DeviceSettings::fromJson(settings.toJson()), settings);
}

TEST(DeviceSettings, AreThoseOfANewDeviceWhereTheFileSaysNothingOfUse) {
    for (const QByteArray& json :
         {"", "[]", "{}", R"({"ui": 3, "statusBar": [], "privacy": null})",
          R"({"ui": {"appearance": "purple", "contentSize": "huge", "increaseContrast": "yes"}})",
          R"({"statusBar": {"time": 941}, "privacy": {"a/location": true}})"}) {
        EXPECT_EQ(read(json), DeviceSettings()) << json.constData();
    }
}

TEST(DeviceSettings, DecideWhetherPagesHearTheLocation) {
    struct Case {
        QMap<QString, QString> privacy;
        bool isAllowed;
    };

    const QString browser = u"com.apple.mobilesafari/"_s;
    for (const Case& given :
         {Case{{}, true}, Case{{{browser + u"location"_s, u"denied"_s}}, false},
          Case{{{browser + u"location"_s, u"granted"_s}}, true}, Case{{{browser + u"all"_s, u"denied"_s}}, false},
          Case{{{browser + u"all"_s, u"denied"_s}, {browser + u"location"_s, u"granted"_s}}, true},
          Case{{{browser + u"photos"_s, u"denied"_s}}, true}, Case{{{u"com.example/location"_s, u"denied"_s}}, true}}) {
        DeviceSettings settings;
        settings.privacy = given.privacy;
        EXPECT_EQ(settings.allowsLocation(), given.isAllowed) << given.privacy.keys().join(u' ').toStdString();
    }
}

TEST(DeviceSettings, KnowTheTextSizesFromSmallToLarge) {
    EXPECT_EQ(contentSizes().size(), 12);
    EXPECT_EQ(contentSizes().indexOf(u"large"_s), 3);
}

} // namespace

} // namespace corvanta::lab
