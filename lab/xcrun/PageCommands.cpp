// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "DeviceCatalogue.h"
#include "Session.h"

#include <QDir>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

/// Changes the settings of a running device and tells it.
void change(Session& session, const Device& device, const std::function<void(DeviceSettings&)>& step) {
    session.set.changeSettings(device, step);
    session.bus().call(device.udid, "ReloadSettings", requestLimit);
}

const QStringList& privacyServices() {
    static const QStringList services{u"all"_s,           u"calendar"_s,        u"contacts-limited"_s, u"contacts"_s,
                                      u"location"_s,      u"location-always"_s, u"photos-add"_s,       u"photos"_s,
                                      u"media-library"_s, u"microphone"_s,      u"motion"_s,           u"reminders"_s,
                                      u"siri"_s,          u"camera"_s};
    return services;
}

QString nextSize(const QString& size, int step) {
    const qsizetype last = contentSizes().size() - 1;
    return contentSizes()[std::clamp<qsizetype>(contentSizes().indexOf(size) + step, 0, last)];
}

void showInterface(const DeviceSettings& settings, const QString& option) {
    print((option == u"appearance"     ? settings.appearance
           : option == u"content_size" ? settings.contentSize
           : settings.increaseContrast ? u"enabled"_s
                                       : u"disabled"_s) +
          u'\n');
}

/// What programs on the device find in their environment.
QString environmentValue(const Session& session, const Device& device, const QString& name) {
    const DeviceType* const type = findDeviceType(device.deviceType);
    const Runtime* const runtime = findRuntime(device.runtime);
    const QString data = session.set.folderOf(device) + u"/data"_s;
    QMap<QString, QString> values{{u"SIMULATOR_UDID"_s, device.udid},
                                  {u"SIMULATOR_DEVICE_NAME"_s, device.name},
                                  {u"SIMULATOR_SHARED_RESOURCES_DIRECTORY"_s, data},
                                  {u"SIMULATOR_HOST_HOME"_s, QDir::homePath()},
                                  {u"HOME"_s, data},
                                  {u"CFFIXED_USER_HOME"_s, data},
                                  {u"TMPDIR"_s, data + u"/tmp"_s},
                                  {u"SIMULATOR_LOG_ROOT"_s, session.set.folderOf(device)}};
    if (type != nullptr) {
        values[u"SIMULATOR_MODEL_IDENTIFIER"_s] = type->modelIdentifier;
        values[u"SIMULATOR_PRODUCT_CLASS"_s] = type->productFamily;
        values[u"SIMULATOR_MAINSCREEN_SCALE"_s] = QString::number(type->scale, 'f', 6);
        values[u"SIMULATOR_MAINSCREEN_WIDTH"_s] = QString::number(qRound(type->screen.width() * type->scale));
        values[u"SIMULATOR_MAINSCREEN_HEIGHT"_s] = QString::number(qRound(type->screen.height() * type->scale));
    }
    if (runtime != nullptr) {
        values[u"SIMULATOR_RUNTIME_VERSION"_s] = runtime->version.toString();
        values[u"SIMULATOR_RUNTIME_BUILD_VERSION"_s] = runtime->build;
    }
    return values.value(name);
}

} // namespace

int openURLCommand(const QStringList& arguments) {
    if (arguments.size() != 2) {
        throw usage(u"openurl"_s);
    }
    Session session;
    const Device device = session.runningDevice(arguments[0]);
    try {
        session.bus().openURL(device.udid, arguments[1], requestLimit);
    } catch (const DeviceBusError& error) {
        if (error.name() == u"dev.corvanta.Lab.Error.NoApplication") {
            throw failure(statusDomain, applicationNotFound,
                          u"The operation couldn’t be completed. (OSStatus error -10814.)"_s);
        }
        throw failure(posixDomain, timedOut, u"Simulator device failed to open URL.\nOperation timed out"_s);
    }
    return 0;
}

