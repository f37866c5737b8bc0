// SPDX-License-Identifier: MIT
// One walk through the running program as a person takes it who hears the screen and works by the keyboard.
#include "Announcements.h"
#include "Printing.h"
#include "TrayHost.h"
#include "WorkspaceEndToEnd.h"

#include <QProcess>
#include <QSettings>

#include <memory>

namespace corvanta::testing {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

/// The preferences that the program and its tests share a desktop's folder for.
QSettings preferences() {
    return QSettings(QSettings::NativeFormat, QSettings::UserScope, u"Corvanta"_s, u"Corvanta"_s);
}

class WorkspaceWalkEndToEnd : public WorkspaceEndToEnd {
protected:
    void SetUp() override {
        WorkspaceEndToEnd::SetUp();
        // What an earlier session leaves behind.
        const QByteArray favorites =
            R"([{"id":"0F2F5C0A-5A0E-4C6B-9E51-0B6A4D0C7A01","name":"Shibuya crossing","coordinate":)"
            R"({"latitude":35.65948,"longitude":139.70055},"createdAt":800000000},)"
            R"({"id":"0F2F5C0A-5A0E-4C6B-9E51-0B6A4D0C7A02","name":"Office","coordinate":)"
            R"({"latitude":37.33182,"longitude":-122.03118},"createdAt":790000000}])";
        preferences().setValue(u"favoriteLocations"_s, favorites);
        m_announcements = std::make_unique<Announcements>();
    }

    void looksForTheFirstTime() {
        ASSERT_NO_FATAL_FAILURE(launch({}));
        ASSERT_TRUE(eventually([this] { return m_corvanta.shows(u"Ready"_s); })) << shownTexts();
        const QStringList texts = m_corvanta.texts();
        for (const QString& text :
             {u"Corvanta"_s, u"Web testing workspace for iOS Simulator"_s, u"Idle"_s, u"Setup ready"_s,
              u"Apple silicon Mac"_s, u"macOS 15 or later"_s, u"Xcode"_s, u"Simulator command tools"_s,
              u"iOS Simulator runtime"_s, u"Accessibility permission"_s, u"Safari developer features"_s,
              u"Shibuya crossing"_s, u"Office"_s, u"No location will be restored"_s, u"Ready"_s})
            EXPECT_TRUE(texts.contains(text)) << qPrintable(text) << " is missing in\n" << shownTexts();
        EXPECT_FALSE(texts.contains(u"Choose Safari Page"_s));
        EXPECT_EQ(m_corvanta.address(), u"http://localhost:3000"_s);
        EXPECT_TRUE(m_corvanta.device().contains(u" — iOS "_s)) << qPrintable(m_corvanta.device());
        expectTray(u"Idle"_s, {.start = u""_s, .others = u" off"_s});
    }

    /// What stands behind the entries that may be disabled.
    struct TrayState {
        QString start;
        QString others;
    };

    void expectTray(const QString& phase, const TrayState& state) {
        const QStringList expected{u"Status: "_s + phase + u" off"_s,
                                   u"Open Corvanta"_s,
                                   u"---"_s,
                                   u"Start Workspace"_s + state.start,
                                   u"Open / Reload Page"_s + state.others,
                                   u"Re-tile Windows"_s + state.others,
                                   u"Stop Workspace"_s + state.others,
                                   u"---"_s,
                                   u"Check for Updates…"_s,
                                   u"---"_s,
                                   u"Quit Corvanta"_s};
        EXPECT_TRUE(eventually([&] { return m_tray.menu() == expected; })) << m_tray.menu().join(u'\n').toStdString();
    }

    /// Gives the keyboard to the address field. Windows that have just opened may take it for themselves.
    [[nodiscard]] bool reachAddress() {
        return eventually([this] {
            const auto window = m_windows.window(u"Corvanta"_s);
            const auto field = m_corvanta.addressField();
            if (!window || !field)
                return false;
            if (m_windows.activeWindow() == window->id && field->isFocused())
                return true;
            m_windows.activate(window->id);
            std::ignore = field->takeFocus();
            return false;
        });
    }

    static void pressKeys(const QStringList& arguments) { QProcess::execute(u"xdotool"_s, arguments); }

    void typeAddress(const QString& address) {
        ASSERT_TRUE(eventually([&] {
            if (!reachAddress())
                return false;
            pressKeys({u"key"_s, u"ctrl+a"_s, u"type"_s, u"--delay"_s, u"15"_s, address});
            return eventually([&] { return m_corvanta.address() == address; }, 5s);
        })) << qPrintable(m_corvanta.address());
    }

