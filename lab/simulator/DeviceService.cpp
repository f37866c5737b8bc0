// SPDX-License-Identifier: MIT
#include "DeviceService.h"

#include "DeviceBus.h"

#include <QUrl>

#include <gio/gio.h>

#include <algorithm>
#include <utility>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

constexpr char deviceIntrospection[] = R"xml(<node>
  <interface name="dev.corvanta.Lab.Device1">
    <property name="UDID" type="s" access="read"/>
    <property name="Name" type="s" access="read"/>
    <property name="RuntimeName" type="s" access="read"/>
    <property name="State" type="s" access="read"/>
    <property name="InspectorAddress" type="s" access="read"/>
    <method name="OpenURL"><arg name="url" type="s" direction="in"/></method>
    <method name="SetLocation">
      <arg name="latitude" type="d" direction="in"/>
      <arg name="longitude" type="d" direction="in"/>
    </method>
    <method name="ClearLocation"/>
    <method name="FollowRoute">
      <arg name="waypoints" type="a(dd)" direction="in"/>
      <arg name="speed" type="d" direction="in"/>
      <arg name="interval" type="d" direction="in"/>
      <arg name="repeats" type="b" direction="in"/>
    </method>
    <method name="ReloadSettings"/>
    <method name="Screenshot">
      <arg name="format" type="s" direction="in"/>
      <arg name="mask" type="s" direction="in"/>
      <arg name="scale" type="d" direction="in"/>
      <arg name="picture" type="ay" direction="out"/>
    </method>
    <method name="SetOrientation"><arg name="orientation" type="s" direction="in"/></method>
    <method name="ShowWindow"/>
    <method name="ShowWindowInBackground"/>
    <method name="Shutdown"/>
  </interface>
</node>)xml";

constexpr guint doNotQueue = 4;
constexpr guint primaryOwner = 1;

bool canOpen(const QString& url) {
    static const QStringList schemes{u"http"_s, u"https"_s, u"file"_s, u"data"_s, u"about"_s};
    return schemes.contains(QUrl(url).scheme().toLower()) || url.startsWith(u"data:"_s);
}

bool takeName(GDBusConnection* connection, const QByteArray& name) {
    GVariant* reply =
        g_dbus_connection_call_sync(connection, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                    "RequestName", g_variant_new("(su)", name.constData(), doNotQueue),
                                    G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr);
    guint result = 0;
    if (reply != nullptr) {
        g_variant_get(reply, "(u)", &result);
        g_variant_unref(reply);
    }
    return result == primaryOwner;
}

LocationRoute routeOf(GVariant* arguments) {
    constexpr std::chrono::milliseconds shortest{20};
    LocationRoute route;
    GVariantIter* places = nullptr;
    double interval = 1;
    gboolean repeats = FALSE;
    g_variant_get(arguments, "(a(dd)ddb)", &places, &route.speed, &interval, &repeats);
    Coordinate place;
    while (g_variant_iter_loop(places, "(dd)", &place.latitude, &place.longitude) != FALSE) {
        route.waypoints.push_back(place);
    }
    g_variant_iter_free(places);
    const auto wanted = std::chrono::duration<double>(std::clamp(interval, 0.0, 3600.0));
    route.interval = std::max(shortest, std::chrono::duration_cast<std::chrono::milliseconds>(wanted));
    route.repeats = repeats != FALSE;
    return route;
}

} // namespace

DeviceService::DeviceService(Identity identity, DeviceActions actions)
    : m_identity(std::move(identity))
    , m_actions(std::move(actions))
    , m_state(u"Booting"_s) {}

DeviceService::~DeviceService() {
    setWindowShown(false);
    if (m_object != 0) {
        g_dbus_connection_unregister_object(m_connection, m_object);
    }
    g_clear_object(&m_connection);
}

bool DeviceService::start() {
    m_connection = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
    if (m_connection == nullptr) {
        return false;
    }
    static GDBusNodeInfo* node = g_dbus_node_info_new_for_xml(deviceIntrospection, nullptr);
    static const GDBusInterfaceVTable functions{
        handleCall,
        reinterpret_cast<GDBusInterfaceGetPropertyFunc>(reinterpret_cast<void (*)()>(property)),
        nullptr,
        {}};
    m_object = g_dbus_connection_register_object(m_connection, deviceObjectPath, node->interfaces[0], &functions, this,
                                                 nullptr, nullptr);
    return m_object != 0 && takeName(m_connection, deviceBusName(m_identity.udid).toUtf8());
}

void DeviceService::setBooted() {
    m_state = u"Booted"_s;
    tellChange("State", m_state);
}

void DeviceService::setDeviceName(const QString& name) {
    if (name != m_identity.name) {
        m_identity.name = name;
        tellChange("Name", name);
    }
}

