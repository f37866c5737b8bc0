// SPDX-License-Identifier: MIT
#include "StatusBarContent.h"

#include <QDateTime>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

using Radio = StatusBarContent::Radio;
using Battery = StatusBarContent::Battery;

Radio radioOf(const QString& word) {
    return word == u"notSupported" ? Radio::none
           : word == u"searching"  ? Radio::searching
           : word == u"failed"     ? Radio::failed
                                   : Radio::active;
}

/// The name as it is drawn.
QString networkOf(const QString& word) {
    if (word.isEmpty() || word == u"wifi" || word == u"hide") {
        return word.isEmpty() ? u"wifi"_s : word;
    }
    // "5g-uwb" is drawn "5G UWB", "lte-a" as it is.
    return word.startsWith(u"5g-") ? word.toUpper().replace(u'-', u' ') : word.toUpper();
}

} // namespace

StatusBarContent StatusBarContent::of(const QMap<QString, QString>& overrides) {
    StatusBarContent content;
    const auto number = [&](const QString& name, int highest) {
        return std::clamp(overrides.value(name, QString::number(highest)).toInt(), 0, highest);
    };
    const QString time = overrides.value(u"time"_s);
    const QDateTime moment = QDateTime::fromString(time, Qt::ISODate);
    content.time = moment.isValid() ? moment.time().toString(u"H:mm"_s) : time;
    content.date = moment.date();
    content.batteryLevel = number(u"batteryLevel"_s, 100);
    const QString state = overrides.value(u"batteryState"_s);
    content.battery = state == u"charging"  ? Battery::charging
                      : state == u"charged" ? Battery::charged
                                            : Battery::discharging;
    content.cellular = radioOf(overrides.value(u"cellularMode"_s));
    content.cellularBars = content.cellular == Radio::active ? number(u"cellularBars"_s, 4) : 0;
    content.wireless = radioOf(overrides.value(u"wifiMode"_s));
    content.wirelessBars = content.wireless == Radio::active ? number(u"wifiBars"_s, 3) : 0;
    content.dataNetwork = networkOf(overrides.value(u"dataNetwork"_s));
    content.operatorName = overrides.value(u"operatorName"_s);
    return content;
}

} // namespace corvanta::lab
