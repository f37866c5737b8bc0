// SPDX-License-Identifier: MIT
// A device process with nothing but what Safari sees of one: its bus name, its properties and real pages behind
// WebKit's inspector server. Pages have the made-up scheme "page", which this program answers itself.
#include "GlibPointers.h"
#include "InspectorSamples.h"

#include <gtk/gtk.h>
#include <webkit2/webkit2.h>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <string>

namespace {

using corvanta::lab::GlibPointer;

constexpr const char* introspection = R"(
<node>
  <interface name="dev.corvanta.Lab.Device1">
    <property name="UDID" type="s" access="read"/>
    <property name="Name" type="s" access="read"/>
    <property name="RuntimeName" type="s" access="read"/>
    <property name="State" type="s" access="read"/>
    <property name="InspectorAddress" type="s" access="read"/>
    <method name="OpenURL"><arg type="s" direction="in"/></method>
    <method name="Shutdown"/>
  </interface>
  <interface name="dev.corvanta.Lab.DeviceFixture1">
    <method name="Navigate"><arg type="u" direction="in"/><arg type="s" direction="in"/></method>
    <method name="ClosePage"><arg type="u" direction="in"/></method>
    <method name="SetOnBus"><arg type="b" direction="in"/></method>
  </interface>
</node>)";

std::string freeLoopbackAddress() {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    bind(descriptor, reinterpret_cast<sockaddr*>(&address), size);
    getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size);
    close(descriptor);
    return "127.0.0.1:" + std::to_string(ntohs(address.sin_port));
}

class DeviceFixture {
public:
    DeviceFixture(std::string udid, std::string name, std::string runtime)
        : m_inspectorAddress(freeLoopbackAddress()) {
        m_properties = {{"UDID", std::move(udid)},
                        {"Name", std::move(name)},
                        {"RuntimeName", std::move(runtime)},
                        {"State", "Booted"},
                        {"InspectorAddress", m_inspectorAddress}};
        g_setenv("WEBKIT_INSPECTOR_SERVER", m_inspectorAddress.c_str(), TRUE);
    }

    void run() {
        webkit_web_context_register_uri_scheme(
            webkit_web_context_get_default(), "page",
            [](WebKitURISchemeRequest* request, gpointer) {
                const std::string html = std::string("<!doctype html><title>Document</title><p>") +
                                         webkit_uri_scheme_request_get_path(request);
                const GlibPointer<GInputStream> stream(
                    g_memory_input_stream_new_from_data(g_strdup(html.c_str()), -1, g_free));
                webkit_uri_scheme_request_finish(request, stream.get(), static_cast<gint64>(html.size()), "text/html");
            },
            nullptr, nullptr);
        GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(introspection, nullptr);
        const GlibPointer<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
        static const GDBusInterfaceVTable table{&DeviceFixture::call, &DeviceFixture::property, nullptr, {}};
        for (GDBusInterfaceInfo* const interface : {node->interfaces[0], node->interfaces[1]}) {
            g_dbus_connection_register_object(bus.get(), "/dev/corvanta/Lab/Device", interface, &table, this, nullptr,
                                              nullptr);
        }
        const corvanta::lab::InspectorSamples samples(bus.get());
        m_bus = bus.get();
        setOnBus(true);
        gtk_main();
        // Who asked for the shutdown gets the answer.
        g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr);
        g_dbus_node_info_unref(node);
    }

private:
    /// A device that is not has no name there, as one that is reached from another session.
    void setOnBus(bool isOnBus) {
        std::string name = "dev.corvanta.Lab.Device.U" + m_properties["UDID"];
        std::ranges::replace(name, '-', '_');
        if (isOnBus) {
            m_name = g_bus_own_name_on_connection(m_bus, name.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr,
                                                  nullptr, nullptr);
        } else {
            g_bus_unown_name(m_name);
        }
    }

    void open(const char* url) {
        GtkWidget* const window = gtk_window_new(GTK_WINDOW_TOPLEVEL);
        gtk_window_set_title(GTK_WINDOW(window), m_properties["Name"].c_str());
        gtk_window_set_default_size(GTK_WINDOW(window), 300, 200);
        GtkWidget* const view = webkit_web_view_new();
        webkit_settings_set_enable_developer_extras(webkit_web_view_get_settings(WEBKIT_WEB_VIEW(view)), TRUE);
        gtk_container_add(GTK_CONTAINER(window), view);
        gtk_widget_show_all(window);
        m_windows[++m_opened] = window;
        webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), url);
    }

    WebKitWebView* view(guint page) { return WEBKIT_WEB_VIEW(gtk_bin_get_child(GTK_BIN(m_windows.at(page)))); }

    static void call(GDBusConnection*, const char*, const char*, const char*, const char* method, GVariant* parameters,
                     GDBusMethodInvocation* invocation, gpointer data) {
        auto* const self = static_cast<DeviceFixture*>(data);
        const std::string name = method;
        guint page = 0;
        const char* url = nullptr;
        if (name == "OpenURL") {
            g_variant_get(parameters, "(&s)", &url);
            self->open(url);
        } else if (name == "Navigate") {
            g_variant_get(parameters, "(u&s)", &page, &url);
            webkit_web_view_load_uri(self->view(page), url);
        } else if (name == "ClosePage") {
            g_variant_get(parameters, "(u)", &page);
            gtk_widget_destroy(self->m_windows.at(page));
            self->m_windows.erase(page);
        } else if (name == "SetOnBus") {
            gboolean isOnBus = FALSE;
            g_variant_get(parameters, "(b)", &isOnBus);
            self->setOnBus(isOnBus != FALSE);
        } else {
            gtk_main_quit();
        }
        g_dbus_method_invocation_return_value(invocation, nullptr);
    }

    static GVariant* property(GDBusConnection*, const char*, const char*, const char*, const char* name, GError**,
                              gpointer data) {
        return g_variant_new_string(static_cast<DeviceFixture*>(data)->m_properties[name].c_str());
    }

    std::string m_inspectorAddress;
    std::map<std::string, std::string> m_properties;
    std::map<guint, GtkWidget*> m_windows;
    guint m_opened = 0;
    GDBusConnection* m_bus = nullptr;
    guint m_name = 0;
};

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fprintf(stderr, "usage: DeviceFixture UDID NAME RUNTIME\n");
        return 2;
    }
    g_setenv("GDK_BACKEND", "x11", TRUE);
    // As the Simulator does: the pages are drawn by the processor.
    g_setenv("WEBKIT_DISABLE_COMPOSITING_MODE", "1", FALSE);
    DeviceFixture fixture(argv[1], argv[2], argv[3]);
    g_set_prgname("com.apple.iphonesimulator");
    gtk_init(&argc, &argv);
    fixture.run();
    return 0;
}
