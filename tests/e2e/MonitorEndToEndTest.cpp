// SPDX-License-Identifier: MIT
// What happens to a workspace while it runs: pages and windows come and go, and a person works beside it.
#include "Printing.h"
#include "WorkspaceEndToEnd.h"

#include <QElapsedTimer>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QSettings>

namespace corvanta::testing {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

/// A poll after two seconds and an attach, with time to spare for a busy machine.
constexpr auto attachLimit = 40s;

class MonitorEndToEnd : public WorkspaceEndToEnd {
protected:
    /// Starts the program such that it prints every phase and status, and waits until the workspace runs.
    void runOn(const QString& page = {}) {
        m_corvanta.start({u"--url"_s, m_site.address(page), u"--start"_s});
        ASSERT_TRUE(eventually([this] { return wasTold({"  Workspace running"}); }, startLimit))
            << m_corvanta.output().constData() << shownTexts();
        waitUntilRunning();
        ASSERT_TRUE(eventually([this] { return inspectorWindows().size() == 1; }));
        m_inspector = inspectorWindows().front();
        m_printed = m_corvanta.output().size();
    }

    /// What was printed since the workspace ran, or since `forget`.
    [[nodiscard]] QByteArray news() { return m_corvanta.output().sliced(m_printed); }

    void forget() { m_printed = m_corvanta.output().size(); }

    /// Whether the one inspector there is now is another than the one at the beginning, with this title.
    ///
    /// Each is a process of its own; window identifiers are used again.
    [[nodiscard]] bool hasNewInspector(const QString& title) const {
        const auto inspectors = inspectorWindows();
        return inspectors.size() == 1 && inspectors.front().processID != m_inspector.processID &&
               inspectors.front().title == title;
    }

    [[nodiscard]] bool hasTheSameInspector() const {
        const auto inspectors = inspectorWindows();
        return inspectors.size() == 1 && inspectors.front().processID == m_inspector.processID;
    }

    /// Whether the texts were printed in this order since `forget`.
    [[nodiscard]] bool wasTold(const QByteArrayList& texts) {
        const QByteArray all = news();
        qsizetype position = 0;
        for (const QByteArray& text : texts) {
            position = all.indexOf("s  " + text + '\n', position);
            if (position < 0)
                return false;
        }
        return true;
    }

