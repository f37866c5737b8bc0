// SPDX-License-Identifier: MIT
#include "LinuxDesktop.h"

#include "AtspiAccessibilityClient.h"
#include "FixtureProcess.h"
#include "X11ControlWindow.h"
#include "support/SystemClock.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QFile>
#include <QScopeGuard>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTemporaryDir>
#include <QWidget>

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstddef>

namespace corvanta {
namespace {

using namespace Qt::Literals::StringLiterals;
using namespace corvanta::testing;

const QString fixtureName = u"dev.corvanta.DesktopFixture"_s;

class LinuxDesktopTest : public ::testing::Test {
protected:
    /// Puts a script in the place of the lab's browser.
    void installBrowser(const QByteArray& script) {
        QFile file(folder.filePath(u"Safari"_s));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + script + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }

    QTemporaryDir folder;
    X11Windows windows;
    X11Screens screens{windows};
    SystemClock clock;
    AtspiAccessibilityClient client{windows, [this] { return screens.primaryOrigin(); }};
    LinuxDesktop desktop{windows, screens, clock, LabFolder(folder.path(), folder.path()),
                         [this](const QString& name) { return client.hasMenuBar(name); }};
};

TEST_F(LinuxDesktopTest, OpensTheBrowserAndWaitsForItsMenuBar) {
    EXPECT_FALSE(desktop.applicationPath(u"com.apple.Safari"_s));
    installBrowser("exec " CORVANTA_MENU_FIXTURE " com.apple.Safari com.apple.Safari");
    EXPECT_EQ(desktop.applicationPath(u"com.apple.Safari"_s), u"/Applications/Safari.app"_s);
    EXPECT_FALSE(desktop.applicationPath(u"com.apple.dt.Xcode"_s));
    EXPECT_FALSE(desktop.isRunning(u"com.apple.Safari"_s));
    WatchedTask<void> opening(desktop.openApplication(u"/Applications/Safari.app"_s));
    ASSERT_TRUE(waitUntil([&] { return opening.isDone(); }));
    EXPECT_FALSE(opening.error());
    EXPECT_TRUE(desktop.isRunning(u"com.apple.Safari"_s));
    EXPECT_TRUE(client.hasMenuBar(u"com.apple.Safari"_s));
    const QDBusReply<uint> browser = QDBusConnection::sessionBus().interface()->servicePid(u"com.apple.Safari"_s);
    ASSERT_TRUE(browser.isValid());
    ::kill(static_cast<pid_t>(browser.value()), SIGKILL);
    EXPECT_TRUE(waitUntil([&] { return !desktop.isRunning(u"com.apple.Safari"_s); }));
}

TEST_F(LinuxDesktopTest, SaysThatAnApplicationIsNotThere) {
    WatchedTask<void> opening(desktop.openApplication(u"/Applications/Safari.app"_s));
    ASSERT_TRUE(waitUntil([&] { return opening.isDone(); }));
    ASSERT_TRUE(opening.error());
    EXPECT_EQ(errorTexts(opening.error()).description, u"The application “Safari” could not be found."_s);
}

TEST_F(LinuxDesktopTest, BringsAnApplicationForward) {
    FixtureProcess first(fixtureName);
    ASSERT_TRUE(first.command(u"window Second"_s));
    FixtureProcess other(u"dev.corvanta.OtherFixture"_s);
    const auto activeName = [&] {
        const auto active = windows.activeWindow();
        return active ? windows.instanceName(*active) : QString();
    };
    ASSERT_TRUE(waitUntil([&] { return windows.windows().size() == 3; }));
    // The focus passes through other windows on its way, so it counts where it has come to rest.
    const auto comesForward = [&](const QString& name, std::ptrdiff_t count) {
        int looksInARow = 0;
        return waitUntil([&] {
            const auto stacked = windows.windows();
            const auto belongs = [&](auto window) { return windows.instanceName(window) == name; };
            const bool isInFront = activeName() == name && std::ranges::count_if(stacked, belongs) == count &&
                                   std::all_of(stacked.end() - count, stacked.end(), belongs);
            looksInARow = isInFront ? looksInARow + 1 : 0;
            return looksInARow > 10;
        });
    };
    desktop.activate(u"dev.corvanta.OtherFixture"_s);
    EXPECT_TRUE(comesForward(u"dev.corvanta.OtherFixture"_s, 1));
    desktop.activate(fixtureName);
    EXPECT_TRUE(comesForward(fixtureName, 2));
}

TEST_F(LinuxDesktopTest, LeavesAddressesOfAMacAloneWhereNothingExplainsThem) {
    const auto pane = URL::parse(u"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility");
    ASSERT_TRUE(pane);
    EXPECT_FALSE(desktop.openURL(*pane));
}

/// The desktop with the real lab's programs.
class DesktopWithLab : public LinuxDesktopTest {
protected:
    void SetUp() override { qputenv("CORVANTA_LAB_HOME", folder.path().toUtf8()); }

