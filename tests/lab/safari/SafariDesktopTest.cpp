// SPDX-License-Identifier: MIT
#include "SafariDesktop.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace corvanta::lab::testing {

namespace {

using namespace std::chrono_literals;
using Titles = std::vector<std::string>;

const std::string deviceTitle = "iPhone 16 Pro – iOS 18.2";
const Titles applePage{"Develop", deviceTitle, "apple.test — iphone"};
const Titles shopPage{"Develop", deviceTitle, "shop.test"};

std::chrono::milliseconds since(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now() - start);
}

} // namespace

/// With two pages open and Safari in the background.
class SafariOnTwoPages : public SafariDesktop {
protected:
    void SetUp() override {
        SafariDesktop::SetUp();
        device().open("page://apple.test/iphone/");
        device().open("page://shop.test/");
        startSafari();
        ASSERT_TRUE(eventually([this] { return pages() == Titles{"apple.test — iphone", "shop.test"}; }));
    }

    void openInspector(const Titles& page) {
        const auto before = inspectorTitles().size();
        const auto start = std::chrono::steady_clock::now();
        ASSERT_TRUE(press(page));
        ASSERT_TRUE(eventually([this, before] { return inspectorTitles().size() == before + 1; }));
        std::printf("window after %lld ms\n", static_cast<long long>(since(start).count()));
        // The bus tells of the window before the window manager has it.
        ASSERT_TRUE(eventually([this, before] { return m_windows.titled("Web Inspector").size() == before + 1; }));
    }
};

TEST_F(SafariOnTwoPages, ListsTheDeviceWithItsPages) {
    EXPECT_EQ(menuTitles({}), (Titles{"Safari", "File", "Edit", "View", "History", "Develop", "Window", "Help"}));
    EXPECT_EQ(menuTitles({"Develop", deviceTitle}),
              (Titles{"iPhone 16 Pro (Simulator)", "apple.test — iphone", "shop.test", "",
                      "Automatically Show Web Inspector for JSContexts", "Automatically Pause Connecting to JSContexts",
                      "Connect via Network"}));
    const auto entries = menu({"Develop", deviceTitle});
    EXPECT_FALSE(entries.front().isEnabled);
    EXPECT_TRUE(entries[1].isEnabled);
    EXPECT_TRUE(entries.back().isEnabled);
}

TEST_F(SafariOnTwoPages, AddsANewPageLastAndKeepsTheOthers) {
    const auto before = menu({"Develop", deviceTitle});

    const auto start = std::chrono::steady_clock::now();
    device().open("page://news.test/today.html");
    ASSERT_TRUE(eventually([this] { return pages().size() == 3; }));
    std::printf("new page after %lld ms\n", static_cast<long long>(since(start).count()));

    const auto after = menu({"Develop", deviceTitle});
    EXPECT_EQ(after[3].title, "news.test — today.html");
    for (const std::size_t index : {0U, 1U, 2U})
        EXPECT_EQ(after[index].path, before[index].path);
    EXPECT_EQ(after[4].path, before[3].path);
}

TEST_F(SafariOnTwoPages, RenamesAPageInItsPlace) {
    const auto before = menu({"Develop", deviceTitle});

    device().navigate(1, "page://apple.test/ipad");
    ASSERT_TRUE(eventually([this] { return pages() == Titles{"apple.test — ipad", "shop.test"}; }));

    EXPECT_EQ(menu({"Develop", deviceTitle})[1].path, before[1].path);
}

TEST_F(SafariOnTwoPages, KeepsTheItemsBehindAClosedPage) {
    const auto before = menu({"Develop", deviceTitle});

    device().close(1);
    ASSERT_TRUE(eventually([this] { return pages() == Titles{"shop.test"}; }));

    EXPECT_EQ(menu({"Develop", deviceTitle})[1].path, before[2].path);
}

TEST_F(SafariOnTwoPages, SaysWhenThereIsNothingToInspect) {
    device().close(1);
    device().close(2);

    EXPECT_TRUE(eventually([this] { return pages().empty(); }));
    const auto entries = menu({"Develop", deviceTitle});
    ASSERT_GT(entries.size(), 2U);
    EXPECT_EQ(entries[1].title, "No Inspectable Applications");
    EXPECT_FALSE(entries[1].isEnabled);
}

TEST_F(SafariOnTwoPages, OpensTheWebInspectorOfAPressedPage) {
    openInspector(applePage);

    EXPECT_EQ(inspectorTitles(), Titles{"Web Inspector — apple.test — iphone"});
    for (const char* const tab : {"Elements", "Console", "Network"})
        EXPECT_TRUE(eventually([&] { return frameHolds("Web Inspector", tab, 7); })) << tab;
    EXPECT_EQ(inspectorTitles(), Titles{"Web Inspector — apple.test — iphone"});
}

