// SPDX-License-Identifier: MIT
#include "ListOutput.h"
#include "DeviceCatalogue.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <gtest/gtest.h>

namespace corvanta::lab {

namespace {

using namespace Qt::Literals::StringLiterals;

/// A system with every runtime of the catalogue.
SystemDescription everything() {
    return SystemDescription::fromJson("{}");
}

std::vector<ListedDevice> someDevices() {
    return {{.device = {u"AAAA"_s, u"iPhone 15"_s, u"com.apple.CoreSimulator.SimDeviceType.iPhone-15"_s,
                        u"com.apple.CoreSimulator.SimRuntime.iOS-17-5"_s},
             .state = u"Shutdown"_s,
             .folder = u"/set/AAAA"_s,
             .lastBooted = std::nullopt},
            {.device = {u"BBBB"_s, u"iPhone 16 Pro"_s, u"com.apple.CoreSimulator.SimDeviceType.iPhone-16-Pro"_s,
                        u"com.apple.CoreSimulator.SimRuntime.iOS-18-2"_s},
             .state = u"Booted"_s,
             .folder = u"/set/BBBB"_s,
             .lastBooted = QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5), Qt::UTC)},
            {.device = {u"CCCC"_s, u"Old"_s, u"com.apple.CoreSimulator.SimDeviceType.iPhone-15"_s,
                        u"com.apple.CoreSimulator.SimRuntime.iOS-9-0"_s},
             .state = u"Shutdown"_s,
             .folder = u"/set/CCCC"_s,
             .lastBooted = std::nullopt}};
}

QJsonObject listed(const QStringList& arguments) {
    const QByteArray text = listOutput(ListOptions::parse(arguments), someDevices(), everything());
    const QJsonDocument document = QJsonDocument::fromJson(text);
    EXPECT_TRUE(document.isObject()) << text.constData();
    return document.object();
}

TEST(ListOutput, KeysDevicesByRuntime) {
    const QJsonObject document = listed({u"-j"_s, u"devices"_s});
    EXPECT_EQ(document.keys(), QStringList{u"devices"_s});
    const QJsonObject device =
        document[u"devices"].toObject()[u"com.apple.CoreSimulator.SimRuntime.iOS-18-2"].toArray().first().toObject();
    EXPECT_EQ(device[u"udid"].toString(), u"BBBB");
    EXPECT_EQ(device[u"name"].toString(), u"iPhone 16 Pro");
    EXPECT_EQ(device[u"state"].toString(), u"Booted");
    EXPECT_EQ(device[u"isAvailable"].toBool(), true);
    EXPECT_EQ(device[u"deviceTypeIdentifier"].toString(), u"com.apple.CoreSimulator.SimDeviceType.iPhone-16-Pro");
    EXPECT_EQ(device[u"dataPath"].toString(), u"/set/BBBB/data");
    EXPECT_EQ(device[u"lastBootedAt"].toString(), u"2026-01-02T03:04:05Z");
}

TEST(ListOutput, MarksADeviceWithoutItsRuntimeAsUnavailable) {
    const QJsonObject all = listed({u"-j"_s, u"devices"_s})[u"devices"].toObject();
    const QJsonObject old = all[u"com.apple.CoreSimulator.SimRuntime.iOS-9-0"].toArray().first().toObject();
    EXPECT_EQ(old[u"isAvailable"].toBool(true), false);
    EXPECT_FALSE(old[u"availabilityError"].toString().isEmpty());
}

TEST(ListOutput, LeavesUnavailableDevicesOutOfTheAvailableOnes) {
    const QJsonObject available = listed({u"-j"_s, u"devices"_s, u"available"_s})[u"devices"].toObject();
    EXPECT_TRUE(available[u"com.apple.CoreSimulator.SimRuntime.iOS-9-0"].toArray().isEmpty());
    EXPECT_EQ(available[u"com.apple.CoreSimulator.SimRuntime.iOS-17-5"].toArray().size(), 1);
}

TEST(ListOutput, ListsRuntimesWithWhatRunsOnThem) {
    const QJsonArray list = listed({u"runtimes"_s, u"available"_s, u"--json"_s})[u"runtimes"].toArray();
    ASSERT_EQ(list.size(), qsizetype(runtimes().size()));
    const QJsonObject first = list.first().toObject();
    EXPECT_EQ(first[u"identifier"].toString(), u"com.apple.CoreSimulator.SimRuntime.iOS-17-5");
    EXPECT_EQ(first[u"name"].toString(), u"iOS 17.5");
    EXPECT_EQ(first[u"version"].toString(), u"17.5");
    EXPECT_EQ(first[u"buildversion"].toString(), u"21F79");
    EXPECT_EQ(first[u"isAvailable"].toBool(), true);
    EXPECT_FALSE(first[u"supportedDeviceTypes"].toArray().isEmpty());
}

TEST(ListOutput, HoldsEverySectionWhenNoneIsNamed) {
    EXPECT_EQ(listed({u"--json"_s}).keys(), (QStringList{u"devices"_s, u"devicetypes"_s, u"pairs"_s, u"runtimes"_s}));
}

TEST(ListOutput, NarrowsByASearchTermInAnyCase) {
    const QJsonObject found = listed({u"-j"_s, u"devices"_s, u"BOOTED"_s})[u"devices"].toObject();
    EXPECT_TRUE(found[u"com.apple.CoreSimulator.SimRuntime.iOS-17-5"].toArray().isEmpty());
    EXPECT_EQ(found[u"com.apple.CoreSimulator.SimRuntime.iOS-18-2"].toArray().size(), 1);
}

TEST(ListOutput, WritesTextAsPeopleReadIt) {
    EXPECT_EQ(listOutput(ListOptions::parse({u"devices"_s}), someDevices(), everything()),
              "== Devices ==\n"
              "-- iOS 17.5 --\n"
              "    iPhone 15 (AAAA) (Shutdown) \n"
              "-- iOS 18.2 --\n"
              "    iPhone 16 Pro (BBBB) (Booted) \n"
              "-- Unavailable: com.apple.CoreSimulator.SimRuntime.iOS-9-0 --\n"
              "    Old (CCCC) (Shutdown) (unavailable, runtime profile not found using \"System\" match policy)\n");
    EXPECT_EQ(listOutput(ListOptions::parse({u"runtimes"_s}), {}, everything()),
              "== Runtimes ==\n"
              "iOS 17.5 (17.5 - 21F79) - com.apple.CoreSimulator.SimRuntime.iOS-17-5\n"
              "iOS 18.2 (18.2 - 22C150) - com.apple.CoreSimulator.SimRuntime.iOS-18-2\n");
}

TEST(ListOutput, SpellsJsonAsTheMacDoes) {
    EXPECT_EQ(spellJson(QJsonObject{{u"a"_s, u"/x\"y"_s}, {u"b"_s, QJsonArray()}, {u"c"_s, QJsonArray{true, 2}}}),
              "{\n  \"a\" : \"\\/x\\\"y\",\n  \"b\" : [\n\n  ],\n  \"c\" : [\n    true,\n    2\n  ]\n}");
}

TEST(ListOptions, RefusesUnknownOptions) {
    EXPECT_EQ(ListOptions::parse({u"--frobnicate"_s}).problem, u"Unknown option: --frobnicate");
}

} // namespace

} // namespace corvanta::lab