    void TearDown() override {
        const QDBusReply<uint> browser = QDBusConnection::sessionBus().interface()->servicePid(u"com.apple.Safari"_s);
        if (browser.isValid())
            ::kill(static_cast<pid_t>(browser.value()), SIGTERM);
        EXPECT_TRUE(waitUntil([&] { return !lab.isRunning(u"com.apple.Safari"_s) && windows.windows().empty(); }));
        qunsetenv("CORVANTA_LAB_HOME");
    }

    /// Whether the lab's browser comes to show a page with that title, in front.
    bool showsPage(const QString& title) {
        return waitUntil([&] {
            const auto active = windows.activeWindow();
            return active && windows.instanceName(*active) == u"com.apple.Safari" &&
                   windows.title(*active) == title + u" — Safari"_s;
        });
    }

    LinuxDesktop lab{windows, screens, clock, LabFolder(QString::fromUtf8(CORVANTA_LAB_PROGRAMS), folder.path()),
                     [this](const QString& name) { return client.hasMenuBar(name); }};
};

TEST_F(DesktopWithLab, ExplainsInTheLabsBrowserWhatOnlyAMacHas) {
    struct Case {
        const char16_t* address;
        QString title;
    };

    for (const Case& given : {Case{u"x-apple.systempreferences:com.apple.Software-Update-Settings.extension",
                                   u"Software Update on Linux"_s},
                              Case{u"macappstore://apps.apple.com/app/xcode/id497799835", u"Xcode on Linux"_s},
                              Case{u"x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility",
                                   u"Accessibility on Linux"_s}}) {
        SCOPED_TRACE(given.title.toStdString());
        const auto url = URL::parse(given.address);
        ASSERT_TRUE(url);
        EXPECT_TRUE(lab.openURL(*url));
        EXPECT_TRUE(showsPage(given.title));
    }
}

TEST_F(DesktopWithLab, OpensWebAddressesInTheLabsBrowserWhereThereIsNoOther) {
    const QByteArray path = qgetenv("PATH");
    const auto restore = qScopeGuard([&] { qputenv("PATH", path); });
    // No opener of the desktop is found.
    qputenv("PATH", folder.path().toUtf8());
    QTcpServer server;
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    QObject::connect(&server, &QTcpServer::newConnection, &server, [&server] {
        QTcpSocket* const socket = server.nextPendingConnection();
        // Whoever hangs up on a request that it has not read takes its answer back.
        QObject::connect(socket, &QTcpSocket::readyRead, socket, [socket, request = QByteArray()]() mutable {
            request += socket->readAll();
            if (request.endsWith("\r\n\r\n")) {
                socket->write("HTTP/1.0 200 OK\r\nContent-Type: text/html\r\n\r\n<title>A page of the web</title>");
                socket->disconnectFromHost();
            }
        });
    });
    const auto url = URL::parse(u"http://127.0.0.1:%1/"_s.arg(server.serverPort()));
    ASSERT_TRUE(url);

    EXPECT_TRUE(lab.openURL(*url));

    EXPECT_TRUE(showsPage(u"A page of the web"_s));
}

TEST_F(LinuxDesktopTest, MeasuresTheScreen) {
    const std::vector<Screen> all = desktop.screens();
    ASSERT_EQ(all.size(), 1U);
    EXPECT_EQ(all.front().frame, (Rect{0, 0, 1600, 1000}));
    EXPECT_EQ(all.front().visibleFrame, all.front().frame);
    EXPECT_EQ(desktop.mainScreen(), all.front());
}

TEST_F(LinuxDesktopTest, PlacesTheControlWindowToThePixel) {
    QWidget widget;
    widget.resize(300, 300);
    X11ControlWindow control(widget, windows, screens);
    EXPECT_FALSE(control.screen());
    widget.show();
    ASSERT_TRUE(waitUntil([&] { return windows.windows().size() == 1; }));
    for (const Rect& wanted : {Rect{8, 8, 400, 900}, Rect{700, 300, 320, 500}}) {
        control.setFrame(wanted);
        const Rect frame = control.frame();
        EXPECT_NEAR(frame.x, wanted.x, 2);
        EXPECT_NEAR(frame.y, wanted.y, 2);
        EXPECT_NEAR(frame.width, wanted.width, 2);
        EXPECT_NEAR(frame.height, wanted.height, 2);
    }
    EXPECT_EQ(control.screen(), desktop.mainScreen());
    // What the toolkit believes follows.
    EXPECT_TRUE(waitUntil([&] { return widget.frameGeometry() == QRect(700, 200, 320, 500); }));
}

} // namespace
} // namespace corvanta
