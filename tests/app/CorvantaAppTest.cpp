// SPDX-License-Identifier: MIT
#include "shell/CorvantaApp.h"

#include "FakeMapSurface.h"
#include "FakePlaceSearch.h"
#include "MemoryPreferencesStore.h"
#include "OffscreenWindows.h"
#include "ScriptedHost.h"
#include "shell/UpdateAlertDialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QHostAddress>
#include <QNetworkProxy>
#include <QTcpServer>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;

/// The scripted host behind the application's seam.
class ScriptedPlatform final : public Platform {
public:
    ScriptedPlatform(testing::ScriptedHost& host, testing::MemoryPreferencesStore& preferences)
        : m_host(host)
        , m_preferences(preferences) {}

    [[nodiscard]] QCoro::Task<void> untilReady() override { co_return; }

    [[nodiscard]] AccessibilityClient& accessibility() override { return m_host.tree; }

    [[nodiscard]] Desktop& desktop() override { return m_host.desktop; }

    [[nodiscard]] Clock& clock() override { return m_host.clock; }

    [[nodiscard]] PreferencesStore& preferences() override { return m_preferences; }

    [[nodiscard]] PlaceSearch& placeSearch() override { return m_placeSearch; }

    [[nodiscard]] std::unique_ptr<MapSurface> makeMapSurface(QWidget& parent) override {
        return std::make_unique<testing::FakeMapSurface>(&parent);
    }

    [[nodiscard]] std::unique_ptr<CommandRunning> makeCommandRunner() override { return m_host.makeCommandRunner(); }

    [[nodiscard]] std::shared_ptr<ControlWindow> makeControlWindow(QWidget& /*window*/) override {
        return m_host.controlWindow;
    }

private:
    testing::ScriptedHost& m_host;
    testing::MemoryPreferencesStore& m_preferences;
    testing::FakePlaceSearch m_placeSearch{m_host.clock, m_host.log};
};

CommandLine opening(const QString& address) {
    CommandLine line;
    line.url = address;
    return line;
}

CommandLine starting(const QString& address) {
    CommandLine line = opening(address);
    line.start = true;
    return line;
}

CommandLine starting(const QString& address, const QString& device) {
    CommandLine line = starting(address);
    line.device = device;
    return line;
}

/// The whole program on the scripted host, on a desktop that has a tray or has none.
class CorvantaAppTest : public ::testing::Test {
protected:
    CorvantaAppTest() {
        // Whoever asks for updates asks a server of the test's own that never answers.
        EXPECT_TRUE(m_proxy.listen(QHostAddress::LocalHost));
        QNetworkProxy::setApplicationProxy(
            QNetworkProxy(QNetworkProxy::HttpProxy, u"127.0.0.1"_s, m_proxy.serverPort()));
        host.beforeCommand = [this](const ProcessCommand& command) {
            if (command.arguments.contains(u"-find"_s) || command.arguments.contains(u"--find"_s))
                ++setupChecks;
            if (command.arguments.contains(u"openurl"_s))
                opened.push_back(command.arguments.constLast().toStdString());
        };
    }

    ~CorvantaAppTest() override {
        app.reset();
        while (host.clock.step()) {
        }
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    }

    void launch(const CommandLine& line = {}) {
        begin(line);
        settle();
    }

    /// Launches the program and leaves it at its very beginning.
    void begin(const CommandLine& line = {}) {
        app = std::make_unique<CorvantaApp>(std::make_unique<ScriptedPlatform>(host, preferences), line,
                                            [this] { return hasTray; });
        app->start();
    }

    /// Lets everything that is under way come to rest.
    void settle() {
        for (int turn = 0; turn < 20; ++turn) {
            QApplication::processEvents();
            host.clock.advance(1s);
        }
    }

    /// The program's window; null while it is closed.
    static WorkspaceWindow* window() { return topLevel<WorkspaceWindow>(true); }

    /// The item of the menu-bar menu with that text; null when there is none.
    static QAction* item(const QString& text) {
        for (QAction* const action : topLevel<MenuBarContentView>(false)->actions()) {
            if (action->text() == text)
                return action;
        }
        return nullptr;
    }

