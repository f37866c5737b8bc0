// SPDX-License-Identifier: MIT
#pragma once

#include "LocationRoute.h"

#include <QByteArray>
#include <QString>

#include <functional>

typedef struct _GDBusConnection GDBusConnection;
typedef struct _GDBusMethodInvocation GDBusMethodInvocation;
typedef struct _GVariant GVariant;

namespace corvanta::lab {

/// Whether a window that is shown comes forward.
enum class WindowFocus {
    take,
    /// The window that has the focus keeps it, and a window that is there already stays where it is.
    leave,
};

/// What a device offers on the session bus. Called on the main thread.
struct DeviceActions {
    std::function<void(const QString&)> openURL;
    std::function<void(double, double)> setLocation;
    std::function<void()> clearLocation;
    std::function<void(const LocationRoute&)> followRoute;
    /// Takes the device's name and settings from its folder.
    std::function<void()> reloadSettings;
    /// A picture of the screen as the bytes of a file, by format, mask and pixels per CSS pixel; empty when none can be
    /// made so.
    std::function<QByteArray(const QString&, const QString&, double)> screenshot;
    /// Turns the device: "portrait", "landscapeLeft" or "landscapeRight"; false for another word.
    std::function<bool(const QString&)> setOrientation;
    /// Calls back once the window is mapped.
    std::function<void(WindowFocus, std::function<void()>)> showWindow;
    std::function<void()> shutdown;
};

/// The device's name and object on the session bus. Of the main thread.
class DeviceService {
public:
    struct Identity {
        QString udid;
        QString name;
        QString runtimeName;
        QString inspectorAddress;
    };

    DeviceService(Identity identity, DeviceActions actions);
    DeviceService(const DeviceService&) = delete;
    DeviceService& operator=(const DeviceService&) = delete;
    ~DeviceService();

    /// Exports the object and takes the name. False when there is no bus or another process has the name.
    [[nodiscard]] bool start();

    /// Changes the state from "Booting" to "Booted".
    void setBooted();

    /// Changes the name that the device is known by.
    void setDeviceName(const QString& name);

    /// Holds or leaves the name that exists while any device's window is shown.
    void setWindowShown(bool isShown);

private:
    static void handleCall(GDBusConnection* connection, const char* sender, const char* path, const char* interface,
                           const char* method, GVariant* arguments, GDBusMethodInvocation* call, void* service);
    static GVariant* property(GDBusConnection* connection, const char* sender, const char* path, const char* interface,
                              const char* name, void* error, void* service);
    void tellChange(const char* property, const QString& value) const;
    void answerScreenshot(GVariant* arguments, GDBusMethodInvocation* call) const;
    void answer(const QString& method, GVariant* arguments, GDBusMethodInvocation* call);

    Identity m_identity;
    DeviceActions m_actions;
    QString m_state;
    GDBusConnection* m_connection = nullptr;
    unsigned m_object = 0;
    unsigned m_windowName = 0;
};

} // namespace corvanta::lab
