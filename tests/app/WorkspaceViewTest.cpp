// SPDX-License-Identifier: MIT
#include "window/WorkspaceView.h"

#include "WindowViewTest.h"
#include "window/widgets/IconButton.h"
#include "window/widgets/ListRow.h"

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QTabBar>

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;

class WorkspaceViewTest : public WindowViewTest {
protected:
    /// What the keyboard walks through from the address on, by name.
    [[nodiscard]] std::vector<QWidget*> tabOrder() const {
        std::vector<QWidget*> order;
        const QWidget* const first = view().findChild<QLineEdit*>();
        for (QWidget* widget = first->nextInFocusChain(); widget != first; widget = widget->nextInFocusChain()) {
            if (isTabStop(*widget) && widget->isVisible() && widget->isEnabled())
                order.push_back(widget);
        }
        return order;
    }
};

TEST_F(WorkspaceViewTest, WritesAChangedDeviceSelectionIntoTheProfile) {
    makeReady();
    showView();
    coordinator->setSelectedDeviceID(u"B"_s);
    EXPECT_EQ(storedProfile().selectedDeviceUDID, u"B"_s);
}

TEST_F(WorkspaceViewTest, WritesNothingAnyMoreOnceItIsGone) {
    makeReady();
    {
        const WorkspaceView gone(context(), {});
    }
    coordinator->setSelectedDeviceID(u"B"_s);
    EXPECT_EQ(storedProfile().selectedDeviceUDID, u"A"_s);
}

TEST_F(WorkspaceViewTest, KeepsItsSectionsInOrder) {
    makeReady();
    showView();
    askForPage();
    std::vector<int> tops;
    for (const char16_t* const name : {u"Corvanta", u"Setup ready", u"Workspace", u"Choose Safari Page", u"Dropped Pin",
                                       u"No favorite locations", u"Choose the Safari page to inspect"}) {
        const TextLabel* const found = label(view(), QString::fromUtf16(name));
        ASSERT_NE(found, nullptr) << QString::fromUtf16(name).toStdString();
        tops.push_back(found->mapTo(&view(), QPoint()).y());
    }
    EXPECT_TRUE(std::ranges::is_sorted(std::vector(tops.begin(), tops.end() - 1)));
    // The status is pinned at the foot, whatever is scrolled.
    EXPECT_GT(tops.back(), view().height() - 80);
}

TEST_F(WorkspaceViewTest, BeginsWithTheAddress) {
    makeReady();
    showView();
    EXPECT_EQ(QApplication::focusWidget(), view().findChild<QLineEdit*>());
}

TEST_F(WorkspaceViewTest, TurnsDarkAndLightWithTheDesktopWhileItIsShown) {
    makeReady();
    showView();
    const QPalette before = QApplication::palette();
    const auto ground = [this] { return view().grab().toImage().pixelColor(2, view().height() / 2).name(); };
    const auto set = [](const QColor& window, const QColor& text) {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::Window, window);
        palette.setColor(QPalette::WindowText, text);
        QApplication::setPalette(palette);
        settle();
    };
    set(u"#2d2d2d"_s, u"#ffffff"_s);
    EXPECT_EQ(ground(), Appearance::dark().ground.name());
    set(u"#efefef"_s, u"#000000"_s);
    EXPECT_EQ(ground(), Appearance::light().ground.name());
    set(u"#000000"_s, u"#ffffff"_s);
    EXPECT_EQ(ground(), u"#000000");
    QApplication::setPalette(before);
}

TEST_F(WorkspaceViewTest, CanBeWalkedThroughByKeyboardInTheOrderInWhichItIsRead) {
    makeReady();
    coordinator->selectLocation({1, 2}, u"One"_s, true);
    coordinator->saveFavorite();
    showView(QSize(430, 1400));
    ASSERT_TRUE(testing::waitUntil([this] { return map != nullptr && map->widget().isVisible(); }));
    std::vector<QWidget*> order = tabOrder();
    // The chain is a ring; the line at its first control stands above the address.
    std::ranges::rotate(order, std::ranges::find_if(order, [this](const QWidget* widget) {
                            return widget == button(view(), u"Check Again"_s);
                        }));
    std::vector<std::string> names;
    for (QWidget* const widget : order)
        names.push_back(nameOf(*widget).toStdString());
    EXPECT_THAT(names, ElementsAre("Check Again", "Simulator", "Refresh simulator devices", "Start Workspace",
                                   "Search for a place", "Map", "Save favorite", "Set Location", "Clear",
                                   "Saved locations", "One", "Delete One"));
}

