// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "Session.h"

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

/// An override with the values that it takes: words with the numbers that the list shows for them, a range, or any
/// text.
struct Override {
    QString name;
    QList<std::pair<QString, int>> words;
    int highest = -1;
};

const QList<Override>& overrides() {
    static const QList<std::pair<QString, int>> radio{{u"searching"_s, 1}, {u"failed"_s, 2}, {u"active"_s, 3}};
    static const QList<Override> known{
        {u"time"_s, {}, -1},
        {u"dataNetwork"_s,
         {{u"hide"_s, 0},
          {u"wifi"_s, 1},
          {u"3g"_s, 6},
          {u"4g"_s, 7},
          {u"lte"_s, 8},
          {u"lte-a"_s, 9},
          {u"lte+"_s, 10},
          {u"5g"_s, 11},
          {u"5g+"_s, 12},
          {u"5g-uwb"_s, 13},
          {u"5g-uc"_s, 14}},
         -1},
        {u"wifiMode"_s, radio, -1},
        {u"wifiBars"_s, {}, 3},
        {u"cellularMode"_s, QList<std::pair<QString, int>>{{u"notSupported"_s, 0}} + radio, -1},
        {u"cellularBars"_s, {}, 4},
        {u"operatorName"_s, {}, -1},
        {u"batteryState"_s, {{u"discharging"_s, 0}, {u"charging"_s, 1}, {u"charged"_s, 2}}, -1},
        {u"batteryLevel"_s, {}, 100},
    };
    return known;
}

bool isAllowed(const Override& entry, const QString& value) {
    if (!entry.words.isEmpty()) {
        return std::ranges::any_of(
            entry.words, [&](const auto& word) { return word.first.compare(value, Qt::CaseInsensitive) == 0; });
    }
    bool isNumber = false;
    const int number = value.toInt(&isNumber);
    return entry.highest < 0 || (isNumber && number >= 0 && number <= entry.highest);
}

QMap<QString, QString> overridesFrom(QStringList words) {
    QMap<QString, QString> result;
    for (const Override& entry : overrides()) {
        const auto value = takeOption(words, u"--"_s + entry.name, u"status_bar"_s);
        if (!value) {
            continue;
        }
        if (!isAllowed(entry, *value)) {
            throw usage(u"status_bar"_s, u"Invalid %1: %2"_s.arg(entry.name, *value));
        }
        result[entry.name] = entry.words.isEmpty() ? *value : value->toLower();
        if (entry.name == u"cellularMode" && value->toLower() == u"notsupported") {
            result[entry.name] = u"notSupported"_s;
        }
    }
    if (!words.isEmpty()) {
        throw usage(u"status_bar"_s, u"Unknown option: "_s + words.first());
    }
    if (result.isEmpty()) {
        throw usage(u"status_bar"_s, u"At least one override is needed."_s);
    }
    return result;
}

/// The number that the list shows for an override; the second value when it is not overridden.
int numberOf(const QMap<QString, QString>& set, const QString& name, int otherwise) {
    if (!set.contains(name)) {
        return otherwise;
    }
    for (const Override& entry : overrides()) {
        for (const auto& [word, number] : entry.words) {
            if (entry.name == name && word == set[name]) {
                return number;
            }
        }
    }
    return set[name].toInt();
}

QString listing(const QMap<QString, QString>& set) {
    constexpr int active = 3;
    const auto has = [&](const QString& name) { return set.contains(name); };
    QString text = u"Current Status Bar Overrides:\n=============================\n"_s;
    if (has(u"time"_s)) {
        text += u"Time: %1\n"_s.arg(set[u"time"_s]);
    }
    if (has(u"dataNetwork"_s)) {
        text += u"DataNetworkType: %1\n"_s.arg(numberOf(set, u"dataNetwork"_s, 0));
    }
    if (has(u"wifiMode"_s) || has(u"wifiBars"_s)) {
        text += u"WiFi Mode: %1, WiFi Bars: %2\n"_s.arg(numberOf(set, u"wifiMode"_s, active))
                    .arg(numberOf(set, u"wifiBars"_s, 3));
    }
    if (has(u"cellularMode"_s) || has(u"cellularBars"_s)) {
        text += u"Cell Mode: %1, Cell Bars: %2\n"_s.arg(numberOf(set, u"cellularMode"_s, active))
                    .arg(numberOf(set, u"cellularBars"_s, 4));
    }
    if (has(u"operatorName"_s)) {
        text += u"Operator Name: %1\n"_s.arg(set[u"operatorName"_s]);
    }
    if (has(u"batteryState"_s) || has(u"batteryLevel"_s)) {
        text += u"Battery State: %1, Battery Level: %2, Not Charging: 0\n"_s.arg(numberOf(set, u"batteryState"_s, 0))
                    .arg(numberOf(set, u"batteryLevel"_s, 100));
    }
    return text;
}

} // namespace

int statusBarCommand(const QStringList& arguments) {
    if (arguments.size() < 2) {
        throw usage(u"status_bar"_s);
    }
    const QString& action = arguments[1];
    QMap<QString, QString> given;
    if (action == u"override") {
        given = overridesFrom(arguments.sliced(2));
    } else if ((action != u"list" && action != u"clear") || arguments.size() != 2) {
        throw usage(u"status_bar"_s);
    }
    Session session;
    const Device device = session.runningDevice(arguments[0]);
    if (action == u"list") {
        print(listing(session.set.settings(device).statusBar));
        return 0;
    }
    session.set.changeSettings(device, [&](DeviceSettings& settings) {
        if (action == u"clear") {
            settings.statusBar.clear();
        }
        settings.statusBar.insert(given);
    });
    session.bus().call(device.udid, "ReloadSettings", requestLimit);
    return 0;
}

} // namespace corvanta::lab
