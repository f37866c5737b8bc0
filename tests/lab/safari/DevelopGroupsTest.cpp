// SPDX-License-Identifier: MIT
#include "SafariDesktop.h"

#include <gtest/gtest.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <thread>

namespace corvanta::lab::testing {

namespace {

using namespace std::chrono_literals;
using Titles = std::vector<std::string>;

const std::string deviceTitle = "iPhone 16 Pro – iOS 18.2";
const Titles deviceMenu{"Develop", deviceTitle};
const std::string showSwitch = "Automatically Show Web Inspector for JSContexts";
const std::string pauseSwitch = "Automatically Pause Connecting to JSContexts";
const std::string networkSwitch = "Connect via Network";
const std::string sampleContext = "Sample App";
/// The inspector's button that says so only while a script is paused.
const std::string pausedScript = "Continue script execution (⌃Y or ⌃\\)";

Titles in(const std::string& title) {
    Titles path = deviceMenu;
    path.push_back(title);
    return path;
}

/// A web server on loopback with one page, which registers a service worker. Answers in a thread of its own.
class WorkerSite {
public:
    WorkerSite()
        : m_socket(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof address;
        if (bind(m_socket, reinterpret_cast<sockaddr*>(&address), size) != 0 || listen(m_socket, 8) != 0 ||
            getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size) != 0)
            ADD_FAILURE() << "no port for the site";
        m_port = ntohs(address.sin_port);
        m_thread = std::thread([this] { serve(); });
    }

    WorkerSite(const WorkerSite&) = delete;
    WorkerSite& operator=(const WorkerSite&) = delete;

    ~WorkerSite() {
        shutdown(m_socket, SHUT_RDWR);
        m_thread.join();
        close(m_socket);
    }

    [[nodiscard]] std::string address() const { return "http://127.0.0.1:" + std::to_string(m_port) + "/shop/"; }

private:
    void serve() const {
        for (int client = accept(m_socket, nullptr, nullptr); client >= 0;
             client = accept(m_socket, nullptr, nullptr)) {
            answer(client);
            close(client);
        }
    }

    static void answer(int client) {
        std::array<char, 4096> buffer{};
        std::string request;
        while (request.find("\r\n\r\n") == std::string::npos) {
            const ssize_t size = recv(client, buffer.data(), buffer.size(), 0);
            if (size <= 0)
                return;
            request.append(buffer.data(), static_cast<std::size_t>(size));
        }
        const bool isWorker = request.starts_with("GET /shop/worker.js");
        const std::string body = isWorker ? "self.addEventListener('fetch', () => {});"
                                          : "<!doctype html><title>Shop</title>"
                                            "<script>navigator.serviceWorker.register('worker.js')</script>";
        const std::string type = isWorker ? "text/javascript" : "text/html";
        const std::string text = "HTTP/1.1 200 OK\r\nContent-Type: " + type +
                                 "\r\nContent-Length: " + std::to_string(body.size()) +
                                 "\r\nConnection: close\r\n\r\n" + body;
        send(client, text.data(), text.size(), MSG_NOSIGNAL);
    }

    int m_socket;
    int m_port = 0;
    std::thread m_thread;
};

} // namespace

/// With one page open; `settings` is what Safari finds in its file.
class SafariDevelopGroups : public SafariDesktop {
protected:
    void start(const std::string& settings = "{}") {
        std::ofstream(m_labHome + "/safari.json") << settings;
        device().open("page://apple.test/");
        startSafari();
        ASSERT_TRUE(eventually([this] { return pages() == Titles{"apple.test"}; }));
    }

    void startWithContext(const std::string& switches = "{}") {
        start(R"({"sampleContext": true, "devices": {"TEST-1": )" + switches + "}}");
        ASSERT_TRUE(eventually([this] { return find(in(sampleContext)).has_value(); }));
    }