TEST_F(WorkspaceViewTest, NamesEveryControlForThoseWhoHearIt) {
    makeReady();
    coordinator->selectLocation({1, 2}, u"One"_s, true);
    coordinator->saveFavorite();
    showView();
    askForPage();
    for (QWidget* const widget : view().findChildren<QWidget*>()) {
        if (!widget->isVisible() || !isTabStop(*widget))
            continue;
        QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(interface, nullptr);
        EXPECT_FALSE(interface->text(QAccessible::Name).isEmpty()) << widget->metaObject()->className();
        EXPECT_FALSE(interface->text(QAccessible::Name).contains(u'&'));
        EXPECT_NE(interface->role(), QAccessible::Client) << widget->metaObject()->className();
        EXPECT_NE(interface->role(), QAccessible::NoRole) << widget->metaObject()->className();
    }
}

TEST_F(WorkspaceViewTest, GivesEachKindOfWidgetItsRole) {
    makeReady();
    showView();
    askForPage();
    const auto roleOf = [](QWidget* widget) { return QAccessible::queryAccessibleInterface(widget)->role(); };
    EXPECT_EQ(roleOf(view().findChild<QComboBox*>()), QAccessible::ComboBox);
    EXPECT_EQ(roleOf(view().findChild<QTabBar*>()), QAccessible::PageTabList);
    EXPECT_EQ(roleOf(view().findChild<ListRow*>()), QAccessible::Button);
    EXPECT_EQ(roleOf(view().findChild<IconButton*>()), QAccessible::Button);
    EXPECT_EQ(roleOf(label(view(), u"Attaching inspector"_s)), QAccessible::StaticText);
    EXPECT_EQ(roleOf(view().findChild<QWidget*>(u"card"_s)), QAccessible::Grouping);
}

TEST_F(WorkspaceViewTest, CallsTheStatusAndThePhaseByTheirNewTexts) {
    makeReady();
    showView();
    QAccessibleInterface* const phase = QAccessible::queryAccessibleInterface(label(view(), u"Idle"_s));
    QAccessibleInterface* const status =
        QAccessible::queryAccessibleInterface(label(view(), coordinator->statusMessage()));
    simulator.script.fail(testing::SimulatorOperation::boot,
                          testing::FakeError(u"No such device."_s, u"Choose another."_s));
    const auto task = start();
    EXPECT_EQ(phase->text(QAccessible::Name), u"Checking setup");
    EXPECT_EQ(status->text(QAccessible::Name), u"Checking Xcode, Safari, and permissions");
    clock.advance(300ms);
    EXPECT_EQ(phase->text(QAccessible::Name), u"Needs attention");
    EXPECT_EQ(status->text(QAccessible::Name), u"No such device.");
}

TEST_F(WorkspaceViewTest, KeepsTheFocusInTheListWhileFavoritesAreDeletedByKeyboard) {
    makeReady();
    coordinator->selectLocation({1, 2}, u"One"_s, true);
    coordinator->saveFavorite();
    coordinator->selectLocation({3, 4}, u"Two"_s, true);
    coordinator->saveFavorite();
    showView();
    QPushButton* const last = button(view(), u"Delete One"_s);
    last->setFocus();
    ASSERT_TRUE(last->hasFocus());
    last->click();
    settle();
    EXPECT_EQ(QApplication::focusWidget(), button(view(), u"Delete Two"_s));
}

TEST_F(WorkspaceViewTest, LeavesTheFocusInTheCardWhenThePressedButtonIsDisabled) {
    makeReady();
    showView();
    QPushButton* const startButton = button(view(), u"Start Workspace"_s);
    startButton->setFocus();
    startButton->click();
    EXPECT_FALSE(startButton->isEnabled());
    // A second press of the same key reaches nothing.
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QKeyEvent release(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &press);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &release);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::preflight);
    EXPECT_EQ(log.count("ensureSafariRunning"), 1);
    coordinator->stopWorkspace();
    EXPECT_EQ(QApplication::focusWidget(), startButton);
}

TEST_F(WorkspaceViewTest, GivesTheFocusBackWhenTheSetupHasBeenChecked) {
    makeReady();
    showView();
    probe.script.delay(testing::PreflightOperation::facts, 1s);
    QPushButton* const again = button(view(), u"Check Again"_s);
    again->setFocus();
    again->click();
    EXPECT_FALSE(again->isVisible());
    clock.advance(2s);
    EXPECT_EQ(QApplication::focusWidget(), again);
}

TEST_F(WorkspaceViewTest, DoesNoHarmByASecondPressOfWhatWorksInTheBackground) {
    makeReady();
    showView();
    simulator.script.delay(testing::SimulatorOperation::availableIOSDevices, 1s);
    QPushButton* const refresh = button(view(), u"Refresh simulator devices"_s);
    refresh->click();
    refresh->click();
    EXPECT_TRUE(coordinator->isRefreshingDevices());
    clock.advance(2s);
    EXPECT_EQ(log.count("availableIOSDevices"), 1);
    EXPECT_EQ(tasks.size(), 0U);
}

} // namespace

} // namespace corvanta
