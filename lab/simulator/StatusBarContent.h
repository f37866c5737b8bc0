// SPDX-License-Identifier: MIT
#pragma once

#include <QDate>
#include <QMap>
#include <QString>

namespace corvanta::lab {

/// What the status bar shows.
struct StatusBarContent {
    enum class Radio { none, searching, failed, active };
    enum class Battery { discharging, charging, charged };

    /// Empty for the time of day.
    QString time;
    /// For the models that show one; invalid for today.
    QDate date;
    /// 0 to 100.
    int batteryLevel = 100;
    Battery battery = Battery::discharging;
    Radio cellular = Radio::active;
    /// 0 to 4.
    int cellularBars = 4;
    Radio wireless = Radio::active;
    /// 0 to 3.
    int wirelessBars = 3;
    /// "wifi" for the sign of the wireless network, "hide" for nothing, else the network's name as it is drawn.
    QString dataNetwork = QStringLiteral("wifi");
    /// For the models that show it.
    QString operatorName;

    /// What overrides of the status bar, by the names of their options, make of it.
    [[nodiscard]] static StatusBarContent of(const QMap<QString, QString>& overrides);

    bool operator==(const StatusBarContent&) const = default;
};

} // namespace corvanta::lab
