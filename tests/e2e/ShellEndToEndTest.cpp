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
    void TearDown() override {
        if (m_program.state() == QProcess::NotRunning)
            return;
        m_program.terminate();
        if (!m_program.waitForFinished(10'000))
            m_program.kill();
        m_program.waitForFinished(5'000);
    }

    /// Starts the program and waits until its setup is checked and its devices are listed.
    void launchProgram(const QStringList& arguments) {
        m_program.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_program.start(QStringLiteral(CORVANTA_PROGRAM), arguments);
        ASSERT_TRUE(m_program.waitForStarted());
        ASSERT_TRUE(eventually([this] { return isItemEnabled(u"Start Workspace"_s); }, startLimit))
            << texts().join(u'\n').toStdString();
    }

    /// Runs the program while another one is there; its output and its exit status.
    static std::pair<QString, int> startSecond(const QStringList& arguments) {
        QProcess second;
        second.start(QStringLiteral(CORVANTA_PROGRAM), arguments);
        // The first one is a program of its own, so that nothing here has to turn meanwhile.
        const bool hasEnded = second.waitForFinished(20'000);
        return {QString::fromUtf8(second.readAllStandardOutput()), hasEnded ? second.exitCode() : -1};
    }

    [[nodiscard]] std::vector<Accessible> programFrames() const {
        auto all = frames(u"Corvanta"_s);
        std::erase_if(all, [this](const Accessible& frame) { return frame.processID() != m_program.processId(); });
        return all;
    }

    [[nodiscard]] QStringList texts() const {
        const auto all = programFrames();
        return all.empty() ? QStringList() : all.front().allTexts(Accessible::Objects::showing);
    }

    [[nodiscard]] std::optional<Accessible> item(const QString& text) const {
        const auto all = programFrames();
        return all.empty() ? std::nullopt : all.front().find(u"menu item"_s, text);
    }

    [[nodiscard]] bool isItemEnabled(const QString& text) const {
        const auto found = item(text);
        return found && found->isSensitive();
    }

    [[nodiscard]] bool choose(const QString& text) const {
        const auto found = item(text);
        return found && found->isSensitive() && found->press();
    }

    [[nodiscard]] std::optional<int> exitCode() {
        const bool hasEnded = m_program.state() == QProcess::NotRunning || m_program.waitForFinished(10'000);
        return hasEnded && m_program.exitStatus() == QProcess::NormalExit ? std::optional(m_program.exitCode())
                                                                          : std::nullopt;
    }

    static QString clipboard() {
        QProcess reader;
        reader.start(QStringLiteral(CORVANTA_CLIPBOARD_READER), QStringList());
        reader.waitForFinished(10'000);
        return QString::fromUtf8(reader.readAllStandardOutput());
    }

    QProcess m_program;
};

TEST_F(ShellEndToEnd, CopiesItsVersionFromTheHelpMenu) {
    launchProgram({});
    QProcess version;
    version.start(QStringLiteral(CORVANTA_PROGRAM), {u"--version"_s});
    ASSERT_TRUE(version.waitForFinished(10'000));
    const QString line = QString::fromUtf8(version.readAllStandardOutput()).trimmed();
    ASSERT_TRUE(line.startsWith(u"Corvanta "));
    ASSERT_TRUE(choose(u"Copy Version Information"_s));
    EXPECT_TRUE(eventually([&] { return clipboard() == line; })) << clipboard().toStdString();
}

TEST_F(ShellEndToEnd, PutsTheWindowsBackWhenItIsQuit) {
    launchProgram({u"--url"_s, m_site.address(), u"--device"_s, u"iPhone 16 Pro"_s});
    EXPECT_FALSE(isItemEnabled(u"Stop Workspace"_s));
    ASSERT_TRUE(choose(u"Start Workspace"_s));
    ASSERT_TRUE(eventually([this] { return isItemEnabled(u"Re-tile Windows"_s); }, startLimit));
    const QRect area = m_windows.workArea();
    const QRect column = onScreen(expectedColumns(area).simulator, area);
    ASSERT_TRUE(eventually([&] { return hasFrame(u"iPhone 16 Pro –"_s, column); }));
    EXPECT_FALSE(isItemEnabled(u"Start Workspace"_s));
    ASSERT_TRUE(choose(u"Quit Corvanta"_s));
    EXPECT_EQ(exitCode(), 0);
    // Back, and not gone: the Simulator is left running.
    EXPECT_TRUE(eventually(
        [&] { return frameOf(u"iPhone 16 Pro –"_s).has_value() && !hasFrame(u"iPhone 16 Pro –"_s, column); }));
}

TEST_F(ShellEndToEnd, EndsWithItsWindowWhereThereIsNoTray) {
    launchProgram({});
    ASSERT_TRUE(choose(u"Close Window"_s));
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(ShellEndToEnd, OutlivesItsWindowWhereThereIsATray) {
    const TrayHost tray;
    launchProgram({u"--url"_s, m_site.address(), u"--device"_s, u"iPhone 16 Pro"_s});
    ASSERT_TRUE(eventually([&] { return !tray.items().isEmpty(); }));
    EXPECT_EQ(tray.menu(), (QStringList{u"Status: Idle off"_s, u"Open Corvanta"_s, u"---"_s, u"Start Workspace"_s,
                                        u"Open / Reload Page off"_s, u"Re-tile Windows off"_s, u"Stop Workspace off"_s,
                                        u"---"_s, u"Check for Updates…"_s, u"---"_s, u"Quit Corvanta"_s}))
        << tray.menu().join(u'\n').toStdString();
    ASSERT_TRUE(choose(u"Close Window"_s));
    ASSERT_TRUE(eventually([this] { return !m_windows.window(u"Corvanta"_s); }));
    ASSERT_TRUE(tray.choose(u"Open Corvanta"_s));
    ASSERT_TRUE(eventually([this] { return m_windows.window(u"Corvanta"_s).has_value(); }));

    ASSERT_TRUE(eventually([this] { return choose(u"Close Window"_s); }));
    ASSERT_TRUE(eventually([this] { return !m_windows.window(u"Corvanta"_s); }));
    ASSERT_TRUE(tray.choose(u"Start Workspace"_s));
    ASSERT_TRUE(eventually([&] { return tray.menu().contains(u"Status: Running off"_s); }, startLimit))
        << tray.menu().join(u'\n').toStdString();
    EXPECT_TRUE(m_windows.window(u"Corvanta"_s));
    EXPECT_FALSE(tray.choose(u"Start Workspace"_s));
    ASSERT_TRUE(tray.choose(u"Quit Corvanta"_s));
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(ShellEndToEnd, OpensItsWindowWhereItWas) {
    launchProgram({});
    const QRect place(180, 70, 410, 720);
    m_windows.place(m_windows.window(u"Corvanta"_s)->id, place);
    ASSERT_TRUE(eventually([&] { return hasFrame(u"Corvanta"_s, place); }));
    ASSERT_TRUE(choose(u"Quit Corvanta"_s));
    ASSERT_EQ(exitCode(), 0);
    launchProgram({});
    EXPECT_TRUE(eventually([&] { return hasFrame(u"Corvanta"_s, place); }, 5s))
        << hasFrame(u"Corvanta"_s, place).message();
}

TEST_F(ShellEndToEnd, HandsASecondStartToTheFirst) {
    launchProgram({u"--device"_s, u"iPhone 16 Pro"_s});
    const auto [output, status] = startSecond({u"--url"_s, m_site.address(u"two.html"_s), u"--start"_s});
    EXPECT_EQ(status, 0);
    EXPECT_EQ(output, u"Corvanta is already running; its window has been brought forward.\n");
    EXPECT_TRUE(eventually([this] { return texts().contains(u"Workspace running"_s); }, startLimit))
        << texts().join(u'\n').toStdString();
    EXPECT_TRUE(eventually([] { return inspectorShows(u"Corvanta second page"_s); }));
    QSet<int> programs;
    for (const Accessible& frame : frames(u"Corvanta"_s))
        programs.insert(frame.processID());
    EXPECT_EQ(programs, QSet<int>{static_cast<int>(m_program.processId())});
}

TEST_F(ShellEndToEnd, IsAFirstOneAgainAfterTheFirstHasLeft) {
    launchProgram({});
    ASSERT_TRUE(choose(u"Quit Corvanta"_s));
    ASSERT_EQ(exitCode(), 0);
    launchProgram({});
    EXPECT_EQ(m_program.state(), QProcess::Running);
}

} // namespace

} // namespace corvanta::testing
