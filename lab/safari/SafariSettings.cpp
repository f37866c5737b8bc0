// SPDX-License-Identifier: MIT
#include "SafariSettings.h"

#include "LabHome.h"

#include <json-glib/json-glib.h>

#include <utility>

namespace corvanta::lab {

namespace {

constexpr const char* developerFeaturesKey = "developerFeatures";

/// The file's object, or null when there is none.
JsonObject* rootObject(JsonParser* parser, const std::string& path) {
    if (!json_parser_load_from_file(parser, path.c_str(), nullptr))
        return nullptr;
    JsonNode* const root = json_parser_get_root(parser);
    return root && JSON_NODE_HOLDS_OBJECT(root) ? json_node_get_object(root) : nullptr;
}

} // namespace

SafariSettings::SafariSettings(std::function<void()> onChange)
    : m_onChange(std::move(onChange)) {
    const std::string home = labHome();
    g_mkdir_with_parents(home.c_str(), 0700);
    const GlibPointer<char> path(g_build_filename(home.c_str(), "safari.json", nullptr));
    m_path = path.get();
    read();

    const GlibPointer<GFile> file(g_file_new_for_path(m_path.c_str()));
    m_monitor.reset(g_file_monitor_file(file.get(), G_FILE_MONITOR_NONE, nullptr, nullptr));
    if (m_monitor)
        g_signal_connect_swapped(m_monitor.get(), "changed", G_CALLBACK(+[](SafariSettings* self) { self->read(); }),
                                 this);
}

SafariSettings::~SafariSettings() {
    if (m_monitor)
        g_signal_handlers_disconnect_by_data(m_monitor.get(), this);
}

void SafariSettings::read() {
    const GlibPointer<JsonParser> parser(json_parser_new());
    JsonObject* const object = rootObject(parser.get(), m_path);
    JsonNode* const node = object ? json_object_get_member(object, developerFeaturesKey) : nullptr;
    const bool isFlag = node && JSON_NODE_HOLDS_VALUE(node) && json_node_get_value_type(node) == G_TYPE_BOOLEAN;
    const bool enabled = !isFlag || json_node_get_boolean(node) != FALSE;
    if (std::exchange(m_developerFeatures, enabled) != enabled)
        m_onChange();
}

std::string SafariSettings::setDeveloperFeatures(bool enabled) {
    if (enabled == m_developerFeatures)
        return {};
    const GlibPointer<JsonParser> parser(json_parser_new());
    JsonObject* const present = rootObject(parser.get(), m_path);
    JsonObject* const object = present ? json_object_ref(present) : json_object_new();
    json_object_set_boolean_member(object, developerFeaturesKey, enabled);
    JsonNode* const root = json_node_init_object(json_node_alloc(), object);
    const GlibPointer<char> text(json_to_string(root, TRUE));
    json_node_unref(root);
    json_object_unref(object);

    GError* rawError = nullptr;
    // Written to a temporary file that replaces the old one.
    g_file_set_contents(m_path.c_str(), text.get(), -1, &rawError);
    const GlibPointer<GError> error(rawError);
    m_developerFeatures = enabled;
    m_onChange();
    return error ? error->message : std::string();
}

} // namespace corvanta::lab
