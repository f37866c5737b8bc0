// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonObject>
#include <QMap>
#include <QString>
#include <QStringList>

namespace corvanta::lab {

/// Whether the device's browser may tell pages where it is.
enum class LocationAccess {
    granted,
    /// Until the device is shut down.
    grantedOnce,
    denied,
    /// The device asks on its screen when a page wants to know.
    ask,
};

/// What a person can set on a device: `settings.json` in its folder. What the file lacks is as on a new device.
struct DeviceSettings {
    /// "light" or "dark".
    QString appearance = QStringLiteral("light");
    /// One of `contentSizes()`.
    QString contentSize = QStringLiteral("large");
    bool increaseContrast = false;
    bool reduceMotion = false;
    /// Overrides of the status bar by the name of their option without dashes, as given; gone at the next boot.
    QMap<QString, QString> statusBar;
    /// "granted", "once", "denied" or "ask" by bundle identifier and service ("com.apple.mobilesafari/location").
    QMap<QString, QString> privacy;

    [[nodiscard]] static DeviceSettings fromJson(const QJsonObject& object);
    [[nodiscard]] QJsonObject toJson() const;

    /// Granted unless something else was set.
    [[nodiscard]] LocationAccess locationAccess() const;

    /// Replaces whatever was set about it.
    void setLocationAccess(LocationAccess access);

    /// Forgets what counts until the device is shut down.
    void endSession();

    bool operator==(const DeviceSettings&) const = default;
};

/// The text sizes of the system, smallest first.
[[nodiscard]] const QStringList& contentSizes();

/// The bundle identifier of the device's browser, the only application that it has.
inline constexpr char browserBundle[] = "com.apple.mobilesafari";

} // namespace corvanta::lab
