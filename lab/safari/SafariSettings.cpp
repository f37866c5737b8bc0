// SPDX-License-Identifier: MIT
#include "SafariSettings.h"

#include "LabHome.h"

#include <json-glib/json-glib.h>

#include <utility>

namespace corvanta::lab {

namespace {

constexpr const char* devicesKey = "devices";

struct Flag {
    const char* key;
    bool SafariSettingsValues::* value;
};

constexpr Flag flags[] = {
    {"developerFeatures", &SafariSettingsValues::developerFeatures},
    {"sampleContext", &SafariSettingsValues::sampleContext},
    {"sampleExtension", &SafariSettingsValues::sampleExtension},
};

struct DeviceFlag {
    const char* key;
    bool DeviceSwitches::* value;
};

constexpr DeviceFlag deviceFlags[] = {
    {"automaticallyShowWebInspector", &DeviceSwitches::showsInspectors},
    {"automaticallyPauseConnecting", &DeviceSwitches::pausesContexts},
    {"connectViaNetwork", &DeviceSwitches::connectsViaNetwork},
};

struct DeviceText {
    const char* key;
    std::string DeviceSwitches::* value;
};

constexpr DeviceText deviceTexts[] = {
    {"name", &DeviceSwitches::name},
    {"runtime", &DeviceSwitches::runtimeName},
    {"inspectorAddress", &DeviceSwitches::inspectorAddress},
};

/// The text's object, owned by the parser; null when it is none.
JsonObject* rootObject(JsonParser* parser, const std::string& text) {
    if (!json_parser_load_from_data(parser, text.c_str(), static_cast<gssize>(text.size()), nullptr))
        return nullptr;
    JsonNode* const root = json_parser_get_root(parser);
    return root && JSON_NODE_HOLDS_OBJECT(root) ? json_node_get_object(root) : nullptr;
}

JsonObject* objectMember(JsonObject* object, const char* key) {
    JsonNode* const node = json_object_get_member(object, key);
    return node && JSON_NODE_HOLDS_OBJECT(node) ? json_node_get_object(node) : nullptr;
}

bool holds(JsonNode* node, GType type) {
    return node && JSON_NODE_HOLDS_VALUE(node) && json_node_get_value_type(node) == type;
}

void readFlag(JsonObject* object, const char* key, bool& value) {
    if (JsonNode* const node = json_object_get_member(object, key); holds(node, G_TYPE_BOOLEAN))
        value = json_node_get_boolean(node) != FALSE;
}

DeviceSwitches readDevice(JsonObject* object) {
    DeviceSwitches switches;
    for (const DeviceFlag& flag : deviceFlags)
        readFlag(object, flag.key, switches.*flag.value);
    for (const DeviceText& text : deviceTexts) {
        if (JsonNode* const node = json_object_get_member(object, text.key); holds(node, G_TYPE_STRING))
            switches.*text.value = json_node_get_string(node);
    }
    return switches;
}

JsonObject* newDeviceObject(const DeviceSwitches& switches) {
    JsonObject* const object = json_object_new();
    for (const DeviceFlag& flag : deviceFlags) {
        if (switches.*flag.value)
            json_object_set_boolean_member(object, flag.key, TRUE);
    }
    for (const DeviceText& text : deviceTexts) {
        if (switches.connectsViaNetwork)
            json_object_set_string_member(object, text.key, (switches.*text.value).c_str());
    }
    return object;
}

} // namespace

DeviceSwitches SafariSettingsValues::device(const std::string& identifier) const {
    const auto known = devices.find(identifier);
    return known == devices.end() ? DeviceSwitches{} : known->second;
}

void SafariSettingsValues::setDevice(const std::string& identifier, const DeviceSwitches& switches) {
    if (switches.showsInspectors || switches.pausesContexts || switches.connectsViaNetwork)
        devices[identifier] = switches;
    else
        devices.erase(identifier);
}

SafariSettingsValues parseSafariSettings(const std::string& text) {
    SafariSettingsValues values;
    const GlibPointer<JsonParser> parser(json_parser_new());
    JsonObject* const object = rootObject(parser.get(), text);
    if (!object)
        return values;
    for (const Flag& flag : flags)
        readFlag(object, flag.key, values.*flag.value);
    if (JsonObject* const devices = objectMember(object, devicesKey)) {
        json_object_foreach_member(
            devices,
            [](JsonObject*, const char* identifier, JsonNode* node, gpointer known) {
                if (JSON_NODE_HOLDS_OBJECT(node)) {
                    static_cast<SafariSettingsValues*>(known)->setDevice(identifier,
                                                                         readDevice(json_node_get_object(node)));
                }
            },
            &values);
    }
    return values;
}

std::string formatSafariSettings(const SafariSettingsValues& values, const std::string& present) {
    const GlibPointer<JsonParser> parser(json_parser_new());
    JsonObject* const known = rootObject(parser.get(), present);
    JsonObject* const object = known ? json_object_ref(known) : json_object_new();
    const SafariSettingsValues before = parseSafariSettings(present);
    for (const Flag& flag : flags) {
        if (values.*flag.value != before.*flag.value || values.*flag.value != SafariSettingsValues().*flag.value)
            json_object_set_boolean_member(object, flag.key, values.*flag.value);
    }
    if (values.devices.empty()) {
        json_object_remove_member(object, devicesKey);
    } else {
        JsonObject* const devices = json_object_new();
        for (const auto& [identifier, switches] : values.devices)
            json_object_set_object_member(devices, identifier.c_str(), newDeviceObject(switches));
        json_object_set_object_member(object, devicesKey, devices);
    }
    JsonNode* const root = json_node_init_object(json_node_alloc(), object);
    const GlibPointer<char> text(json_to_string(root, TRUE));
    json_node_unref(root);
    json_object_unref(object);
    return text.get();
}

SafariSettings::SafariSettings(std::function<void()> onChange)
    : m_onChange(std::move(onChange)) {
    const std::string home = labHome();
    g_mkdir_with_parents(home.c_str(), 0700);
    const GlibPointer<char> path(g_build_filename(home.c_str(), "safari.json", nullptr));
    m_path = path.get();
    m_values = parseSafariSettings(fileText());

    const GlibPointer<GFile> file(g_file_new_for_path(m_path.c_str()));
    m_monitor.reset(g_file_monitor_file(file.get(), G_FILE_MONITOR_NONE, nullptr, nullptr));
    if (m_monitor)
        g_signal_connect(m_monitor.get(), "changed",
                         G_CALLBACK(+[](GFileMonitor*, GFile*, GFile*, GFileMonitorEvent event, SafariSettings* self) {
                             // In the midst of somebody's writing the file may be empty.
                             if (event != G_FILE_MONITOR_EVENT_CHANGED)
                                 self->read();
                         }),
                         this);
}

SafariSettings::~SafariSettings() {
    if (m_monitor)
        g_signal_handlers_disconnect_by_data(m_monitor.get(), this);
}

void SafariSettings::read() {
    SafariSettingsValues values = parseSafariSettings(fileText());
    if (std::exchange(m_values, values) != values)
        m_onChange();
}

std::string SafariSettings::set(const SafariSettingsValues& values) {
    if (values == m_values)
        return {};
    const std::string text = formatSafariSettings(values, fileText());
    GError* rawError = nullptr;
    // Written to a temporary file that replaces the old one.
    g_file_set_contents(m_path.c_str(), text.c_str(), -1, &rawError);
    const GlibPointer<GError> error(rawError);
    m_values = values;
    m_onChange();
    return error ? error->message : std::string();
}

std::string SafariSettings::fileText() const {
    char* rawText = nullptr;
    gsize size = 0;
    if (!g_file_get_contents(m_path.c_str(), &rawText, &size, nullptr))
        return {};
    const GlibPointer<char> text(rawText);
    return {text.get(), size};
}

} // namespace corvanta::lab