    static void choose(const QString& text) {
        QAction* const action = item(text);
        ASSERT_NE(action, nullptr) << text.toStdString();
        ASSERT_TRUE(action->isEnabled()) << text.toStdString();
        action->trigger();
    }

    static std::string status() { return topLevel<MenuBarContentView>(false)->actions().front()->text().toStdString(); }

    /// Runs the event loop while `action` makes the program end; its exit status, nothing when it does not end.
    std::optional<int> exitStatus(const std::function<void()>& action) {
        bool isTimedOut = false;
        QTimer turns;
        QObject::connect(&turns, &QTimer::timeout, app.get(), [this] { host.clock.advance(100ms); });
        turns.start(0);
        QTimer::singleShot(0, app.get(), action);
        QTimer::singleShot(10s, app.get(), [&isTimedOut] {
            isTimedOut = true;
            QApplication::exit();
        });
        const int exitStatus = QApplication::exec();
        return isTimedOut ? std::nullopt : std::optional(exitStatus);
    }

    testing::OffscreenWindows offscreenWindows;
    testing::ScriptedHost host;
    testing::MemoryPreferencesStore preferences;
    bool hasTray = true;
    int setupChecks = 0;
    std::vector<std::string> opened;
    std::unique_ptr<CorvantaApp> app;

    template<typename Widget>
    static Widget* topLevel(bool isShown) {
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            auto* const found = qobject_cast<Widget*>(widget);
            if (found && (!isShown || found->isVisible()))
                return found;
        }
        return nullptr;
    }

private:
    QTcpServer m_proxy;
};

TEST_F(CorvantaAppTest, OpensItsWindowAndChecksTheSetup) {
    launch();
    ASSERT_NE(window(), nullptr);
    EXPECT_EQ(window()->windowTitle(), u"Corvanta"_s);
    EXPECT_EQ(window()->width(), 430);
    EXPECT_EQ(setupChecks, 1);
    EXPECT_EQ(status(), "Status: Idle");
}

TEST_F(CorvantaAppTest, QuitsWithItsWindowWhereThereIsNoTray) {
    hasTray = false;
    launch();
    EXPECT_EQ(exitStatus([] { window()->close(); }), 0);
}

TEST_F(CorvantaAppTest, OutlivesItsWindowWhereThereIsATray) {
    launch();
    window()->close();
    settle();
    EXPECT_EQ(window(), nullptr);
    choose(u"Open Corvanta"_s);
    settle();
    ASSERT_NE(window(), nullptr);
    // A first appearance of its own.
    EXPECT_EQ(setupChecks, 2);
    choose(u"Open Corvanta"_s);
    settle();
    EXPECT_EQ(setupChecks, 2);
    EXPECT_GE(host.log.count("activateSelf"), 2);
}

TEST_F(CorvantaAppTest, OutlivesAWindowThatIsClosedBeforeTheIconHasCome) {
    begin();
    window()->close();
    settle();
    EXPECT_EQ(window(), nullptr);
    choose(u"Open Corvanta"_s);
    settle();
    EXPECT_NE(window(), nullptr);
}

TEST_F(CorvantaAppTest, TakesTwoClosesInOneTurnForOne) {
    launch();
    WorkspaceWindow* const closed = window();
    closed->close();
    QCloseEvent again;
    QApplication::sendEvent(closed, &again);
    settle();
    EXPECT_EQ(window(), nullptr);
    choose(u"Open Corvanta"_s);
    settle();
    EXPECT_NE(window(), nullptr);
}

TEST_F(CorvantaAppTest, StartsFromTheTrayWithTheWindowOpen) {
    launch(opening(u"localhost:3000"_s));
    window()->close();
    settle();
    choose(u"Start Workspace"_s);
    EXPECT_NE(window(), nullptr);
    settle();
    EXPECT_EQ(status(), "Status: Running");
    EXPECT_THAT(opened, ElementsAre("http://localhost:3000"));
}