    ObservedWindow m_inspector;
    qsizetype m_printed = 0;
};

TEST_F(MonitorEndToEnd, FollowsThePageToTheOneThatItOpens) {
    ASSERT_NO_FATAL_FAILURE(runOn());
    ASSERT_TRUE(eventually([] { return pressOnPage(u"Open a page"_s); }));
    EXPECT_TRUE(eventually(
        [this] {
            return wasTold({"Attaching inspector", "  Attaching Web Inspector to 127.0.0.1 — two.html", "Running",
                            "  Workspace running"});
        },
        attachLimit))
        << m_corvanta.output().constData();
    EXPECT_TRUE(eventually([this] { return hasNewInspector(u"Web Inspector — 127.0.0.1 — two.html"_s); }));
    EXPECT_TRUE(eventually([] { return inspectorShows(u"Corvanta second page"_s); }));
    EXPECT_TRUE(m_corvanta.shows(u"Workspace running"_s)) << shownTexts();
}

TEST_F(MonitorEndToEnd, AsksWhichOfTwoNewPagesToInspect) {
    ASSERT_NO_FATAL_FAILURE(runOn());
    ASSERT_NO_FATAL_FAILURE(openTwoPagesAtOnce());
    EXPECT_TRUE(eventually([this] { return m_corvanta.shows(u"Choose the newest Safari page"_s); }, attachLimit))
        << m_corvanta.output().constData();
    EXPECT_TRUE(m_corvanta.shows(u"More than one inspectable page appeared."_s)) << shownTexts();
    EXPECT_TRUE(m_corvanta.shows(u"Choose Safari Page"_s)) << shownTexts();
    EXPECT_TRUE(m_corvanta.isEnabled(u"127.0.0.1 — two.html"_s)) << shownTexts();
    EXPECT_TRUE(hasTheSameInspector());
    EXPECT_FALSE(wasTold({"Attaching inspector"})) << m_corvanta.output().constData();

    ASSERT_TRUE(m_corvanta.press(u"127.0.0.1 — index.html"_s)) << shownTexts();
    EXPECT_TRUE(eventually(
        [this] {
            return wasTold({"  Choose the newest Safari page", "Attaching inspector",
                            "  Attaching Web Inspector to 127.0.0.1 — index.html", "Running", "  Workspace running"});
        },
        attachLimit))
        << m_corvanta.output().constData();
    EXPECT_TRUE(m_corvanta.shows(u"Workspace running"_s)) << shownTexts();
    EXPECT_TRUE(eventually([this] { return hasNewInspector(u"Web Inspector — 127.0.0.1 — index.html"_s); }));
    EXPECT_FALSE(m_corvanta.shows(u"Choose Safari Page"_s)) << shownTexts();
    EXPECT_FALSE(m_corvanta.shows(u"More than one inspectable page appeared."_s)) << shownTexts();
}

TEST_F(MonitorEndToEnd, BringsBackAnInspectorThatAPersonClosed) {
    ASSERT_NO_FATAL_FAILURE(runOn());
    m_windows.close(m_inspector.id);
    EXPECT_TRUE(eventually([this] { return hasNewInspector(u"Web Inspector — 127.0.0.1"_s); }, attachLimit));
    EXPECT_TRUE(eventually(
        [this] {
            return wasTold(
                {"Attaching inspector", "  Attaching Web Inspector to 127.0.0.1", "Running", "  Workspace running"});
        },
        attachLimit))
        << m_corvanta.output().constData();
    const QRect area = m_windows.workArea();
    const QRect column = onScreen(expectedColumns(area).inspector, area);
    EXPECT_TRUE(eventually([&] { return hasFrame(u"Web Inspector"_s, column); }))
        << hasFrame(u"Web Inspector"_s, column).message();
    EXPECT_TRUE(m_corvanta.shows(u"Workspace running"_s)) << shownTexts();
}

TEST_F(MonitorEndToEnd, ReloadsToAnAddressTypedWithoutItsScheme) {
    ASSERT_NO_FATAL_FAILURE(runOn());
    const QString address = m_site.address(u"two.html"_s);
    ASSERT_TRUE(address.startsWith(u"http://"_s));
    ASSERT_TRUE(m_corvanta.typeAddress(u"  "_s + address.sliced(7) + u' '));
    ASSERT_TRUE(m_corvanta.press(u"Open / Reload"_s));
    EXPECT_TRUE(eventually(
        [this] {
            return wasTold({"Opening page", "  Opening 127.0.0.1", "Attaching inspector",
                            "  Attaching Web Inspector to 127.0.0.1 — two.html", "Running", "  Workspace running"});
        },
        attachLimit))
        << m_corvanta.output().constData();
    EXPECT_EQ(m_corvanta.address(), address);
    EXPECT_TRUE(eventually([this] { return hasNewInspector(u"Web Inspector — 127.0.0.1 — two.html"_s); }));
    EXPECT_TRUE(eventually([] { return inspectorShows(u"Corvanta second page"_s); }));
}

TEST_F(MonitorEndToEnd, StaysAsItIsWhenTheDeviceIsShutDownFromOutside) {
    ASSERT_NO_FATAL_FAILURE(runOn());
    const QStringList texts = m_corvanta.texts();
    int status = -1;
    runTool(u"xcrun"_s, {u"simctl"_s, u"shutdown"_s, u"all"_s}, &status);
    ASSERT_EQ(status, 0);
    ASSERT_TRUE(eventually([this] { return !m_windows.window(u"iP"_s) && inspectorWindows().empty(); }));
    // The time is what is tested here: several polls, none of which may change anything.
    EXPECT_FALSE(eventually([&] { return !news().isEmpty() || m_corvanta.texts() != texts; }, 7s))
        << m_corvanta.output().constData() << shownTexts();

    ASSERT_TRUE(m_corvanta.press(u"Stop"_s));
    ASSERT_TRUE(eventually([this] { return m_corvanta.shows(u"Stopped; external apps were left running"_s); }));
    ASSERT_TRUE(eventually([this] { return m_corvanta.isEnabled(u"Start Workspace"_s); }));
    ASSERT_NO_FATAL_FAILURE(startAndWait());
    EXPECT_TRUE(eventually([this] { return hasNewInspector(u"Web Inspector — 127.0.0.1"_s); }));
}

TEST_F(MonitorEndToEnd, LeavesARestlessPageAlone) {
    ASSERT_NO_FATAL_FAILURE(runOn(u"restless.html"_s));
    ASSERT_TRUE(eventually([] { return pressOnPage(u"Change the address too"_s); }));
    // The inspector's title is made of what the Develop menu shows, so from now on the menu's items change.
    ASSERT_TRUE(
        eventually([this] { return m_windows.window(u"Web Inspector — 127.0.0.1 — restless-"_s).has_value(); }));
    const QString title = m_windows.window(u"Web Inspector"_s)->title;
    EXPECT_FALSE(eventually([this] { return !news().isEmpty() || !hasTheSameInspector(); }, 30s))
        << m_corvanta.output().constData();
    EXPECT_TRUE(m_corvanta.shows(u"Workspace running"_s)) << shownTexts();
    EXPECT_NE(m_windows.window(u"Web Inspector"_s)->title, title) << "the page has come to rest";
}

TEST_F(MonitorEndToEnd, StartsOnARestlessPageOrSaysThatItIsGone) {
    m_corvanta.start({u"--url"_s, m_site.address(u"restless.html?address"_s), u"--start"_s});
    ASSERT_TRUE(eventually([this] { return wasTold({"Attaching inspector"}); }, startLimit))
        << m_corvanta.output().constData();
    ASSERT_TRUE(eventually([this] { return wasTold({"Running"}) || wasTold({"Needs attention"}); }, 25s))
        << m_corvanta.output().constData();
    if (wasTold({"Running"})) {
        EXPECT_TRUE(eventually([this] { return m_corvanta.shows(u"Workspace running"_s); })) << shownTexts();
        EXPECT_TRUE(m_windows.window(u"Web Inspector — 127.0.0.1 — restless"_s));
        return;
    }
    EXPECT_TRUE(eventually([this] {
        return m_corvanta.shows(u"Open the page again or choose another inspectable page."_s);
    })) << shownTexts();
    const QStringList gone = m_corvanta.texts().filter(u"The Safari target 127.0.0.1 — restless"_s);
    ASSERT_EQ(gone.size(), 1) << shownTexts();
    EXPECT_TRUE(gone.front().endsWith(u" is no longer available."_s)) << qPrintable(gone.front());
    EXPECT_TRUE(m_corvanta.isEnabled(u"Start Workspace"_s));
}

/// Another program, into whose one field a person types.
class TypingWindow {
public:
    TypingWindow() {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(QStringLiteral(CORVANTA_TYPING_WINDOW), {});
    }