TEST_F(SafariOnTwoPages, PressesWithoutShowingAMenuOrTakingInput) {
    openInspector(applePage);

    EXPECT_TRUE(m_windows.inputIsFree());
    // Two pages, Safari and the inspector.
    EXPECT_TRUE(eventually([this] { return m_windows.titled("").size() == 4; }));
}

TEST_F(SafariOnTwoPages, OpensNoSecondInspectorForAPage) {
    openInspector(applePage);
    ASSERT_TRUE(eventually([this] { return frameHolds("Web Inspector", "Elements", 7); }));
    openInspector(shopPage);
    const auto windows = m_windows.titled("Web Inspector — apple.test");
    ASSERT_EQ(windows.size(), 1U);
    ASSERT_TRUE(eventually([&] { return m_windows.active() != windows.front(); }));

    EXPECT_TRUE(press(applePage));

    EXPECT_TRUE(eventually([&] { return m_windows.active() == windows.front(); })) << "the window is brought forward";
    EXPECT_EQ(inspectorTitles().size(), 2U);
    EXPECT_TRUE(device().program().isRunning());
}

TEST_F(SafariOnTwoPages, RetitlesTheInspectorOfARenamedPage) {
    openInspector(applePage);

    device().navigate(1, "page://apple.test/ipad");

    EXPECT_TRUE(eventually([this] { return inspectorTitles() == Titles{"Web Inspector — apple.test — ipad"}; }))
        << ::testing::PrintToString(inspectorTitles()) << ::testing::PrintToString(pages());
}

TEST_F(SafariOnTwoPages, SurvivesTheClosingOfOneInspectorAfterAnother) {
    for (int round = 0; round < 6; ++round) {
        const Titles& page = round % 2 == 0 ? applePage : shopPage;
        openInspector(page);
        // Some are closed in the midst of loading.
        if (round % 3 != 0)
            ASSERT_TRUE(eventually([this] { return frameHolds("Web Inspector", "Elements", 7); }));
        const auto windows = m_windows.titled("Web Inspector");
        ASSERT_EQ(windows.size(), 1U);
        m_windows.close(windows.front());
        ASSERT_TRUE(eventually([this] { return inspectorTitles().empty(); }));
        ASSERT_TRUE(m_safari->isRunning());
        ASSERT_TRUE(device().program().isRunning());
        ASSERT_EQ(pages(), (Titles{"apple.test — iphone", "shop.test"}));
    }
}

TEST_F(SafariOnTwoPages, ClosesAnInspectorByItsCloseButton) {
    openInspector(applePage);
    ASSERT_TRUE(eventually([this] { return frameHolds("Web Inspector", "Elements", 7); }));

    for (const Accessible& frame : frames()) {
        if (frame.name().starts_with("Web Inspector"))
            EXPECT_TRUE(pressButton(frame, "Close"));
    }

    EXPECT_TRUE(eventually([this] { return inspectorTitles().empty(); }));
    EXPECT_TRUE(device().program().isRunning());
    openInspector(applePage);
}

TEST_F(SafariOnTwoPages, OpensAnInspectorAgainThatEndsAsItIsAskedFor) {
    openInspector(applePage);
    const auto window = m_windows.titled("Web Inspector").front();
    const auto inspector = m_windows.process(window);
    const auto item = find(applePage);
    ASSERT_TRUE(inspector && item);

    // It can no more answer than one that has just closed its window and not yet ended.
    kill(*inspector, SIGSTOP);
    EXPECT_TRUE(item->doAction());
    kill(*inspector, SIGKILL);

    EXPECT_TRUE(eventually([&] {
        const auto windows = m_windows.titled("Web Inspector — apple.test — iphone");
        return windows.size() == 1 && m_windows.process(windows.front()) != inspector;
    })) << ::testing::PrintToString(inspectorTitles());
    EXPECT_TRUE(eventually([this] { return frameHolds("Web Inspector", "Elements", 7); }));
    EXPECT_TRUE(device().program().isRunning());
}

