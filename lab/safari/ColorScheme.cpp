// SPDX-License-Identifier: MIT
#include "ColorScheme.h"

#include <gtk/gtk.h>

namespace corvanta::lab {

namespace {

constexpr const char* portalName = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* portalInterface = "org.freedesktop.portal.Settings";
constexpr const char* schemeSpace = "org.freedesktop.appearance";
constexpr const char* schemeKey = "color-scheme";
constexpr const char* settingsSchema = "org.gnome.desktop.interface";
constexpr int portalAnswerLimit = 2000;
constexpr guint prefersDark = 1;

void setDark(bool isDark) {
    g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", isDark ? TRUE : FALSE, nullptr);
}

/// The portal wraps its values once or twice, as it was asked.
void take(GVariant* value) {
    GlibPointer<GVariant> inner(g_variant_ref(value));
    while (g_variant_is_of_type(inner.get(), G_VARIANT_TYPE_VARIANT))
        inner.reset(g_variant_get_variant(inner.get()));
    if (g_variant_is_of_type(inner.get(), G_VARIANT_TYPE_UINT32))
        setDark(g_variant_get_uint32(inner.get()) == prefersDark);
}

} // namespace

ColorScheme::ColorScheme(GDBusConnection* bus)
    : m_bus(bus ? retain(bus) : nullptr)
    , m_cancellable(g_cancellable_new()) {
    if (!m_bus) {
        followSettings();
        return;
    }
    m_subscription = g_dbus_connection_signal_subscribe(
        bus, portalName, portalInterface, "SettingChanged", portalPath, schemeSpace, G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters, gpointer) {
            const char* changed = nullptr;
            GVariant* rawValue = nullptr;
            g_variant_get(parameters, "(&s&sv)", nullptr, &changed, &rawValue);
            const GlibPointer<GVariant> value(rawValue);
            if (g_strcmp0(changed, schemeKey) == 0)
                take(value.get());
        },
        nullptr, nullptr);
    askPortal();
}

ColorScheme::~ColorScheme() {
    g_cancellable_cancel(m_cancellable.get());
    if (m_subscription != 0)
        g_dbus_connection_signal_unsubscribe(m_bus.get(), m_subscription);
    if (m_settings)
        g_signal_handlers_disconnect_by_data(m_settings.get(), this);
}

void ColorScheme::askPortal() {
    g_dbus_connection_call(
        m_bus.get(), portalName, portalPath, portalInterface, "Read", g_variant_new("(ss)", schemeSpace, schemeKey),
        G_VARIANT_TYPE("(v)"), G_DBUS_CALL_FLAGS_NONE, portalAnswerLimit, m_cancellable.get(),
        [](GObject* bus, GAsyncResult* result, gpointer self) {
            GError* rawError = nullptr;
            const GlibPointer<GVariant> answer(
                g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, &rawError));
            const GlibPointer<GError> error(rawError);
            // This object is gone.
            if (g_error_matches(error.get(), G_IO_ERROR, G_IO_ERROR_CANCELLED))
                return;
            if (!answer) {
                static_cast<ColorScheme*>(self)->followSettings();
                return;
            }
            const GlibPointer<GVariant> value(g_variant_get_child_value(answer.get(), 0));
            take(value.get());
        },
        this);
}

void ColorScheme::followSettings() {
    GSettingsSchemaSource* const source = g_settings_schema_source_get_default();
    GSettingsSchema* const schema = source ? g_settings_schema_source_lookup(source, settingsSchema, TRUE) : nullptr;
    if (!schema)
        return;
    const bool hasKey = g_settings_schema_has_key(schema, schemeKey) != FALSE;
    g_settings_schema_unref(schema);
    if (!hasKey)
        return;
    m_settings.reset(g_settings_new(settingsSchema));
    const auto read = +[](ColorScheme* self) {
        const GlibPointer<char> scheme(g_settings_get_string(self->m_settings.get(), schemeKey));
        setDark(g_strcmp0(scheme.get(), "prefer-dark") == 0);
    };
    g_signal_connect_swapped(m_settings.get(), "changed::color-scheme", G_CALLBACK(read), this);
    const GlibPointer<char> scheme(g_settings_get_string(m_settings.get(), schemeKey));
    // "default" leaves it to the theme, which may be a dark one.
    if (g_strcmp0(scheme.get(), "default") != 0)
        read(this);
}

} // namespace corvanta::lab