void DeviceService::tellChange(const char* property, const QString& value) const {
    GVariantBuilder changed;
    g_variant_builder_init(&changed, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&changed, "{sv}", property, g_variant_new_string(value.toUtf8().constData()));
    g_dbus_connection_emit_signal(m_connection, nullptr, deviceObjectPath, "org.freedesktop.DBus.Properties",
                                  "PropertiesChanged", g_variant_new("(sa{sv}as)", deviceInterface, &changed, nullptr),
                                  nullptr);
}

void DeviceService::setWindowShown(bool isShown) {
    if (isShown && m_windowName == 0) {
        m_windowName = g_bus_own_name_on_connection(m_connection, "com.apple.iphonesimulator",
                                                    G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr, nullptr, nullptr);
    } else if (!isShown && m_windowName != 0) {
        g_bus_unown_name(std::exchange(m_windowName, 0));
    }
}

GVariant* DeviceService::property(GDBusConnection*, const char*, const char*, const char*, const char* name, void*,
                                  void* service) {
    const auto* self = static_cast<DeviceService*>(service);
    const QString wanted = QString::fromUtf8(name);
    const QString value = wanted == u"UDID"          ? self->m_identity.udid
                          : wanted == u"Name"        ? self->m_identity.name
                          : wanted == u"RuntimeName" ? self->m_identity.runtimeName
                          : wanted == u"State"       ? self->m_state
                                                     : self->m_identity.inspectorAddress;
    return g_variant_new_string(value.toUtf8().constData());
}

void DeviceService::handleCall(GDBusConnection*, const char*, const char*, const char*, const char* method,
                               GVariant* arguments, GDBusMethodInvocation* call, void* service) {
    static_cast<DeviceService*>(service)->answer(QString::fromUtf8(method), arguments, call);
}

void DeviceService::answerScreenshot(GVariant* arguments, GDBusMethodInvocation* call) const {
    const char* format = nullptr;
    const char* mask = nullptr;
    double scale = 0;
    g_variant_get(arguments, "(&s&sd)", &format, &mask, &scale);
    const QByteArray picture = m_actions.screenshot(QString::fromUtf8(format), QString::fromUtf8(mask), scale);
    if (picture.isEmpty()) {
        g_dbus_method_invocation_return_dbus_error(call, "dev.corvanta.Lab.Error.NoPicture",
                                                   "The device makes no such picture.");
        return;
    }
    GVariant* bytes =
        g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, picture.constData(), static_cast<gsize>(picture.size()), 1);
    g_dbus_method_invocation_return_value(call, g_variant_new_tuple(&bytes, 1));
}

void DeviceService::answer(const QString& method, GVariant* arguments, GDBusMethodInvocation* call) {
    if (method == u"ShowWindow" || method == u"ShowWindowInBackground") {
        m_actions.showWindow(method == u"ShowWindow" ? WindowFocus::take : WindowFocus::leave,
                             [call] { g_dbus_method_invocation_return_value(call, nullptr); });
        return;
    }
    if (method == u"Shutdown") {
        g_dbus_method_invocation_return_value(call, nullptr);
        m_actions.shutdown();
        return;
    }
    if (method == u"OpenURL") {
        const char* url = nullptr;
        g_variant_get(arguments, "(&s)", &url);
        if (!canOpen(QString::fromUtf8(url))) {
            g_dbus_method_invocation_return_dbus_error(call, "dev.corvanta.Lab.Error.NoApplication",
                                                       "No application on the device opens this address.");
            return;
        }
        m_actions.openURL(QString::fromUtf8(url));
    } else if (method == u"SetOrientation") {
        const char* orientation = nullptr;
        g_variant_get(arguments, "(&s)", &orientation);
        if (!m_actions.setOrientation(QString::fromUtf8(orientation))) {
            g_dbus_method_invocation_return_dbus_error(call, "org.freedesktop.DBus.Error.InvalidArgs",
                                                       "There is no such orientation.");
            return;
        }
    } else if (method == u"SetLocation") {
        double latitude = 0;
        double longitude = 0;
        g_variant_get(arguments, "(dd)", &latitude, &longitude);
        m_actions.setLocation(latitude, longitude);
    } else if (method == u"FollowRoute") {
        const LocationRoute route = routeOf(arguments);
        if (route.waypoints.size() < 2 || !(route.speed > 0)) {
            g_dbus_method_invocation_return_dbus_error(call, "dev.corvanta.Lab.Error.BadRoute",
                                                       "A route has two places at least and a speed.");
            return;
        }
        m_actions.followRoute(route);
    } else if (method == u"ReloadSettings") {
        m_actions.reloadSettings();
    } else if (method == u"Screenshot") {
        answerScreenshot(arguments, call);
        return;
    } else {
        m_actions.clearLocation();
    }
    g_dbus_method_invocation_return_value(call, nullptr);
}

} // namespace corvanta::lab