TEST_F(CorvantaAppTest, StopsTheWorkspaceBeforeItQuits) {
    launch(starting(u"localhost:3000"_s));
    ASSERT_EQ(status(), "Status: Running");
    const auto control = host.controlWindow;
    const auto framesBefore = control->frames().size();
    EXPECT_EQ(exitStatus([] { choose(u"Quit Corvanta"_s); }), 0);
    EXPECT_EQ(status(), "Status: Idle");
    EXPECT_GT(control->frames().size(), framesBefore);
    EXPECT_EQ(control->frames().back(), testing::FakeControlWindow().frame());
}

TEST_F(CorvantaAppTest, StopsTheWorkspaceBeforeATerminationSignalEndsIt) {
    launch(starting(u"localhost:3000"_s));
    ASSERT_EQ(status(), "Status: Running");
    EXPECT_EQ(exitStatus([] { std::raise(SIGTERM); }), 0);
    EXPECT_EQ(status(), "Status: Idle");
}

TEST_F(CorvantaAppTest, SaysThatItLeaves) {
    launch();
    int times = 0;
    QObject::connect(app.get(), &CorvantaApp::leaving, app.get(), [&times] { ++times; });
    EXPECT_EQ(exitStatus([] {
                  choose(u"Quit Corvanta"_s);
                  choose(u"Quit Corvanta"_s);
              }),
              0);
    EXPECT_EQ(times, 1);
    app->open({});
    EXPECT_EQ(window(), nullptr);
}

TEST_F(CorvantaAppTest, DoesWhatAnotherStartAsksFor) {
    launch();
    app->open(starting(u"localhost:4000"_s, host.deviceID));
    settle();
    EXPECT_EQ(status(), "Status: Running");
    EXPECT_THAT(opened, ElementsAre("http://localhost:4000"));
    // The window was there already.
    EXPECT_EQ(setupChecks, 1);
}

TEST_F(CorvantaAppTest, OpensAnotherPageInARunningWorkspace) {
    launch(starting(u"localhost:3000"_s));
    app->open(starting(u"localhost:4000"_s));
    settle();
    EXPECT_EQ(status(), "Status: Running");
    EXPECT_THAT(opened, ElementsAre("http://localhost:3000", "http://localhost:4000"));
}

TEST_F(CorvantaAppTest, OpensItsClosedWindowForAnotherStart) {
    launch();
    window()->close();
    settle();
    app->open(starting(u"localhost:4000"_s));
    EXPECT_NE(window(), nullptr);
    settle();
    EXPECT_EQ(status(), "Status: Running");
    EXPECT_THAT(opened, ElementsAre("http://localhost:4000"));
}

TEST_F(CorvantaAppTest, StartsNothingOnADeviceThatIsNotThere) {
    launch();
    app->open(starting(u"localhost:4000"_s, u"iPhone 3G"_s));
    settle();
    EXPECT_EQ(status(), "Status: Idle");
    EXPECT_THAT(opened, ElementsAre());
}

TEST_F(CorvantaAppTest, LooksForUpdatesOnceAndInSilence) {
    begin();
    for (int turn = 0; turn < 20 && item(u"Checking for Updates…"_s) == nullptr; ++turn) {
        QApplication::processEvents();
        host.clock.advance(100ms);
    }
    EXPECT_NE(item(u"Checking for Updates…"_s), nullptr);
    settle();
    EXPECT_NE(item(u"Check for Updates…"_s), nullptr);
    EXPECT_EQ(topLevel<UpdateAlertDialog>(true), nullptr);
    window()->close();
    settle();
    choose(u"Open Corvanta"_s);
    EXPECT_NE(item(u"Check for Updates…"_s), nullptr);
    choose(u"Check for Updates…"_s);
    settle();
    EXPECT_NE(topLevel<UpdateAlertDialog>(true), nullptr);
}

TEST_F(CorvantaAppTest, KeepsThePlaceOfItsWindow) {
    launch();
    const QRect place(120, 40, 400, 650);
    window()->setGeometry(place);
    settle();
    EXPECT_EQ(exitStatus([] { choose(u"Quit Corvanta"_s); }), 0);
    app.reset();
    launch();
    EXPECT_EQ(window()->geometry(), place);
}

} // namespace

} // namespace corvanta
