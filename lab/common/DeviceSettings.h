// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

namespace corvanta::lab {

/// What a person can set on a device: `settings.json` in its folder. What the file lacks is as on a new device.
struct DeviceSettings {
    /// "light" or "dark".
    QString appearance = QStringLiteral("light");
    /// One of `contentSizes()`.
    QString contentSize = QStringLiteral("large");
    bool increaseContrast = false;
    /// Overrides of the status bar by the name of their option without dashes, as given; gone at the next boot.
    QMap<QString, QString> statusBar;
    /// "granted" or "denied" by bundle identifier and service ("com.apple.mobilesafari/location").
    QMap<QString, QString> privacy;

    [[nodiscard]] static DeviceSettings fromJson(const QJsonObject& object);
    [[nodiscard]] QJsonObject toJson() const;

    /// Whether the device's browser may tell pages where it is.
    [[nodiscard]] bool allowsLocation() const;

    bool operator==(const DeviceSettings&) const = default;
};

/// The text sizes of the system, smallest first.
[[nodiscard]] const QStringList& contentSizes();

/// The bundle identifier of the device's browser, the only application that it has.
inline constexpr char browserBundle[] = "com.apple.mobilesafari";

} // namespace corvanta::lab
