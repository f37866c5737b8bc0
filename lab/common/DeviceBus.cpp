// SPDX-License-Identifier: MIT
#include "DeviceBus.h"

#include <gio/gio.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace corvanta::lab {

namespace {

constexpr char namePrefix[] = "dev.corvanta.Lab.Device.U";
constexpr std::chrono::milliseconds stateLimit = 1s;

struct Freer {
    void operator()(GVariant* value) const { g_variant_unref(value); }

    void operator()(GError* error) const { g_error_free(error); }

    void operator()(char* text) const { g_free(text); }
};

using VariantPointer = std::unique_ptr<GVariant, Freer>;

DeviceBusError takeError(GError* error) {
    const std::unique_ptr<GError, Freer> owner(error);
    const std::unique_ptr<char, Freer> name(g_dbus_error_get_remote_error(error));
    g_dbus_error_strip_remote_error(error);
    return {QString::fromUtf8(name.get()), QString::fromUtf8(error->message)};
}

gboolean wakeLoop(gpointer flag) {
    *static_cast<bool*>(flag) = true;
    return G_SOURCE_REMOVE;
}

void ignoreSignal(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*, gpointer) {
    // The subscription is there to wake the loop; what changed is read again.
}

} // namespace

QString deviceBusName(const QString& udid) {
    return QString::fromLatin1(namePrefix) + udid.toUpper().replace(u'-', u'_');
}

DeviceBusError::DeviceBusError(QString name, const QString& message)
    : std::runtime_error(message.toStdString())
    , m_name(std::move(name)) {}

struct DeviceBus::Private {
    GDBusConnection* connection = nullptr;

    VariantPointer busCall(const char* method, GVariant* arguments, std::chrono::milliseconds limit) const {
        return call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method, arguments, limit);
    }

    VariantPointer call(const QByteArray& name, const char* path, const char* interface, const char* method,
                        GVariant* arguments, std::chrono::milliseconds limit) const {
        GError* error = nullptr;
        VariantPointer reply(g_dbus_connection_call_sync(connection, name.constData(), path, interface, method,
                                                         arguments, nullptr, G_DBUS_CALL_FLAGS_NO_AUTO_START,
                                                         static_cast<int>(limit.count()), nullptr, &error));
        if (!reply) {
            throw takeError(error);
        }
        return reply;
    }

    VariantPointer callDevice(const QString& udid, const char* method, GVariant* arguments,
                              std::chrono::milliseconds limit) const {
        return call(deviceBusName(udid).toUtf8(), deviceObjectPath, deviceInterface, method, arguments, limit);
    }
};

DeviceBus::DeviceBus()
    : m_private(std::make_unique<Private>()) {
    GError* error = nullptr;
    m_private->connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, &error);
    if (m_private->connection == nullptr) {
        throw takeError(error);
    }
    g_dbus_connection_set_exit_on_close(m_private->connection, FALSE);
}

DeviceBus::~DeviceBus() {
    g_object_unref(m_private->connection);
}

bool DeviceBus::isNameOwned(const QString& busName) const {
    const VariantPointer reply =
        m_private->busCall("NameHasOwner", g_variant_new("(s)", busName.toUtf8().constData()), stateLimit);
    gboolean owned = FALSE;
    g_variant_get(reply.get(), "(b)", &owned);
    return owned != FALSE;
}

QString DeviceBus::state(const QString& udid) const {
    if (!isNameOwned(deviceBusName(udid))) {
        return u"Shutdown"_s;
    }
    try {
        const VariantPointer reply =
            m_private->call(deviceBusName(udid).toUtf8(), deviceObjectPath, "org.freedesktop.DBus.Properties", "Get",
                            g_variant_new("(ss)", deviceInterface, "State"), stateLimit);
        GVariant* value = nullptr;
        g_variant_get(reply.get(), "(v)", &value);
        const VariantPointer owner(value);
        return g_variant_is_of_type(value, G_VARIANT_TYPE_STRING)
                   ? QString::fromUtf8(g_variant_get_string(value, nullptr))
                   : u"Booted"_s;
    } catch (const DeviceBusError&) {
        // Who does not answer is not ready yet, or no longer.
        return isNameOwned(deviceBusName(udid)) ? u"Booting"_s : u"Shutdown"_s;
    }
}

QStringList DeviceBus::runningDevices() const {
    const VariantPointer reply = m_private->busCall("ListNames", nullptr, stateLimit);
    const VariantPointer names(g_variant_get_child_value(reply.get(), 0));
    QStringList result;
    for (gsize index = 0; index < g_variant_n_children(names.get()); ++index) {
        const VariantPointer entry(g_variant_get_child_value(names.get(), index));
        const QString name = QString::fromUtf8(g_variant_get_string(entry.get(), nullptr));
        if (name.startsWith(QLatin1StringView(namePrefix))) {
            result.append(name.sliced(qsizetype(sizeof namePrefix) - 1).replace(u'_', u'-'));
        }
    }
    return result;
}