    /// Presses Return in the address field until the program says that it has begun.
    void pressReturnInAddress(const QString& begun) {
        m_announcements->forget();
        ASSERT_TRUE(eventually([&] {
            if (!reachAddress())
                return false;
            pressKeys({u"key"_s, u"Return"_s});
            return eventually([&] { return m_announcements->heard({begun}); }, 10s);
        })) << m_announcements->text();
    }

    void waitUntilAttached(const QStringList& announcements, const QString& inspectorTitle) {
        ASSERT_TRUE(eventually([&] { return m_announcements->heard(announcements); }, startLimit))
            << m_announcements->text() << shownTexts();
        ASSERT_TRUE(eventually([&] { return inspectorTitles() == QStringList{inspectorTitle}; }))
            << inspectorTitles().join(u'\n').toStdString();
        // An inspector that has just opened comes to the front once it has loaded.
        ASSERT_TRUE(eventually([] { return inspectorShows(u"data-page"_s); }));
        EXPECT_TRUE(m_corvanta.shows(u"Workspace running"_s)) << shownTexts();
    }

    [[nodiscard]] QStringList inspectorTitles() const {
        QStringList titles;
        for (const ObservedWindow& window : inspectorWindows())
            titles.append(window.title);
        return titles;
    }

    void startsByReturn() {
        ASSERT_NO_FATAL_FAILURE(typeAddress(m_site.address(u"two.html"_s)));
        ASSERT_NO_FATAL_FAILURE(pressReturnInAddress(u"Checking setup"_s));
        ASSERT_NO_FATAL_FAILURE(waitUntilAttached({u"Checking setup"_s, u"Booting"_s, u"Opening page"_s,
                                                   u"Opening 127.0.0.1 in simulated Safari"_s, u"Attaching inspector"_s,
                                                   u"Attaching Web Inspector to 127.0.0.1 — two.html"_s, u"Running"_s,
                                                   u"Workspace running"_s},
                                                  u"Web Inspector — 127.0.0.1 — two.html"_s));
        // What is said is said by the program, in the name of what shows it.
        const auto& last = m_announcements->all().back();
        EXPECT_EQ(last.source.name(), last.text);
        EXPECT_EQ(last.source.processID(), m_corvanta.processID());
        expectTray(u"Running"_s, {.start = u" off"_s, .others = u""_s});
        EXPECT_FALSE(m_corvanta.isEnabled(u"Start Workspace"_s));
    }

    void reloadsByReturn() {
        ASSERT_NO_FATAL_FAILURE(typeAddress(m_site.address()));
        ASSERT_NO_FATAL_FAILURE(pressReturnInAddress(u"Opening page"_s));
        ASSERT_NO_FATAL_FAILURE(waitUntilAttached(
            {u"Opening page"_s, u"Opening 127.0.0.1"_s, u"Attaching inspector"_s, u"Running"_s, u"Workspace running"_s},
            u"Web Inspector — 127.0.0.1"_s));
        EXPECT_FALSE(m_announcements->heard({u"Checking setup"_s})) << "it was started anew";
    }

    void choosesAPage() {
        m_announcements->forget();
        ASSERT_NO_FATAL_FAILURE(openTwoPagesAtOnce());
        ASSERT_TRUE(eventually([this] {
            return m_announcements->heard(
                {u"Choose the newest Safari page"_s, u"More than one inspectable page appeared."_s});
        })) << m_announcements->text();
        ASSERT_TRUE(eventually([this] { return m_corvanta.shows(u"Choose Safari Page"_s); })) << shownTexts();
        EXPECT_TRUE(m_corvanta.isEnabled(u"127.0.0.1 — two.html"_s)) << shownTexts();
        ASSERT_TRUE(m_corvanta.press(u"127.0.0.1 — index.html"_s)) << shownTexts();
        ASSERT_NO_FATAL_FAILURE(
            waitUntilAttached({u"Attaching inspector"_s, u"Attaching Web Inspector to 127.0.0.1 — index.html"_s,
                               u"Running"_s, u"Workspace running"_s},
                              u"Web Inspector — 127.0.0.1 — index.html"_s));
        EXPECT_FALSE(m_corvanta.shows(u"Choose Safari Page"_s)) << shownTexts();
    }