TEST_F(SafariOnTwoPages, LeavesAnInspectorClosedThatWasBroughtForwardBefore) {
    openInspector(applePage);
    openInspector(shopPage);
    const auto window = m_windows.titled("Web Inspector — apple.test").front();
    ASSERT_TRUE(press(applePage));
    ASSERT_TRUE(eventually([&] { return m_windows.active() == window; }));
    m_windows.close(window);
    ASSERT_TRUE(eventually([this] { return inspectorTitles() == Titles{"Web Inspector — shop.test"}; }));

    // One that came back by itself would be there by the time that a third one is.
    device().open("page://news.test/");
    const Titles newsPage{"Develop", deviceTitle, "news.test"};
    ASSERT_TRUE(eventually([this] { return pages().size() == 3; }));
    openInspector(newsPage);
    ASSERT_TRUE(eventually([this] { return frameHolds("Web Inspector — news.test", "Elements", 7); }));

    EXPECT_EQ(inspectorTitles(), (Titles{"Web Inspector — shop.test", "Web Inspector — news.test"}));
}

TEST_F(SafariOnTwoPages, TakesTheInspectorsWithItWhenKilled) {
    openInspector(applePage);
    openInspector(shopPage);

    m_safari->signal(SIGKILL);

    EXPECT_TRUE(eventually([] { return inspectorProcesses().empty(); }, 5s));
    EXPECT_TRUE(eventually([] { return processes("WebKitWebProcess").size() == 2; }, 5s))
        << "those of the device's pages";
    EXPECT_TRUE(device().program().isRunning());
}

TEST_F(SafariOnTwoPages, ClosesTheInspectorOfAClosedPage) {
    openInspector(applePage);
    openInspector(shopPage);

    device().close(1);

    EXPECT_TRUE(eventually([this] { return inspectorTitles() == Titles{"Web Inspector — shop.test"}; }))
        << ::testing::PrintToString(inspectorTitles()) << ::testing::PrintToString(pages());
    EXPECT_TRUE(m_safari->isRunning());
}

TEST_F(SafariOnTwoPages, ForgetsADeviceThatShutsDown) {
    openInspector(applePage);

    device().shutDown();

    EXPECT_TRUE(eventually([this] { return menu({"Develop", deviceTitle}).empty(); }));
    EXPECT_EQ(menuTitles({"Develop"}).front(), "No Booted Devices");
    EXPECT_TRUE(eventually([] { return inspectorProcesses().empty(); }));
}

TEST_F(SafariOnTwoPages, SurvivesADeviceThatIsKilled) {
    openInspector(applePage);

    device().program().signal(SIGKILL);

    EXPECT_TRUE(eventually([this] { return menu({"Develop", deviceTitle}).empty(); }));
    EXPECT_TRUE(eventually([] { return inspectorProcesses().empty(); }));
    EXPECT_TRUE(m_safari->isRunning());
}

TEST_F(SafariOnTwoPages, LetsTheInspectorBeNarrow) {
    openInspector(applePage);
    ASSERT_TRUE(eventually([this] { return frameHolds("Web Inspector", "Elements", 7); }));
    const auto window = m_windows.titled("Web Inspector").front();

    m_windows.resize(window, {400, 300});

    EXPECT_TRUE(eventually([&] { return m_windows.size(window) == ClientWindows::Size{400, 300}; }));
}

TEST_F(SafariOnTwoPages, HasNoDevelopMenuWithoutDeveloperFeatures) {
    ASSERT_TRUE(press({"Safari", "Settings…"}));
    const auto toggle = [this] {
        return std::ranges::any_of(
            frames(), [](const Accessible& frame) { return pressButton(frame, "Show features for web developers"); });
    };
    ASSERT_TRUE(eventually(toggle));

    EXPECT_TRUE(eventually([this] { return std::ranges::count(menuTitles({}), "Develop") == 0; }));
    std::ifstream file(m_labHome + "/safari.json");
    EXPECT_NE(std::string(std::istreambuf_iterator<char>(file), {}).find("\"developerFeatures\" : false"),
              std::string::npos);

    ASSERT_TRUE(toggle());
    EXPECT_TRUE(eventually([this] { return menuTitles({})[5] == "Develop"; }));
    EXPECT_EQ(pages(), (Titles{"apple.test — iphone", "shop.test"}));
}

TEST_F(SafariDesktop, StartsWithoutADevelopMenuWhenTurnedOff) {
    std::ofstream(m_labHome + "/safari.json") << R"({"developerFeatures": false, "other": 1})";
    startSafari();

    EXPECT_EQ(menuTitles({}), (Titles{"Safari", "File", "Edit", "View", "History", "Window", "Help"}));

    std::ofstream(m_labHome + "/safari.json") << R"({"developerFeatures": true, "other": 1})";
    EXPECT_TRUE(eventually([this] { return std::ranges::count(menuTitles({}), "Develop") == 1; }));
}