    ~TypingWindow() {
        m_process.terminate();
        if (!m_process.waitForFinished(5000))
            m_process.kill();
        m_process.waitForFinished(5000);
    }

    TypingWindow(const TypingWindow&) = delete;
    TypingWindow& operator=(const TypingWindow&) = delete;

    /// The text of the field after each change.
    [[nodiscard]] const QByteArrayList& texts() {
        while (m_process.canReadLine())
            m_texts.append(m_process.readLine().trimmed());
        return m_texts;
    }

private:
    QProcess m_process;
    QByteArrayList m_texts;
};

/// A letter or digit for each keystroke, in an order in which two swapped or one lost make another text.
QByteArray textToType(int length) {
    const QByteArray letters = "abcdefghijklmnopqrstuvwxyz0123456789";
    QByteArray text;
    for (qsizetype index = 0; index < length; ++index)
        text += letters[(7 * index + index / letters.size()) % letters.size()];
    return text;
}

TEST_F(MonitorEndToEnd, LetsAPersonTypeAndPointElsewhere) {
    constexpr int keystrokes = 300;
    ASSERT_NO_FATAL_FAILURE(runOn());
    // An inspector that has just opened comes to the front once it has loaded.
    ASSERT_TRUE(eventually([] { return inspectorShows(u"data-page"_s); }));
    TypingWindow other;
    ASSERT_TRUE(eventually([this] { return m_windows.window(u"Typing"_s).has_value(); }));
    const std::uint32_t window = m_windows.window(u"Typing"_s)->id;
    m_windows.activate(window);
    ASSERT_TRUE(eventually([&] { return m_windows.activeWindow() == window; }));

    const QByteArray text = textToType(keystrokes);
    int looks = 0;
    int held = 0;
    int elsewhere = 0;
    QProcess typist;
    typist.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    QElapsedTimer elapsed;
    elapsed.start();
    typist.start(u"xdotool"_s, {u"type"_s, u"--delay"_s, u"200"_s, QString::fromLatin1(text)});
    ASSERT_TRUE(typist.waitForStarted());
    ASSERT_TRUE(eventually(
        [&] {
            ++looks;
            held += m_windows.isPointerFree() ? 0 : 1;
            elsewhere += m_windows.activeWindow() == window ? 0 : 1;
            return typist.state() == QProcess::NotRunning;
        },
        120s));
    EXPECT_EQ(typist.exitCode(), 0);
    EXPECT_GE(elapsed.elapsed(), 30'000) << "the menu was read some fifteen times meanwhile";
    EXPECT_GT(looks, keystrokes);
    EXPECT_EQ(held, 0) << "of " << looks << " looks";
    EXPECT_EQ(elsewhere, 0) << "of " << looks << " looks";
    // One change for each keystroke, so nothing was typed twice or taken back.
    EXPECT_TRUE(eventually([&] { return other.texts().size() >= keystrokes; })) << other.texts().size();
    EXPECT_EQ(other.texts().size(), keystrokes);
    EXPECT_EQ(other.texts().last(), text);
    EXPECT_TRUE(news().isEmpty()) << m_corvanta.output().constData();

    // The watch was kept meanwhile.
    ASSERT_TRUE(eventually([] { return pressOnPage(u"Open a page"_s); }));
    EXPECT_TRUE(eventually([this] { return hasNewInspector(u"Web Inspector — 127.0.0.1 — two.html"_s); }, attachLimit));
}

/// The identifier of a device of the lab's runtime iOS 17.5.
QString olderDevice(const QString& name) {
    const QString list = runTool(u"xcrun"_s, {u"simctl"_s, u"list"_s, u"devices"_s, u"-j"_s});
    const QJsonObject runtimes = QJsonDocument::fromJson(list.toUtf8())[u"devices"_s].toObject();
    for (const QJsonValue& device : runtimes[u"com.apple.CoreSimulator.SimRuntime.iOS-17-5"_s].toArray()) {
        if (device[u"name"_s] == name)
            return device[u"udid"_s].toString();
    }
    return {};
}

TEST_F(MonitorEndToEnd, RemembersTheAddressAndTheDevice) {
    const QString udid = olderDevice(u"iPhone 15 Pro"_s);
    ASSERT_FALSE(udid.isEmpty());
    const QString address = m_site.address(u"two.html"_s);
    ASSERT_NO_FATAL_FAILURE(launch({u"--device"_s, udid}));
    EXPECT_EQ(m_corvanta.address(), u"http://localhost:3000");
    ASSERT_TRUE(eventually([this] { return m_corvanta.device() == u"iPhone 15 Pro — iOS 17.5"; }));
    ASSERT_TRUE(m_corvanta.typeAddress(address.sliced(7) + u' '));
    ASSERT_NO_FATAL_FAILURE(startAndWait());
    EXPECT_EQ(m_corvanta.quit(), 0);

    const QByteArray stored = QSettings(QSettings::NativeFormat, QSettings::UserScope, u"Corvanta"_s, u"Corvanta"_s)
                                  .value(u"workspaceProfile"_s)
                                  .toByteArray();
    const QJsonObject profile = QJsonDocument::fromJson(stored).object();
    EXPECT_EQ(profile[u"pageURL"_s].toString(), address) << stored.constData();
    EXPECT_EQ(profile[u"selectedDeviceUDID"_s].toString(), udid) << stored.constData();

    ASSERT_NO_FATAL_FAILURE(launch({}));
    EXPECT_EQ(m_corvanta.address(), address);
    EXPECT_TRUE(eventually([this] { return m_corvanta.device() == u"iPhone 15 Pro — iOS 17.5 • Booted"; }))
        << qPrintable(m_corvanta.device());
}

} // namespace

} // namespace corvanta::testing