    void stops() {
        m_announcements->forget();
        ASSERT_TRUE(m_corvanta.press(u"Stop"_s));
        ASSERT_TRUE(eventually([this] {
            return m_announcements->heard({u"Idle"_s, u"Stopped; external apps were left running"_s});
        })) << m_announcements->text();
        EXPECT_TRUE(m_corvanta.shows(u"Stopped; external apps were left running"_s)) << shownTexts();
        expectTray(u"Idle"_s, {.start = u""_s, .others = u" off"_s});
    }

    void selectsAndDeletesAFavorite() {
        m_announcements->forget();
        ASSERT_TRUE(m_corvanta.press(u"Shibuya crossing"_s));
        ASSERT_TRUE(eventually([this] { return m_announcements->heard({u"Shibuya crossing"_s}); }));
        EXPECT_TRUE(eventually([this] { return m_corvanta.shows(u"35.65948,139.70055"_s); })) << shownTexts();
        EXPECT_FALSE(m_corvanta.shows(u"No location will be restored"_s)) << shownTexts();

        ASSERT_TRUE(m_corvanta.press(u"Delete Shibuya crossing"_s));
        ASSERT_TRUE(eventually([this] { return m_announcements->heard({u"Deleted favorite"_s}); }));
        EXPECT_TRUE(eventually([this] { return !m_corvanta.isEnabled(u"Delete Shibuya crossing"_s); })) << shownTexts();
        EXPECT_TRUE(m_corvanta.isEnabled(u"Delete Office"_s)) << shownTexts();
        const auto kept = [] { return preferences().value(u"favoriteLocations"_s).toByteArray(); };
        EXPECT_TRUE(eventually([&] { return kept().contains("Office") && !kept().contains("Shibuya"); }))
            << kept().constData();
    }

    void copiesItsVersion() {
        QProcess version;
        version.start(QStringLiteral(CORVANTA_PROGRAM), {u"--version"_s});
        ASSERT_TRUE(version.waitForFinished(10'000));
        const QString line = QString::fromUtf8(version.readAllStandardOutput()).trimmed();
        ASSERT_TRUE(line.startsWith(u"Corvanta "_s));
        ASSERT_TRUE(m_corvanta.choose(u"Copy Version Information"_s));
        EXPECT_TRUE(eventually([&] { return clipboard() == line; })) << clipboard().toStdString();
    }

    void quitsFromTheTray() {
        const QRect own(500, 90, 380, 640);
        const auto simulator = m_windows.window(u"iP"_s);
        if (!simulator)
            FAIL() << "the Simulator has gone";
        m_windows.place(simulator->id, own);
        ASSERT_TRUE(eventually([&] { return hasFrame(u"iP"_s, own); })) << hasFrame(u"iP"_s, own).message();
        ASSERT_TRUE(m_tray.choose(u"Start Workspace"_s));
        ASSERT_TRUE(eventually([this] { return m_tray.menu().contains(u"Status: Running off"_s); }, startLimit))
            << m_tray.menu().join(u'\n').toStdString();
        const QRect area = m_windows.workArea();
        const QRect column = onScreen(expectedColumns(area).simulator, area);
        ASSERT_TRUE(eventually([&] { return hasFrame(u"iP"_s, column); })) << hasFrame(u"iP"_s, column).message();

        ASSERT_TRUE(m_tray.choose(u"Quit Corvanta"_s));
        EXPECT_EQ(m_corvanta.exitCode(), 0);
        EXPECT_TRUE(eventually([&] { return hasFrame(u"iP"_s, own); })) << hasFrame(u"iP"_s, own).message();
    }

    // Before the program starts, which looks for a tray only then.
    TrayHost m_tray;
    std::unique_ptr<Announcements> m_announcements;
};

TEST_F(WorkspaceWalkEndToEnd, GoesFromTheFirstLookToQuit) {
    ASSERT_NO_FATAL_FAILURE(looksForTheFirstTime());
    ASSERT_NO_FATAL_FAILURE(startsByReturn());
    ASSERT_NO_FATAL_FAILURE(reloadsByReturn());
    ASSERT_NO_FATAL_FAILURE(choosesAPage());
    ASSERT_NO_FATAL_FAILURE(stops());
    ASSERT_NO_FATAL_FAILURE(selectsAndDeletesAFavorite());
    ASSERT_NO_FATAL_FAILURE(copiesItsVersion());
    ASSERT_NO_FATAL_FAILURE(quitsFromTheTray());
}

} // namespace

} // namespace corvanta::testing