/// With the developer features off.
class SafariWithoutDeveloperFeatures : public SafariDesktop {
protected:
    void SetUp() override {
        SafariDesktop::SetUp();
        std::ofstream(m_labHome + "/safari.json") << R"({"developerFeatures": false})";
    }

    [[nodiscard]] bool hints() const {
        const auto button = inFrame("Start Page", "Open Settings…", 6);
        return button && button->isShowing();
    }

    static bool typeKey(const char* key) {
        const std::string command = std::string("xdotool key ") + key;
        return std::system(command.c_str()) == 0; // NOLINT(*-env33-c): a fixed word
    }

    [[nodiscard]] bool frontWindowIs(const std::string& title) const {
        const auto windows = m_windows.titled(title);
        return windows.size() == 1 && m_windows.active() == windows.front();
    }

    [[nodiscard]] bool pressInFrame(const std::string& title, const std::string& name) const {
        return std::ranges::any_of(frames(), [&](const Accessible& frame) {
            return frame.name().starts_with(title) && pressButton(frame, name);
        });
    }
};

TEST_F(SafariWithoutDeveloperFeatures, SaysSoAndLeadsToTheSwitch) {
    startSafari({});

    ASSERT_TRUE(eventually([this] { return hints(); }));
    ASSERT_TRUE(pressInFrame("Start Page", "Open Settings…"));
    ASSERT_TRUE(eventually([this] { return frameHolds("Settings", "Advanced", 3); }));
    ASSERT_TRUE(pressInFrame("Settings", "Show features for web developers"));

    EXPECT_TRUE(eventually([this] { return std::ranges::count(menuTitles({}), "Develop") == 1; }));
    EXPECT_TRUE(eventually([this] { return !hints(); }));
}

TEST_F(SafariWithoutDeveloperFeatures, SaysSoAgainWhenBroughtForward) {
    startSafari();
    ASSERT_TRUE(eventually([this] { return hints(); }));
    ASSERT_TRUE(pressInFrame("Start Page", "Not Now"));
    ASSERT_TRUE(eventually([this] { return !hints(); }));

    RunningProgram second({SAFARI_PROGRAM}, m_labHome);
    EXPECT_EQ(second.wait(), 0);

    EXPECT_TRUE(eventually([this] { return hints(); }));
}

TEST_F(SafariWithoutDeveloperFeatures, TurnsThemOnByKeyboardAlone) {
    startSafari({});
    ASSERT_TRUE(eventually([this] { return frontWindowIs("Start Page — Safari"); }));

    // Keys that are typed before the window has the focus go nowhere, so they are typed again; the second showing of
    // the settings is the first.
    ASSERT_TRUE(eventually([this] {
        return (frontWindowIs("Start Page — Safari") ? typeKey("ctrl+comma") : true) && frontWindowIs("Settings");
    }));
    ASSERT_TRUE(typeKey("space"));
    EXPECT_TRUE(eventually([this] { return std::ranges::count(menuTitles({}), "Develop") == 1; }));

    ASSERT_TRUE(typeKey("Escape"));
    EXPECT_TRUE(eventually([this] { return m_windows.titled("Settings").empty(); }));
}

TEST_F(SafariDesktop, DoesNotSpeakOfDeveloperFeaturesThatAreOn) {
    startSafari({});
    ASSERT_TRUE(eventually([this] { return frameHolds("Start Page", "Address", 6); }));
    const auto button = inFrame("Start Page", "Open Settings…", 6);
    EXPECT_FALSE(button && button->isShowing());
}

