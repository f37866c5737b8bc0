// SPDX-License-Identifier: MIT
#pragma once

#include "LocationRoute.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>

namespace corvanta::lab {

/// The object that each device process exports.
inline constexpr char deviceObjectPath[] = "/dev/corvanta/Lab/Device";
inline constexpr char deviceInterface[] = "dev.corvanta.Lab.Device1";

/// The bus name of the device with that identifier.
[[nodiscard]] QString deviceBusName(const QString& udid);

/// Says why the session bus or a device process did not do what was asked.
class DeviceBusError : public std::runtime_error {
public:
    DeviceBusError(QString name, const QString& message);

    /// The error's name on the bus; empty when no program answered with one.
    [[nodiscard]] const QString& name() const { return m_name; }

private:
    QString m_name;
};

/// The device processes of this session, as seen on the session bus. For the command-line tools: its calls block.
class DeviceBus {
public:
    /// Connects to the session bus. Throws DeviceBusError.
    DeviceBus();
    DeviceBus(const DeviceBus&) = delete;
    DeviceBus& operator=(const DeviceBus&) = delete;
    ~DeviceBus();

    /// The state word of the device with that identifier: "Shutdown", "Booting" or "Booted".
    ///
    /// A process that owns its name and does not answer in a second counts as booting. Throws DeviceBusError when the
    /// bus itself does not answer.
    [[nodiscard]] QString state(const QString& udid) const;

    /// Whether some program has that name. Throws DeviceBusError.
    [[nodiscard]] bool isNameOwned(const QString& busName) const;

    /// Identifiers of the devices whose names are owned, in the bus's order. Throws DeviceBusError.
    [[nodiscard]] QStringList runningDevices() const;

    /// Calls a method without arguments and waits for the answer. Throws DeviceBusError.
    void call(const QString& udid, const char* method, std::chrono::milliseconds limit);

    /// Opens a page in the device. Throws DeviceBusError.
    void openURL(const QString& udid, const QString& url, std::chrono::milliseconds limit);

    /// Sets the device's position in degrees. Throws DeviceBusError.
    void setLocation(const QString& udid, double latitude, double longitude, std::chrono::milliseconds limit);

    /// Lets the device travel along the route by itself, until another location is set. Throws DeviceBusError.
    void followRoute(const QString& udid, const LocationRoute& route, std::chrono::milliseconds limit);

    /// What a picture of a device's screen is to be.
    struct ScreenshotOptions {
        /// "png", "jpeg", "tiff", "bmp" or "gif".
        QString format = QStringLiteral("png");
        /// What becomes of the screen's corners: "ignored", "alpha" or "black".
        QString mask = QStringLiteral("ignored");
        /// Pixels of the picture per CSS pixel; 0 for as many as the device has.
        double scale = 0;
    };

    /// A picture of the device's screen, as the bytes of a file. Throws DeviceBusError.
    [[nodiscard]] QByteArray screenshot(const QString& udid, const ScreenshotOptions& options,
                                        std::chrono::milliseconds limit);

    /// Waits until the name is owned (or, with `owned` false, is not). `isGivenUp` is asked before each wait and after
    /// every event of the main loop. Returns whether it came so in time. Throws DeviceBusError.
    [[nodiscard]] bool waitForName(const QString& busName, bool owned, std::chrono::milliseconds limit,
                                   const std::function<bool()>& isGivenUp = {});

    /// Waits until the device's state is "Booted", for two minutes at most; false when that passed or its process went
    /// away. `changed` is called with each state seen, the first one included. Throws DeviceBusError.
    [[nodiscard]] bool waitUntilBooted(const QString& udid, const std::function<void(const QString&)>& changed);

private:
    struct Private;
    std::unique_ptr<Private> m_private;
};

} // namespace corvanta::lab
