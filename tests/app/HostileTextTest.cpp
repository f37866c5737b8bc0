// SPDX-License-Identifier: MIT
#include "FakeError.h"
#include "OffscreenWindows.h"
#include "WindowViewTest.h"
#include "shell/MenuBarContentView.h"
#include "shell/ShellCommands.h"
#include "shell/UpdateAlertDialog.h"
#include "shell/WorkspaceWindow.h"
#include "updates/UpdateAlert.h"
#include "updates/UpdateChecker.h"
#include "window/DisplayText.h"
#include "window/widgets/IconButton.h"
#include "window/widgets/ListRow.h"
#include "window/widgets/LocationList.h"
#include "window/widgets/PlaceList.h"
#include "window/widgets/ToolTip.h"

#include <QAction>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QNetworkAccessManager>
#include <QPlainTextEdit>
#include <QTextDocument>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype million = 1'000'000;
/// Laying a million characters out takes many times as long.
constexpr qint64 layoutLimit = 20'000;

struct Case {
    const char* name;
    QString text;
};

void PrintTo(const Case& value, std::ostream* stream) {
    *stream << value.name;
}

/// Texts that pages, tools and servers may send.
const std::vector<Case> hostileTexts{
    {"MarkUp", u"<h1>Title</h1><img src=\"http://127.0.0.1:9/x.png\"><a href=\"http://127.0.0.1:9/\">here</a>"_s},
    {"Entities", u"&lt;b&gt;&amp;&#x202e;"_s},
    {"Controls", u"a\u0007b\u001b[31mc\rd\te\u0000f"_s},
    {"DirectionOverride", u"page \u202Egnp.exe\u202C \u2066isolated"_s},
    {"OneLongLine", QString(million, u'x')},
    {"LongWords", QString(u"wide "_s).repeated(million / 5)},
    {"ManyLines", QString(u"x\n"_s).repeated(million / 2)},
    {"HalfCharacters", u"\xD83D alone \xDE00"_s},
    {"NotUTF8", QString::fromUtf8("caf\xE9 \xFF\xFE")},
    {"StackedMarks", u"Z"_s + QString(20'000, QChar(0x0336))},
};

class HostileText : public WindowViewTest, public ::testing::WithParamInterface<Case> {
protected:
    HostileText() { m_timer.start(); }

    ~HostileText() override { EXPECT_LT(m_timer.elapsed(), layoutLimit) << "something froze"; }

    [[nodiscard]] static const QString& text() { return GetParam().text; }

    /// What a person sees must neither be turned round nor be without end.
    static void expectHarmless(const QString& shown) {
        EXPECT_LE(shown.size(), 2 * longestText + 64);
        for (const char16_t turning : {u'\u202D', u'\u202E', u'\u2066', u'\u2067', u'\u001B', u'\u0007'})
            EXPECT_FALSE(shown.contains(QChar(turning))) << static_cast<int>(turning);
    }

    /// What stands in one line.
    static void expectHarmlessLine(const QString& shown) {
        expectHarmless(shown);
        EXPECT_LE(shown.size(), longestLine + 16);
        EXPECT_FALSE(shown.contains(u'\n'));
    }

    /// That nothing in the window takes any text for more than its characters, and that those who hear the window are
    /// told no more than those who see it.
    static void expectHarmlessWindow(const QWidget& window) {
        expectHarmlessLine(window.windowTitle());
        for (const QLabel* const label : window.findChildren<QLabel*>()) {
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
            expectHarmless(label->text());
        }
        for (const QLineEdit* const field : window.findChildren<QLineEdit*>())
            expectHarmlessLine(field->text());
        for (const QAbstractButton* const button : window.findChildren<QAbstractButton*>()) {
            expectHarmless(button->text());
            EXPECT_TRUE(QKeySequence::mnemonic(button->text()).isEmpty()) << button->text().toStdString();
        }
        for (const QWidget* const widget : window.findChildren<QWidget*>()) {
            // Every tool tip that a text of others stands in is marked up by the program alone.
            if (!widget->toolTip().isEmpty() && Qt::mightBeRichText(widget->toolTip())) {
                EXPECT_FALSE(widget->toolTip().contains(u"<img"_s) || widget->toolTip().contains(u"<a "_s));
            }
            expectHarmless(widget->toolTip());
            expectHarmless(widget->accessibleName());
            expectHarmless(widget->accessibleDescription());
        }
    }

    void expectHarmlessView() const {
        expectHarmlessWindow(view());
        EXPECT_LE(view().minimumSizeHint().width(), 430);
    }

    void failToStart() {
        simulator.script.fail(testing::SimulatorOperation::boot, testing::FakeError(text(), text()));
        const auto task = start();
        drain();
        ASSERT_EQ(coordinator->phase(), WorkspacePhase::failed);
    }

private:
    QElapsedTimer m_timer;
};

TEST_P(HostileText, IsShownAsTheNamesOfPages) {
    makeReady();
    showView();
    askForPage(text(), u"Other"_s);
    expectHarmlessView();
    const auto rows = shown<ListRow>(view());
    ASSERT_GE(rows.size(), 2);
    for (const ListRow* const row : rows)
        EXPECT_LE(row->accessibleName().size(), longestLine + 1);
}

TEST_P(HostileText, IsShownAsTheNameOfADevice) {
    makeReady();
    simulator.devices = {device(u"A"_s, text(), u"Shutdown"_s)};
    showView();
    const testing::WatchedTask<void> refreshed(coordinator->refreshDevices());
    drain();
    settle();
    expectHarmlessView();
    const auto pickers = shown<QComboBox>(view());
    ASSERT_FALSE(pickers.empty());
    EXPECT_LE(pickers.front()->itemText(0).size(), longestLine + 1);
    EXPECT_FALSE(pickers.front()->itemText(0).contains(u'\n'));
}

TEST_P(HostileText, IsShownAsStatusAndRecovery) {
    makeReady();
    showView();
    failToStart();
    settle();
    expectHarmlessView();
}

TEST_P(HostileText, IsShownAsASetupCheck) {
    makeReady();
    showView();
    probe.found.xcodeVersion = text();
    const testing::WatchedTask<void> checks(coordinator->runSetupChecks());
    drain();
    settle();
    ASSERT_TRUE(std::ranges::any_of(coordinator->setupChecks(),
                                    [](const SetupCheck& check) { return check.detail.contains(text()); }));
    expectHarmlessView();
}

TEST_P(HostileText, IsShownAsTheNameOfASavedPlace) {
    constexpr Coordinate oslo{59.9139, 10.7522};
    makeReady();
    coordinator->selectLocation(oslo, text(), false);
    coordinator->saveFavorite();
    const testing::WatchedTask<void> used(coordinator->setLocationOnSimulator());
    ASSERT_EQ(coordinator->favorites().size(), 1U);
    ASSERT_EQ(coordinator->recents().size(), 1U);
    showView();
    expectHarmlessView();
    int rows = 0;
    for (const LocationList* const list : view().findChildren<LocationList*>()) {
        for (const ListRow* const row : list->findChildren<ListRow*>()) {
            expectHarmlessLine(row->accessibleName());
            ++rows;
        }
        for (const IconButton* const trash : list->findChildren<IconButton*>())
            expectHarmlessLine(trash->accessibleName());
    }
    EXPECT_EQ(rows, 2);
}

TEST_P(HostileText, IsShownAsASuggestedPlace) {
    makeReady();
    showView();
    placeSearch.latestCompleter->suggest(
        {{.title = text(), .subtitle = text(), .source = nullptr}, {.title = u"Oslo"_s, .subtitle = {}, .source = {}}});
    settle();
    expectHarmlessView();
    const auto* const list = view().findChild<PlaceList*>();
    ASSERT_NE(list, nullptr);
    const auto rows = shown<ListRow>(*list);
    ASSERT_EQ(rows.size(), 2U);
    expectHarmlessLine(rows.front()->accessibleName());
    expectHarmlessLine(rows.front()->accessibleDescription());
    // Its title then stands in the field.
    rows.front()->click();
    settle();
    expectHarmlessView();
    drain();
}

TEST_P(HostileText, IsShownAsTheReasonWhyNothingIsSuggested) {
    makeReady();
    showView();
    placeSearch.latestCompleter->fail(text());
    settle();
    expectHarmlessView();
}

TEST_P(HostileText, ReachesNoMenuAndNoWindowTitle) {
    makeReady();
    QNetworkAccessManager session;
    UpdateChecker checker(URL::parse(u"http://127.0.0.1:9/"_s).value(), u"27"_s, {.session = session, .clock = clock});
    ShellCommands commands({.coordinator = *coordinator, .updateChecker = checker, .desktop = desktop, .tasks = tasks});
    const MenuBarContentView trayMenu(commands);
    const WorkspaceWindow window(new QWidget, commands);
    const auto texts = [&] {
        QStringList result;
        for (const QAction* const action : trayMenu.actions() + window.findChildren<QAction*>())
            result += {action->text(), action->toolTip(), action->statusTip(), action->whatsThis()};
        return result + QStringList(window.windowTitle());
    };
    settle();
    QStringList expected = texts();
    simulator.devices = {device(u"A"_s, text(), u"Shutdown"_s)};
    const testing::WatchedTask<void> refreshed(coordinator->refreshDevices());
    drain();
    failToStart();
    settle();
    // The menus tell of the phase alone.
    expected.replaceInStrings(u"Status: Idle"_s, statusText(WorkspacePhase::failed));
    EXPECT_EQ(texts().join(u'\n').toStdString(), expected.join(u'\n').toStdString());
    EXPECT_EQ(window.windowTitle(), u"Corvanta");
}

TEST_P(HostileText, IsShownInATooltip) {
    QTextDocument document;
    document.setHtml(plainToolTip(text()));
    expectHarmless(document.toPlainText());
    EXPECT_TRUE(document.allFormats().size() <= 3);
    if (text().startsWith(u"<h1>"_s)) {
        EXPECT_EQ(document.toPlainText(), text());
    }
}

TEST_P(HostileText, IsShownInAnAlertAboutUpdates) {
    const testing::OffscreenWindows offscreenWindows;
    const UpdateAlert alert = UpdateAlert::available({.version = text(),
                                                      .build = 28,
                                                      .downloadURL = URL::parse(u"https://corvanta.dev/"_s).value(),
                                                      .releaseNotes = text(),
                                                      .sha256 = {}});
    UpdateAlertDialog dialog(updateAlertContent(alert, u"1.0"_s), nullptr);
    dialog.show();
    settle();
    expectHarmlessWindow(dialog);
    expectHarmlessLine(dialog.accessibleName());
    const auto* const message = dialog.findChild<QPlainTextEdit*>();
    ASSERT_NE(message, nullptr);
    for (const QString& line : message->toPlainText().split(u'\n'))
        expectHarmless(line);
    EXPECT_LE(dialog.width(), 600);
    EXPECT_LE(dialog.height(), 700);
}

INSTANTIATE_TEST_SUITE_P(All, HostileText, ::testing::ValuesIn(hostileTexts),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(DisplayText, LeavesOrdinaryTextsAsTheyAre) {
    for (const QString& text : {u""_s, u"iPhone 16 Pro — iOS 18.2 • Booted"_s, u"Zoë’s 📱 日本語 שלום"_s, u"a\nb"_s})
        EXPECT_EQ(displayText(text), text);
    EXPECT_EQ(displayText(QString(longestText, u'x')).size(), longestText);
}

TEST(DisplayText, ReplacesControlsAndLeavesOutWhatTurnsTheDirection) {
    EXPECT_EQ(displayText(u"a\tb\u001Bc\u202Ed\u2069e"_s), u"a b cde"_s);
    EXPECT_EQ(displayText(u"a\nb"_s, longestLine), u"a b"_s);
}

TEST(DisplayText, CutsLongTextsBetweenCharacters) {
    EXPECT_EQ(displayText(u"abcdef"_s, 4), u"abc…"_s);
    EXPECT_EQ(displayText(u"ab😀def"_s, 4), u"ab…"_s);
    EXPECT_EQ(displayText(QString(10, QChar(0x202E)), 4), u"…"_s);
}

} // namespace

} // namespace corvanta