TEST_F(SafariDesktop, AsksADeviceAgainThatAnsweredWithAnError) {
    const char* const busName = "dev.corvanta.Lab.Device.UTEST_9";
    const GlibPointer<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    // Counts the questions; as long as there is no object, the connection itself answers them with an error.
    std::atomic<int> questions = 0;
    const guint filter = g_dbus_connection_add_filter(
        bus.get(),
        [](GDBusConnection*, GDBusMessage* message, gboolean isIncoming, gpointer count) {
            if (isIncoming && g_strcmp0(g_dbus_message_get_member(message), "GetAll") == 0)
                ++*static_cast<std::atomic<int>*>(count);
            return message;
        },
        &questions, nullptr);
    const guint name = g_bus_own_name_on_connection(bus.get(), busName, G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr,
                                                    nullptr, nullptr);
    startSafari();
    ASSERT_TRUE(eventually([&] { return questions > 0; }));

    const GDBusInterfaceVTable table{
        nullptr,
        [](GDBusConnection*, const char*, const char*, const char*, const char* property, GError**, gpointer) {
            const std::string wanted = property;
            return g_variant_new_string(wanted == "Name"          ? "Late"
                                        : wanted == "RuntimeName" ? "iOS 18.2"
                                        : wanted == "State"       ? "Booted"
                                                                  : "127.0.0.1:1");
        },
        nullptr,
        {}};
    GDBusNodeInfo* const node = g_dbus_node_info_new_for_xml(R"(<node><interface name="dev.corvanta.Lab.Device1">
        <property name="Name" type="s" access="read"/><property name="RuntimeName" type="s" access="read"/>
        <property name="State" type="s" access="read"/><property name="InspectorAddress" type="s" access="read"/>
        </interface></node>)",
                                                             nullptr);
    const guint object = g_dbus_connection_register_object(bus.get(), "/dev/corvanta/Lab/Device", node->interfaces[0],
                                                           &table, nullptr, nullptr, nullptr);

    EXPECT_TRUE(eventually([this] { return !menu({"Develop", "Late – iOS 18.2"}).empty(); }));

    g_bus_unown_name(name);
    EXPECT_TRUE(eventually([this] { return menu({"Develop", "Late – iOS 18.2"}).empty(); }));
    g_dbus_connection_unregister_object(bus.get(), object);
    g_dbus_connection_remove_filter(bus.get(), filter);
    g_dbus_node_info_unref(node);
}

TEST_F(SafariDesktop, ListsDevicesByNameAndNewestRuntimeFirst) {
    device().open("page://apple.test/");
    startSafari();
    ASSERT_TRUE(eventually([this] { return pages().size() == 1; }));
    const auto first = menu({"Develop"}).front().path;
    m_devices.push_back(std::make_unique<TestDevice>("TEST_2", "iPhone 16 Pro", "iOS 17.5", m_labHome));
    m_devices.push_back(std::make_unique<TestDevice>("TEST_3", "iPhone 16", "iOS 18.2", m_labHome));

    EXPECT_TRUE(eventually([this] {
        const Titles titles = menuTitles({"Develop"});
        return titles.size() > 3 && Titles(titles.begin(), titles.begin() + 4) ==
                                        Titles{"iPhone 16 – iOS 18.2", deviceTitle, "iPhone 16 Pro – iOS 17.5", ""};
    }));
    EXPECT_EQ(menu({"Develop"})[1].path, first) << "the first device's item has stayed the same";
}

TEST_F(SafariDesktop, StaysInTheBackground) {
    device().open("page://apple.test/");
    ASSERT_TRUE(eventually([this] { return m_windows.titled("iPhone 16 Pro").size() == 1; }));
    // Until its window has come forward, the active one may still be on its way out.
    const std::optional active = m_windows.titled("iPhone 16 Pro").front();
    ASSERT_TRUE(eventually([&] { return m_windows.active() == active; }));
    startSafari({"--background"});

    ASSERT_TRUE(eventually([this] { return m_windows.titled("Start Page — Safari").size() == 1; }));
    EXPECT_TRUE(eventually([this] { return m_windows.isIconified(m_windows.titled("Start Page — Safari").front()); }));
    EXPECT_EQ(m_windows.active(), active);
}

TEST_F(SafariDesktop, IsBroughtForwardByASecondStart) {
    startSafari();
    ASSERT_TRUE(eventually([this] { return m_windows.titled("Start Page — Safari").size() == 1; }));
    const auto window = m_windows.titled("Start Page — Safari").front();
    ASSERT_TRUE(eventually([&] { return m_windows.isIconified(window); }));

    RunningProgram quiet({SAFARI_PROGRAM, "--background"}, m_labHome);
    EXPECT_EQ(quiet.wait(), 0);
    EXPECT_TRUE(m_windows.isIconified(window));

    RunningProgram second({SAFARI_PROGRAM}, m_labHome);
    EXPECT_EQ(second.wait(), 0);
    EXPECT_TRUE(eventually([&] { return !m_windows.isIconified(window) && m_windows.active() == window; }));
}

TEST_F(SafariDesktop, QuitsWithItsWindow) {
    device().open("page://apple.test/");
    startSafari();
    ASSERT_TRUE(eventually([this] { return pages().size() == 1; }));
    ASSERT_TRUE(press({"Develop", deviceTitle, "apple.test"}));
    ASSERT_TRUE(eventually([this] { return inspectorTitles().size() == 1; }));

    ASSERT_TRUE(press({"Safari", "Quit Safari"}));

    EXPECT_EQ(m_safari->wait(), 0);
    EXPECT_TRUE(eventually([] { return inspectorProcesses().empty(); }));
}

} // namespace corvanta::lab::testing