int interfaceCommand(const QStringList& arguments) {
    static const QStringList options{u"appearance"_s, u"content_size"_s, u"increase_contrast"_s};
    if (arguments.size() < 2 || arguments.size() > 3 || !options.contains(arguments[1])) {
        throw usage(u"ui"_s);
    }
    const QString& option = arguments[1];
    const QString value = arguments.value(2);
    if (arguments.size() == 3) {
        const QStringList allowed = option == u"appearance" ? QStringList{u"light"_s, u"dark"_s}
                                    : option == u"content_size"
                                        ? contentSizes() + QStringList{u"increment"_s, u"decrement"_s}
                                        : QStringList{u"enabled"_s, u"disabled"_s};
        if (!allowed.contains(value)) {
            throw usage(u"ui"_s, u"Invalid %1: %2"_s.arg(option, value));
        }
    }
    Session session;
    const Device device = session.runningDevice(arguments[0]);
    if (arguments.size() == 2) {
        showInterface(session.set.settings(device), option);
        return 0;
    }
    change(session, device, [&](DeviceSettings& settings) {
        if (option == u"appearance") {
            settings.appearance = value;
        } else if (option == u"increase_contrast") {
            settings.increaseContrast = value == u"enabled";
        } else {
            settings.contentSize = value == u"increment"   ? nextSize(settings.contentSize, 1)
                                   : value == u"decrement" ? nextSize(settings.contentSize, -1)
                                                           : value;
        }
    });
    return 0;
}

int privacyCommand(const QStringList& arguments) {
    static const QStringList actions{u"grant"_s, u"revoke"_s, u"reset"_s};
    if (arguments.size() < 3 || arguments.size() > 4 || !actions.contains(arguments[1])) {
        throw usage(u"privacy"_s);
    }
    const QString& action = arguments[1];
    const QString& service = arguments[2];
    const QString bundle = arguments.value(3);
    if (!privacyServices().contains(service)) {
        throw usage(u"privacy"_s, u"Invalid service: "_s + service);
    }
    if (bundle.isEmpty() && action != u"reset") {
        throw usage(u"privacy"_s, u"A bundle identifier is needed to %1 access."_s.arg(action));
    }
    Session session;
    const Device device = session.runningDevice(arguments[0]);
    change(session, device, [&](DeviceSettings& settings) {
        if (action == u"reset") {
            settings.privacy.removeIf([&](const std::pair<const QString&, QString&>& entry) {
                const bool isBundle = bundle.isEmpty() || entry.first.startsWith(bundle + u'/');
                return isBundle && (service == u"all" || entry.first.endsWith(u'/' + service));
            });
            if ((service == u"all" || service.startsWith(u"location")) &&
                (bundle.isEmpty() || bundle == QLatin1StringView(browserBundle))) {
                settings.setLocationAccess(LocationAccess::ask);
            }
            return;
        }
        if (service == u"all") {
            settings.privacy.removeIf([&](const std::pair<const QString&, QString&>& entry) {
                return entry.first.startsWith(bundle + u'/');
            });
        }
        if (service == u"location") {
            // Who may always know it, and may not while in use, would be a riddle.
            settings.privacy.remove(bundle + u"/location-always"_s);
        }
        settings.privacy[bundle + u'/' + service] = action == u"grant" ? u"granted"_s : u"denied"_s;
    });
    return 0;
}

int environmentCommand(const QStringList& arguments) {
    if (arguments.size() != 2) {
        throw usage(u"getenv"_s);
    }
    Session session;
    const Device device = session.device(arguments[0]);
    if (!session.isRunning(device)) {
        // Clients tell a device that is off by the second line.
        throw failure(simulatorDomain, invalidState,
                      u"Unable to lookup in current state: Shutdown\nCurrent state: Shutdown"_s);
    }
    if (const QString value = environmentValue(session, device, arguments[1]); !value.isEmpty()) {
        print(value + u'\n');
    }
    return 0;
}

} // namespace corvanta::lab
