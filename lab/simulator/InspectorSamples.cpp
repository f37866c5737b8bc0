// SPDX-License-Identifier: MIT
#include "InspectorSamples.h"

#include <JavaScriptCore/JavaScript.h>
#include <webkit2/webkit2.h>

#include <string>

namespace corvanta::lab {

namespace {

constexpr const char* objectPath = "/dev/corvanta/Lab/Device";

constexpr const char* sampleIntrospection = R"xml(<node>
  <interface name="dev.corvanta.Lab.DeviceSamples1">
    <method name="SetPresent">
      <arg name="sample" type="s" direction="in"/>
      <arg name="isPresent" type="b" direction="in"/>
    </method>
  </interface>
</node>)xml";

constexpr guint tickInterval = 500;
constexpr guint goneInterval = 20;

constexpr const char* appScript = R"js(// What an app without any page may run.
const app = { name: "Sample App", ticks: 0 };

function tick() {
    app.ticks += 1;
    return app.ticks;
}
tick;
)js";

constexpr const char* extensionAddress = "safari-web-extension://sample/background.html";

constexpr const char* extensionPage = R"html(<!doctype html>
<html lang="en">
<title>Sample Extension</title>
<script>
  const extension = { name: "Sample Extension", wakes: 0 };
  setInterval(() => extension.wakes++, 1000);
</script>
</html>
)html";

/// Of all contexts, those that are to go included.
int runningScripts = 0;

} // namespace

/// An app's context, in which something runs twice a second.
class InspectorSamples::Context {
public:
    Context()
        : m_context(JSGlobalContextCreate(nullptr)) {
        JSStringRef const name = JSStringCreateWithUTF8CString("Sample App");
        JSGlobalContextSetName(m_context, name);
        JSStringRelease(name);
        JSGlobalContextSetInspectable(m_context, true);
        JSStringRef const script = JSStringCreateWithUTF8CString(appScript);
        JSStringRef const file = JSStringCreateWithUTF8CString("sample-app.js");
        m_tick = JSValueToObject(m_context, JSEvaluateScript(m_context, script, nullptr, file, 1, nullptr), nullptr);
        JSStringRelease(file);
        JSStringRelease(script);
        JSValueProtect(m_context, m_tick);
        m_timer = g_timeout_add(
            tickInterval,
            [](gpointer self) -> gboolean {
                static_cast<Context*>(self)->tick();
                return G_SOURCE_CONTINUE;
            },
            this);
    }

    Context(const Context&) = delete;
    Context& operator=(const Context&) = delete;

    ~Context() {
        g_source_remove(m_timer);
        JSValueUnprotect(m_context, m_tick);
        JSGlobalContextRelease(m_context);
    }

    /// A script that an inspector has paused runs a main loop of its own, in which nothing else may run here and this
    /// object may not go.
    [[nodiscard]] bool isRunning() const { return m_isRunning; }

private:
    void tick() {
        if (m_isRunning)
            return;
        m_isRunning = true;
        ++runningScripts;
        JSObjectCallAsFunction(m_context, m_tick, nullptr, 0, nullptr, nullptr);
        --runningScripts;
        m_isRunning = false;
    }

    JSGlobalContextRef m_context;
    JSObjectRef m_tick;
    guint m_timer = 0;
    bool m_isRunning = false;
};

/// An extension's background page: a page that no window holds.
class InspectorSamples::Extension {
public:
    Extension() {
        // Nothing of it is kept, and it shares nothing with the device's pages.
        WebKitWebContext* const context = webkit_web_context_new_ephemeral();
        webkit_web_context_register_uri_scheme(
            context, "safari-web-extension",
            [](WebKitURISchemeRequest* request, gpointer) {
                GInputStream* const stream = g_memory_input_stream_new_from_data(extensionPage, -1, nullptr);
                webkit_uri_scheme_request_finish(request, stream, -1, "text/html");
                g_object_unref(stream);
            },
            nullptr, nullptr);
        m_view = WEBKIT_WEB_VIEW(g_object_ref_sink(webkit_web_view_new_with_context(context)));
        g_object_unref(context);
        webkit_settings_set_enable_developer_extras(webkit_web_view_get_settings(m_view), TRUE);
        webkit_web_view_load_uri(m_view, extensionAddress);
    }

    Extension(const Extension&) = delete;
    Extension& operator=(const Extension&) = delete;

    ~Extension() {
        gtk_widget_destroy(GTK_WIDGET(m_view));
        g_object_unref(m_view);
    }

private:
    WebKitWebView* m_view;
};

InspectorSamples::InspectorSamples(_GDBusConnection* bus)
    : m_bus(G_DBUS_CONNECTION(g_object_ref(bus))) {
    static const GDBusInterfaceVTable table{
        [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
           GDBusMethodInvocation* invocation, gpointer self) {
            const char* sample = nullptr;
            gboolean isPresent = FALSE;
            g_variant_get(parameters, "(&sb)", &sample, &isPresent);
            if (static_cast<InspectorSamples*>(self)->setPresent(sample, isPresent != FALSE)) {
                g_dbus_method_invocation_return_value(invocation, nullptr);
            } else {
                g_dbus_method_invocation_return_error(invocation, G_DBUS_ERROR, G_DBUS_ERROR_INVALID_ARGS,
                                                      "There is no sample “%s”.", sample);
            }
        },
        nullptr,
        nullptr,
        {}};
    GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(sampleIntrospection, nullptr);
    m_object = g_dbus_connection_register_object(bus, objectPath, node->interfaces[0], &table, this, nullptr, nullptr);
    g_dbus_node_info_unref(node);
}

InspectorSamples::~InspectorSamples() {
    setPresent("JSContext", false);
    if (m_object != 0)
        g_dbus_connection_unregister_object(m_bus, m_object);
    g_object_unref(m_bus);
}

bool InspectorSamples::isPaused() {
    return runningScripts > 0;
}

bool InspectorSamples::setPresent(const char* sample, bool isPresent) {
    const std::string name = sample;
    if (name == "WebExtension") {
        if (!isPresent)
            m_extension.reset();
        else if (!m_extension)
            m_extension = std::make_unique<Extension>();
        return true;
    }
    if (name != "JSContext")
        return false;
    if (isPresent && !m_context) {
        m_context = std::make_unique<Context>();
    } else if (!isPresent && m_context) {
        // It goes as soon as it is no longer paused.
        g_timeout_add(
            goneInterval,
            [](gpointer context) -> gboolean {
                if (static_cast<Context*>(context)->isRunning())
                    return G_SOURCE_CONTINUE;
                delete static_cast<Context*>(context);
                return G_SOURCE_REMOVE;
            },
            m_context.release());
    }
    return true;
}

} // namespace corvanta::lab
