// SPDX-License-Identifier: MIT
#include "SafariDesktop.h"

#include <gtest/gtest.h>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>

namespace corvanta::lab::testing {

namespace {

using Titles = std::vector<std::string>;

/// Where nobody listens.
std::string closedAddress() {
    const int descriptor = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    bind(descriptor, reinterpret_cast<sockaddr*>(&address), size);
    getsockname(descriptor, reinterpret_cast<sockaddr*>(&address), &size);
    close(descriptor);
    return "http://127.0.0.1:" + std::to_string(ntohs(address.sin_port)) + "/";
}

/// The desktop portal, as far as it tells which colours the desktop has.
class ColorPortal {
public:
    explicit ColorPortal(bool isDark)
        : m_bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr))
        , m_isDark(isDark) {
        static const GDBusInterfaceVTable table{
            [](GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
               GDBusMethodInvocation* invocation, gpointer self) {
                g_dbus_method_invocation_return_value(
                    invocation, g_variant_new("(v)", g_variant_new("v", static_cast<ColorPortal*>(self)->value())));
            },
            nullptr,
            nullptr,
            {}};
        GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(
            R"(<node><interface name="org.freedesktop.portal.Settings"><method name="Read">
                 <arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="v" direction="out"/>
               </method></interface></node>)",
            nullptr);
        m_object =
            g_dbus_connection_register_object(m_bus.get(), path, node->interfaces[0], &table, this, nullptr, nullptr);
        g_dbus_node_info_unref(node);
        const GlibPointer<GVariant> answer(g_dbus_connection_call_sync(
            m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
            g_variant_new("(su)", name, 0U), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    }

    ColorPortal(const ColorPortal&) = delete;
    ColorPortal& operator=(const ColorPortal&) = delete;

    ~ColorPortal() {
        g_dbus_connection_unregister_object(m_bus.get(), m_object);
        const GlibPointer<GVariant> answer(g_dbus_connection_call_sync(
            m_bus.get(), "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "ReleaseName",
            g_variant_new("(s)", name), nullptr, G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
    }

    void setDark(bool isDark) {
        m_isDark = isDark;
        g_dbus_connection_emit_signal(m_bus.get(), nullptr, path, "org.freedesktop.portal.Settings", "SettingChanged",
                                      g_variant_new("(ssv)", "org.freedesktop.appearance", "color-scheme", value()),
                                      nullptr);
    }

private:
    static constexpr const char* name = "org.freedesktop.portal.Desktop";
    static constexpr const char* path = "/org/freedesktop/portal/desktop";

    [[nodiscard]] GVariant* value() const { return g_variant_new_uint32(m_isDark ? 1 : 2); }

    GlibPointer<GDBusConnection> m_bus;
    bool m_isDark;
    guint m_object = 0;
};

} // namespace

/// With a folder of pages, and no device.
class SafariBrowsing : public SafariDesktop {
protected:
    void SetUp() override {}

    /// A page with that title; answers its address.
    [[nodiscard]] std::string page(const std::string& title) const {
        const std::string path = m_labHome + '/' + title + ".html";
        std::ofstream(path) << "<!doctype html><title>" << title << "</title><p>" << title;
        return "file://" + path;
    }

    /// Opens addresses in Safari as the desktop does.
    void open(const std::string& address) const {
        RunningProgram starter({SAFARI_PROGRAM, "--background", address}, m_labHome);
        EXPECT_EQ(starter.wait(), 0);
    }

    [[nodiscard]] bool shows(const std::string& title) const {
        return eventually([&] { return std::ranges::count(frameTitles(), title + " — Safari") == 1; });
    }

    /// With pages "One" and "Two" in two tabs, the latter in front.
    void startWithTwoTabs(std::vector<std::string> arguments = {"--background"}) {
        arguments.push_back(page("One"));
        startSafari(arguments);
        ASSERT_TRUE(shows("One"));
        open(page("Two"));
        ASSERT_TRUE(shows("Two"));
    }

    [[nodiscard]] bool hasKeyboard() const {
        return eventually([this] {
            const auto windows = m_windows.titled("");
            return windows.size() == 1 && m_windows.active() == windows.front();
        });
    }

    static void type(const std::string& keys) {
        EXPECT_EQ(std::system(("xdotool " + keys).c_str()), 0); // NOLINT(*-env33-c): texts of these tests
    }
};

TEST_F(SafariBrowsing, RemembersThePagesOfTheSession) {
    startWithTwoTabs();
    EXPECT_EQ(menuTitles({"History"}),
              (Titles{"Back", "Forward", "Home", "", "Reopen Last Closed Tab", "", "Two", "One", "", "Clear History"}));

    ASSERT_TRUE(press({"History", "One"}));
    ASSERT_TRUE(shows("One"));
    EXPECT_TRUE(eventually([this] { return menuTitles({"History"})[6] == "One"; }));
    ASSERT_TRUE(eventually([this] { return find({"History", "Back"})->isEnabled(); }));
    ASSERT_TRUE(press({"History", "Back"}));
    ASSERT_TRUE(shows("Two"));
    ASSERT_TRUE(press({"History", "Home"}));
    ASSERT_TRUE(shows("Start Page"));

    ASSERT_TRUE(press({"History", "Clear History"}));
    EXPECT_EQ(menuTitles({"History"}),
              (Titles{"Back", "Forward", "Home", "", "Reopen Last Closed Tab", "", "Clear History"}));
    EXPECT_FALSE(find({"History", "Clear History"})->isEnabled());
}

TEST_F(SafariBrowsing, ReopensAClosedTab) {
    startWithTwoTabs();
    EXPECT_FALSE(find({"History", "Reopen Last Closed Tab"})->isEnabled());
    ASSERT_TRUE(press({"File", "Close Tab"}));
    ASSERT_TRUE(shows("One"));

    ASSERT_TRUE(press({"History", "Reopen Last Closed Tab"}));
    EXPECT_TRUE(shows("Two"));
    EXPECT_FALSE(find({"History", "Reopen Last Closed Tab"})->isEnabled());
}

TEST_F(SafariBrowsing, ShowsHostileTitlesAsPlainTextThatEnds) {
    const std::string path = m_labHome + "/hostile.html";
    std::ofstream(path) << "<!doctype html><meta charset=utf-8><title>&lt;b&gt;_Bold&amp;\u202Egnp</title><p>Hostile";
    const std::string endlessPath = m_labHome + "/endless.html";
    std::ofstream(endlessPath)
        << "<!doctype html><title>Short</title><script>document.title = 'M'.repeat(1000000)</script>";
    startSafari({page("One"), "file://" + path});
    const std::string bold = "<b>_Bold&gnp";
    ASSERT_TRUE(shows(bold)) << ::testing::PrintToString(frameTitles());

    // In the row of tabs with its tool tip, in the history and as the window's title.
    open("file://" + endlessPath);
    const auto isEndless = [](const std::string& title) { return title.starts_with("MMM"); };
    ASSERT_TRUE(eventually([&] { return std::ranges::any_of(frameTitles(), isEndless); }));
    for (const std::string& title : frameTitles())
        EXPECT_LT(title.size(), 500U);
    EXPECT_TRUE(find({"History", bold}));
    EXPECT_TRUE(eventually([&] { return find({"History", std::string(59, 'M') + "…"}).has_value(); }));

    open("data:text/html,<title>Long</title>" + std::string(60'000, 'x'));
    EXPECT_TRUE(shows("Long"));
    ASSERT_TRUE(press({"File", "Close Tab"}));
    EXPECT_TRUE(eventually([&] { return std::ranges::any_of(frameTitles(), isEndless); }));
}

TEST_F(SafariBrowsing, GoesThroughTheTabsByKeys) {
    startWithTwoTabs({});
    ASSERT_TRUE(hasKeyboard());
    for (const auto& [keys, title] : std::vector<std::pair<const char*, const char*>>{{"ctrl+1", "One"},
                                                                                      {"ctrl+2", "Two"},
                                                                                      {"ctrl+Tab", "One"},
                                                                                      {"ctrl+shift+Tab", "Two"},
                                                                                      {"ctrl+t", "Start Page"},
                                                                                      {"ctrl+w", "Two"},
                                                                                      {"ctrl+1", "One"},
                                                                                      {"ctrl+9", "Two"}}) {
        type(std::string("key ") + keys);
        EXPECT_TRUE(shows(title)) << keys;
    }
}

TEST_F(SafariBrowsing, SelectsTheAddressThatIsToBeReplaced) {
    const std::string other = page("Other");
    startSafari({page("One")});
    ASSERT_TRUE(shows("One"));
    ASSERT_TRUE(hasKeyboard());
    type("key ctrl+l type '" + other + "'");
    type("key Return");
    EXPECT_TRUE(shows("Other"));
}

TEST_F(SafariBrowsing, SaysWhyAPageIsNotThere) {
    startSafari({"--background", page("One")});
    ASSERT_TRUE(shows("One"));
    open(closedAddress());
    EXPECT_TRUE(shows("Safari can’t connect to the server"));
    EXPECT_EQ(menuTitles({"History"})[6], "One") << "what was not seen is not remembered";
    open("file://" + m_labHome + "/None.html");
    EXPECT_TRUE(shows("Safari can’t find the file"));
}

TEST_F(SafariBrowsing, IsAsDarkAsTheDesktop) {
    const std::string path = m_labHome + "/Colors.html";
    std::ofstream(path) << "<!doctype html><script>const dark = matchMedia('(prefers-color-scheme: dark)');"
                           "const tell = () => document.title = dark.matches ? 'Dark' : 'Light';"
                           "dark.addEventListener('change', tell); tell();</script>";
    ColorPortal portal(true);
    // In front, since the engine tells a page that cannot be seen of no change.
    startSafari({"file://" + path});
    EXPECT_TRUE(shows("Dark"));
    portal.setDark(false);
    EXPECT_TRUE(shows("Light"));
}

} // namespace corvanta::lab::testing
