// SPDX-License-Identifier: MIT
// The program among other programs: its menus, its end, its window's place, and a second start of it.
#include "TrayHost.h"
#include "WorkspaceEndToEnd.h"

#include <QProcess>
#include <QSet>

#include <gmock/gmock.h>

namespace corvanta::testing {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

class ShellEndToEnd : public WorkspaceEndToEnd {
protected:
    /// Runs the program while another one is there; its output and its exit status.
    static std::pair<QString, int> startSecond(const QStringList& arguments) {
        QProcess second;
        second.start(QStringLiteral(CORVANTA_PROGRAM), arguments);
        // The first one is a program of its own, so that nothing here has to turn meanwhile.
        const bool hasEnded = second.waitForFinished(20'000);
        return {QString::fromUtf8(second.readAllStandardOutput()), hasEnded ? second.exitCode() : -1};
    }
};

TEST_F(ShellEndToEnd, PutsTheWindowsBackWhenItIsQuit) {
    launch({u"--url"_s, m_site.address(), u"--device"_s, u"iPhone 16 Pro"_s});
    EXPECT_FALSE(m_corvanta.isItemEnabled(u"Stop Workspace"_s));
    ASSERT_TRUE(m_corvanta.choose(u"Start Workspace"_s));
    ASSERT_TRUE(eventually([this] { return m_corvanta.isItemEnabled(u"Re-tile Windows"_s); }, startLimit));
    const QRect area = m_windows.workArea();
    const QRect column = onScreen(expectedColumns(area).simulator, area);
    ASSERT_TRUE(eventually([&] { return hasFrame(u"iPhone 16 Pro –"_s, column); }));
    EXPECT_FALSE(m_corvanta.isItemEnabled(u"Start Workspace"_s));
    ASSERT_TRUE(m_corvanta.choose(u"Quit Corvanta"_s));
    EXPECT_EQ(m_corvanta.exitCode(), 0);
    // Back, and not gone: the Simulator is left running.
    EXPECT_TRUE(eventually(
        [&] { return frameOf(u"iPhone 16 Pro –"_s).has_value() && !hasFrame(u"iPhone 16 Pro –"_s, column); }));
}

TEST_F(ShellEndToEnd, EndsWithItsWindowWhereThereIsNoTray) {
    launch({});
    ASSERT_TRUE(m_corvanta.choose(u"Close Window"_s));
    EXPECT_EQ(m_corvanta.exitCode(), 0);
}

TEST_F(ShellEndToEnd, OutlivesItsWindowWhereThereIsATray) {
    const TrayHost tray;
    launch({u"--url"_s, m_site.address(), u"--device"_s, u"iPhone 16 Pro"_s});
    ASSERT_TRUE(eventually([&] { return !tray.items().isEmpty(); }));
    ASSERT_TRUE(m_corvanta.choose(u"Close Window"_s));
    ASSERT_TRUE(eventually([this] { return !m_windows.window(u"Corvanta"_s); }));
    ASSERT_TRUE(tray.choose(u"Open Corvanta"_s));
    ASSERT_TRUE(eventually([this] { return m_windows.window(u"Corvanta"_s).has_value(); }));

    ASSERT_TRUE(eventually([this] { return m_corvanta.choose(u"Close Window"_s); }));
    ASSERT_TRUE(eventually([this] { return !m_windows.window(u"Corvanta"_s); }));
    ASSERT_TRUE(tray.choose(u"Start Workspace"_s));
    ASSERT_TRUE(eventually([&] { return tray.menu().contains(u"Status: Running off"_s); }, startLimit))
        << tray.menu().join(u'\n').toStdString();
    EXPECT_TRUE(m_windows.window(u"Corvanta"_s));
    EXPECT_FALSE(tray.choose(u"Start Workspace"_s));
    ASSERT_TRUE(tray.choose(u"Quit Corvanta"_s));
    EXPECT_EQ(m_corvanta.exitCode(), 0);
}

TEST_F(ShellEndToEnd, OpensItsWindowWhereItWas) {
    launch({});
    const QRect place(180, 70, 410, 720);
    const auto window = m_windows.window(u"Corvanta"_s);
    ASSERT_TRUE(window);
    m_windows.place(window->id, place);
    ASSERT_TRUE(eventually([&] { return hasFrame(u"Corvanta"_s, place); }));
    ASSERT_TRUE(m_corvanta.choose(u"Quit Corvanta"_s));
    ASSERT_EQ(m_corvanta.exitCode(), 0);
    launch({});
    EXPECT_TRUE(eventually([&] { return hasFrame(u"Corvanta"_s, place); })) << hasFrame(u"Corvanta"_s, place).message();
}

TEST_F(ShellEndToEnd, HandsASecondStartToTheFirst) {
    launch({u"--device"_s, u"iPhone 16 Pro"_s});
    const auto [output, status] = startSecond({u"--url"_s, m_site.address(u"two.html"_s), u"--start"_s});
    EXPECT_EQ(status, 0);
    EXPECT_EQ(output, u"Corvanta is already running; its window has been brought forward.\n");
    EXPECT_TRUE(eventually([this] { return m_corvanta.texts().contains(u"Workspace running"_s); }, startLimit))
        << shownTexts();
    EXPECT_TRUE(eventually([] { return inspectorShows(u"Corvanta second page"_s); }));
    QSet<int> programs;
    for (const Accessible& frame : frames(u"Corvanta"_s))
        programs.insert(frame.processID());
    EXPECT_EQ(programs, QSet<int>{m_corvanta.processID()});
}

TEST_F(ShellEndToEnd, IsAFirstOneAgainAfterTheFirstHasLeft) {
    launch({});
    ASSERT_TRUE(m_corvanta.choose(u"Quit Corvanta"_s));
    ASSERT_EQ(m_corvanta.exitCode(), 0);
    launch({});
    EXPECT_TRUE(m_corvanta.shows(u"Corvanta"_s)) << shownTexts();
}

} // namespace

} // namespace corvanta::testing