    [[nodiscard]] std::string savedSettings() const {
        std::ifstream file(m_labHome + "/safari.json");
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(SafariDevelopGroups, AreNotThereWhileTheyAreEmpty) {
    start();
    EXPECT_EQ(menuTitles(deviceMenu),
              (Titles{"iPhone 16 Pro (Simulator)", "apple.test", "", showSwitch, pauseSwitch, networkSwitch}));
}

TEST_F(SafariDevelopGroups, ListTheServiceWorkersOfPages) {
    const WorkerSite site;
    start();
    device().open(site.address());

    ASSERT_TRUE(eventually([this] { return menuTitles(in("Service Workers")) == Titles{"127.0.0.1 — shop"}; }))
        << ::testing::PrintToString(menuTitles(deviceMenu));
    EXPECT_EQ(menuTitles(deviceMenu), (Titles{"iPhone 16 Pro (Simulator)", "apple.test", "127.0.0.1 — shop", "",
                                              "Service Workers", "", showSwitch, pauseSwitch, networkSwitch}));

    Titles worker = in("Service Workers");
    worker.emplace_back("127.0.0.1 — shop");
    ASSERT_TRUE(press(worker));
    ASSERT_TRUE(eventually([this] { return inspectorTitles() == Titles{"Web Inspector — 127.0.0.1 — shop"}; }));
    EXPECT_TRUE(eventually([this] { return frameHolds("Web Inspector", "Console", 7); }));
    EXPECT_TRUE(device().program().isRunning());
}

TEST_F(SafariDevelopGroups, ListAndInspectAWebExtension) {
    start(R"({"sampleExtension": true})");
    const std::string background = "Extension Background Page — Sample Extension — background.html";
    ASSERT_TRUE(eventually([&] { return menuTitles(in("Extensions")) == Titles{background}; }))
        << ::testing::PrintToString(menuTitles(deviceMenu));
    EXPECT_EQ(pages(), Titles{"apple.test"});

    Titles item = in("Extensions");
    item.push_back(background);
    ASSERT_TRUE(press(item));
    EXPECT_TRUE(eventually([this] { return frameHolds("Web Inspector — Extension", "Elements", 7); }));

    std::ofstream(m_labHome + "/safari.json") << "{}";
    EXPECT_TRUE(eventually([this] { return !find(in("Extensions")); }));
    EXPECT_TRUE(eventually([this] { return inspectorTitles().empty(); }));
}

TEST_F(SafariDevelopGroups, ListAndInspectAnAppsContext) {
    startWithContext();
    EXPECT_EQ(menuTitles(deviceMenu), (Titles{"iPhone 16 Pro (Simulator)", "apple.test", "", sampleContext, "",
                                              showSwitch, pauseSwitch, networkSwitch}));

    ASSERT_TRUE(press(in(sampleContext)));
    EXPECT_TRUE(eventually([this] { return frameHolds("Web Inspector — Sample App", "Console", 7); }));
    EXPECT_FALSE(frameHolds("Web Inspector — Sample App", "Elements", 7));
}

TEST_F(SafariDevelopGroups, SurviveAPageWhoseNameNeverEnds) {
    constexpr std::size_t million = 1'000'000;
    start();
    device().navigate(1, "page://apple.test/" + std::string(million, 'x'));
    ASSERT_TRUE(eventually([this] { return pages().size() == 1 && pages().front().starts_with("apple.test — x"); }));
    EXPECT_LT(pages().front().size(), 210U);

    device().navigate(1, "page://shop.test/");
    EXPECT_TRUE(eventually([this] { return pages() == Titles{"shop.test"}; }));
}

TEST_F(SafariDevelopGroups, AreInspectedByThemselvesWhenSwitchedOn) {
    start();
    ASSERT_FALSE(isChecked(in(showSwitch)));
    ASSERT_TRUE(press(in(showSwitch)));
    ASSERT_TRUE(eventually([this] { return isChecked(in(showSwitch)); }));
    EXPECT_NE(savedSettings().find("\"automaticallyShowWebInspector\" : true"), std::string::npos) << savedSettings();

    std::ofstream(m_labHome + "/safari.json")
        << R"({"sampleContext": true, "devices": {"TEST-1": {"automaticallyShowWebInspector": true}}})";
    EXPECT_TRUE(eventually([this] { return inspectorTitles() == Titles{"Web Inspector — Sample App"}; }))
        << "and the page is left alone";

    // One that was closed stays closed.
    ASSERT_TRUE(eventually([this] { return m_windows.titled("Web Inspector").size() == 1; }));
    m_windows.close(m_windows.titled("Web Inspector").front());
    ASSERT_TRUE(eventually([this] { return inspectorTitles().empty(); }));
    device().navigate(1, "page://shop.test/");
    ASSERT_TRUE(eventually([this] { return pages() == Titles{"shop.test"}; }));
    EXPECT_TRUE(inspectorTitles().empty());
}

TEST_F(SafariDevelopGroups, ArePausedAsTheInspectorConnects) {
    startWithContext(R"({"automaticallyPauseConnecting": true})");
    ASSERT_TRUE(isChecked(in(pauseSwitch)));

    ASSERT_TRUE(press(in(sampleContext)));
    ASSERT_TRUE(eventually([this] { return frameHolds("Web Inspector — Sample App", pausedScript, 12); }))
        << "no paused script";

    // Who closes it lets the script go on, and the device with it.
    ASSERT_TRUE(eventually([this] { return m_windows.titled("Web Inspector").size() == 1; }));
    m_windows.close(m_windows.titled("Web Inspector").front());
    ASSERT_TRUE(eventually([this] { return inspectorTitles().empty(); }));
    device().shutDown();
    EXPECT_EQ(device().program().wait(), 0);
}

TEST_F(SafariDevelopGroups, KeepAContextThatIsPausedUntilItGoesOn) {
    startWithContext(R"({"automaticallyPauseConnecting": true})");
    ASSERT_TRUE(press(in(sampleContext)));
    ASSERT_TRUE(eventually([this] { return frameHolds("Web Inspector — Sample App", pausedScript, 12); }));

    std::ofstream(m_labHome + "/safari.json") << "{}";
    // The device has answered something else since.
    device().navigate(1, "page://shop.test/");
    ASSERT_TRUE(eventually([this] { return pages() == Titles{"shop.test"}; }));
    EXPECT_TRUE(find(in(sampleContext)));

    m_windows.close(m_windows.titled("Web Inspector").front());
    EXPECT_TRUE(eventually([this] { return !find(in(sampleContext)); }));
    EXPECT_TRUE(eventually([this] { return inspectorTitles().empty(); }));
    device().shutDown();
    EXPECT_EQ(device().program().wait(), 0);
}

TEST_F(SafariDevelopGroups, StayWithADeviceThatIsReachedViaNetwork) {
    start();
    ASSERT_TRUE(press(in("apple.test")));
    ASSERT_TRUE(eventually([this] { return frameHolds("Web Inspector", "Elements", 7); }));
    ASSERT_TRUE(press(in(networkSwitch)));
    ASSERT_TRUE(eventually([this] { return savedSettings().find("127.0.0.1:") != std::string::npos; }))
        << savedSettings();

    device().setOnBus(false);
    device().navigate(1, "page://shop.test/");

    EXPECT_TRUE(eventually([this] { return inspectorTitles() == Titles{"Web Inspector — shop.test"}; }));
    EXPECT_EQ(pages(), Titles{"shop.test"});

    // A Safari that never saw it on the bus finds it by its address.
    ASSERT_EQ(m_safari->finish(), "");
    startSafari();
    ASSERT_TRUE(eventually([this] { return pages() == Titles{"shop.test"}; }));
    EXPECT_TRUE(isChecked(in(networkSwitch)));
    ASSERT_TRUE(press(in("shop.test")));
    EXPECT_TRUE(eventually([this] { return frameHolds("Web Inspector", "Elements", 7); }));

    ASSERT_TRUE(press(in(networkSwitch)));
    EXPECT_TRUE(eventually([this] { return menuTitles({"Develop"}).front() == "No Booted Devices"; }));
    EXPECT_TRUE(eventually([this] { return inspectorTitles().empty(); }));

    device().setOnBus(true);
    EXPECT_TRUE(eventually([this] { return pages() == Titles{"shop.test"}; }));
    EXPECT_FALSE(isChecked(in(networkSwitch)));
}

TEST_F(SafariDevelopGroups, GoWithADeviceThatIsOffTheBus) {
    start();
    device().setOnBus(false);
    EXPECT_TRUE(eventually([this] { return menuTitles({"Develop"}).front() == "No Booted Devices"; }));
}

TEST_F(SafariDevelopGroups, GoWithARememberedDeviceThatEnds) {
    start(R"({"devices": {"TEST-1": {"connectViaNetwork": true}}})");
    ASSERT_TRUE(eventually([this] { return savedSettings().find("127.0.0.1:") != std::string::npos; }));

    device().program().signal(SIGKILL);

    EXPECT_TRUE(eventually([this] { return menuTitles({"Develop"}).front() == "No Booted Devices"; }));
}

} // namespace corvanta::lab::testing