void DeviceBus::call(const QString& udid, const char* method, std::chrono::milliseconds limit) {
    m_private->callDevice(udid, method, nullptr, limit);
}

void DeviceBus::openURL(const QString& udid, const QString& url, std::chrono::milliseconds limit) {
    m_private->callDevice(udid, "OpenURL", g_variant_new("(s)", url.toUtf8().constData()), limit);
}

void DeviceBus::setLocation(const QString& udid, double latitude, double longitude, std::chrono::milliseconds limit) {
    m_private->callDevice(udid, "SetLocation", g_variant_new("(dd)", latitude, longitude), limit);
}

void DeviceBus::followRoute(const QString& udid, const LocationRoute& route, std::chrono::milliseconds limit) {
    GVariantBuilder waypoints;
    g_variant_builder_init(&waypoints, G_VARIANT_TYPE("a(dd)"));
    for (const Coordinate& place : route.waypoints) {
        g_variant_builder_add(&waypoints, "(dd)", place.latitude, place.longitude);
    }
    m_private->callDevice(udid, "FollowRoute",
                          g_variant_new("(a(dd)ddb)", &waypoints, route.speed,
                                        std::chrono::duration<double>(route.interval).count(),
                                        route.repeats ? TRUE : FALSE),
                          limit);
}

QByteArray DeviceBus::screenshot(const QString& udid, const ScreenshotOptions& options,
                                 std::chrono::milliseconds limit) {
    const VariantPointer reply = m_private->callDevice(
        udid, "Screenshot",
        g_variant_new("(ssd)", options.format.toUtf8().constData(), options.mask.toUtf8().constData(), options.scale),
        limit);
    const VariantPointer bytes(g_variant_get_child_value(reply.get(), 0));
    gsize size = 0;
    const void* data = g_variant_get_fixed_array(bytes.get(), &size, 1);
    return {static_cast<const char*>(data), static_cast<qsizetype>(size)};
}

bool DeviceBus::waitForName(const QString& busName, bool owned, std::chrono::milliseconds limit,
                            const std::function<bool()>& isGivenUp) {
    const guint subscription =
        g_dbus_connection_signal_subscribe(m_private->connection, "org.freedesktop.DBus", "org.freedesktop.DBus",
                                           "NameOwnerChanged", "/org/freedesktop/DBus", busName.toUtf8().constData(),
                                           G_DBUS_SIGNAL_FLAGS_NONE, ignoreSignal, nullptr, nullptr);
    bool isOver = false;
    const guint timeout = g_timeout_add(static_cast<guint>(limit.count()), wakeLoop, &isOver);
    bool reached = isNameOwned(busName) == owned;
    while (!reached && !isOver && !(isGivenUp && isGivenUp())) {
        g_main_context_iteration(nullptr, TRUE);
        reached = isNameOwned(busName) == owned;
    }
    if (!isOver) {
        g_source_remove(timeout);
    }
    g_dbus_connection_signal_unsubscribe(m_private->connection, subscription);
    return reached;
}

bool DeviceBus::waitUntilBooted(const QString& udid, const std::function<void(const QString&)>& changed) {
    const QByteArray name = deviceBusName(udid).toUtf8();
    const guint owner = g_dbus_connection_signal_subscribe(
        m_private->connection, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged",
        "/org/freedesktop/DBus", name.constData(), G_DBUS_SIGNAL_FLAGS_NONE, ignoreSignal, nullptr, nullptr);
    const guint properties = g_dbus_connection_signal_subscribe(
        m_private->connection, name.constData(), "org.freedesktop.DBus.Properties", "PropertiesChanged",
        deviceObjectPath, deviceInterface, G_DBUS_SIGNAL_FLAGS_NONE, ignoreSignal, nullptr, nullptr);
    // A device that was too busy to answer is asked again, and one that never gets ready is not waited for for ever.
    constexpr guint askAgain = 500;
    constexpr std::chrono::seconds bootLimit{120};
    const guint tick = g_timeout_add(askAgain, [](gpointer) -> gboolean { return G_SOURCE_CONTINUE; }, nullptr);
    const auto end = std::chrono::steady_clock::now() + bootLimit;
    QString last;
    while (std::chrono::steady_clock::now() < end) {
        const QString now = state(udid);
        if (now != last) {
            last = now;
            changed(now);
        }
        if (now == u"Booted" || now == u"Shutdown") {
            break;
        }
        g_main_context_iteration(nullptr, TRUE);
    }
    g_source_remove(tick);
    g_dbus_connection_signal_unsubscribe(m_private->connection, properties);
    g_dbus_connection_signal_unsubscribe(m_private->connection, owner);
    return last == u"Booted";
}

} // namespace corvanta::lab
