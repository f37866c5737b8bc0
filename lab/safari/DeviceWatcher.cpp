// SPDX-License-Identifier: MIT
#include "DeviceWatcher.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace corvanta::lab {

namespace {

constexpr const char* deviceNamePrefix = "dev.corvanta.Lab.Device";
constexpr const char* devicePath = "/dev/corvanta/Lab/Device";
constexpr const char* deviceInterface = "dev.corvanta.Lab.Device1";
constexpr int deviceAnswerLimit = 5000;
constexpr guint askAgainInterval = 500;

bool isDeviceName(const char* name) {
    return g_str_has_prefix(name, deviceNamePrefix) && name[std::strlen(deviceNamePrefix)] == '.';
}

std::string property(GVariant* properties, const char* name) {
    const char* text = nullptr;
    g_variant_lookup(properties, name, "&s", &text);
    return text ? text : "";
}

} // namespace

struct DeviceWatcher::Entry {
    std::optional<LabDevice> device;
    SourceGuard retry;
};

struct DeviceWatcher::Request {
    DeviceWatcher* watcher;
    std::string busName;
};

DeviceWatcher::DeviceWatcher(GDBusConnection* bus, DevicesHandler onDevices)
    : m_bus(retain(bus))
    , m_onDevices(std::move(onDevices))
    , m_cancellable(g_cancellable_new()) {
    m_ownerSubscription = g_dbus_connection_signal_subscribe(
        bus, "org.freedesktop.DBus", "org.freedesktop.DBus", "NameOwnerChanged", "/org/freedesktop/DBus",
        deviceNamePrefix, G_DBUS_SIGNAL_FLAGS_MATCH_ARG0_NAMESPACE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters, gpointer self) {
            const char* name = nullptr;
            const char* newOwner = nullptr;
            g_variant_get(parameters, "(&s&s&s)", &name, nullptr, &newOwner);
            if (!isDeviceName(name))
                return;
            auto* const watcher = static_cast<DeviceWatcher*>(self);
            watcher->vanished(name);
            if (*newOwner != '\0')
                watcher->appeared(name);
        },
        this, nullptr);
    // Signals carry the sender's unique name only, so whoever changes makes every device be read again. There are few.
    m_propertiesSubscription = g_dbus_connection_signal_subscribe(
        bus, nullptr, "org.freedesktop.DBus.Properties", "PropertiesChanged", devicePath, deviceInterface,
        G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*, gpointer self) {
            auto* const watcher = static_cast<DeviceWatcher*>(self);
            for (const auto& [busName, entry] : watcher->m_entries)
                watcher->readProperties(busName);
        },
        this, nullptr);
    listNames();
}

DeviceWatcher::~DeviceWatcher() {
    g_cancellable_cancel(m_cancellable.get());
    g_dbus_connection_signal_unsubscribe(m_bus.get(), m_ownerSubscription);
    g_dbus_connection_signal_unsubscribe(m_bus.get(), m_propertiesSubscription);
}

void DeviceWatcher::listNames() {
    g_dbus_connection_call(
        m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ListNames", nullptr,
        G_VARIANT_TYPE("(as)"), G_DBUS_CALL_FLAGS_NONE, deviceAnswerLimit, m_cancellable.get(),
        [](GObject* bus, GAsyncResult* result, gpointer self) {
            // A null answer may mean that the watcher is gone.
            const GlibPointer<GVariant> answer(g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr));
            if (!answer)
                return;
            GVariantIter* names = nullptr;
            g_variant_get(answer.get(), "(as)", &names);
            const char* name = nullptr;
            while (g_variant_iter_next(names, "&s", &name)) {
                if (isDeviceName(name))
                    static_cast<DeviceWatcher*>(self)->appeared(name);
            }
            g_variant_iter_free(names);
        },
        this);
}

void DeviceWatcher::appeared(const std::string& busName) {
    if (m_entries.contains(busName))
        return;
    m_entries.emplace(busName, std::make_unique<Entry>());
    readProperties(busName);
}

void DeviceWatcher::vanished(const std::string& busName) {
    if (m_entries.erase(busName) > 0)
        publish();
}

void DeviceWatcher::readProperties(const std::string& busName) {
    g_dbus_connection_call(
        m_bus.get(), busName.c_str(), devicePath, "org.freedesktop.DBus.Properties", "GetAll",
        g_variant_new("(s)", deviceInterface), G_VARIANT_TYPE("(a{sv})"), G_DBUS_CALL_FLAGS_NO_AUTO_START,
        deviceAnswerLimit, m_cancellable.get(),
        [](GObject* bus, GAsyncResult* result, gpointer data) {
            const std::unique_ptr<Request> request(static_cast<Request*>(data));
            GError* rawError = nullptr;
            const GlibPointer<GVariant> answer(
                g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &rawError));
            const GlibPointer<GError> error(rawError);
            // The watcher is gone.
            if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED))
                return;
            const auto entry = request->watcher->m_entries.find(request->busName);
            if (entry == request->watcher->m_entries.end())
                return;
            if (!answer) {
                request->watcher->askAgain(request->busName);
                return;
            }
            const GlibPointer<GVariant> properties(g_variant_get_child_value(answer.get(), 0));
            LabDevice device{
                .busName = request->busName,
                .name = property(properties.get(), "Name"),
                .runtimeName = property(properties.get(), "RuntimeName"),
                .state = property(properties.get(), "State"),
                .inspectorAddress = property(properties.get(), "InspectorAddress"),
            };
            if (entry->second->device == device)
                return;
            entry->second->device = std::move(device);
            request->watcher->publish();
        },
        new Request{this, busName});
}

void DeviceWatcher::askAgain(const std::string& busName) {
    m_entries.at(busName)->retry.set(g_timeout_add_full(
        G_PRIORITY_DEFAULT, askAgainInterval,
        [](gpointer data) -> gboolean {
            const auto* const request = static_cast<Request*>(data);
            request->watcher->m_entries.at(request->busName)->retry.forget();
            request->watcher->readProperties(request->busName);
            return G_SOURCE_REMOVE;
        },
        new Request{this, busName}, [](gpointer data) { delete static_cast<Request*>(data); }));
}

void DeviceWatcher::publish() {
    std::vector<LabDevice> devices;
    for (const auto& [busName, entry] : m_entries) {
        if (entry->device)
            devices.push_back(*entry->device);
    }
    std::ranges::sort(devices, comesBefore);
    m_onDevices(devices);
}

} // namespace corvanta::lab
