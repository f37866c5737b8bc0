// SPDX-License-Identifier: MIT
#include "WindowViewTest.h"
#include "window/StatusSection.h"
#include "window/widgets/ButtonRows.h"
#include "window/widgets/ListRow.h"

#include <QComboBox>
#include <QScrollArea>
#include <QScrollBar>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

const QString fortyWords = u"The simulator could not be started because the runtime that it was made for is not "
                           u"installed on this Mac any more "
                           "and the one which replaced it does not know the device type "
                           "com.apple.CoreSimulator.SimDeviceType.iPhone-16-Pro-Max "
                           "that the device set asks for; Safari"_s;
const QString longAddress =
    u"https://staging.payments.example.com/checkout/basket/7f0c7a52-11ce-4a55/confirm?session=0123456789abcdef"_s;
const QString longDevice = u"iPhone 16 Pro Max of the Payments Team — Do Not Erase Before Friday Afternoon"_s;

struct Width {
    std::string name;
    int width;
    int height;

    friend void PrintTo(const Width& row, std::ostream* stream) { *stream << row.name; }
};

class WindowLayoutTest : public WindowViewTest {
protected:
    void fill(QSize size) {
        simulator.devices.front().name = longDevice;
        makeReady();
        coordinator->setUrlInput(longAddress);
        coordinator->selectLocation({41.40362612, -122.17435612},
                                    u"Llanfairpwllgwyngyllgogerychwyrndrobwllllantysiliogogogoch railway station"_s,
                                    true);
        coordinator->saveFavorite();
        showView(size);
    }

    void failWithFortyWords() {
        simulator.script.fail(testing::SimulatorOperation::boot, testing::FakeError(fortyWords, fortyWords));
        const auto task = start();
        clock.advance(300ms);
        settle();
    }

    /// Every text has the room that it needs, and nothing is wider than the window.
    void expectNothingCut() {
        for (const QScrollArea* const area : view().findChildren<QScrollArea*>()) {
            EXPECT_EQ(area->widget()->width(), area->viewport()->width());
            EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
        }
        for (const TextLabel* const text : shown<TextLabel>(view())) {
            const int needed = text->wordWrap() ? text->heightForWidth(text->width()) : text->sizeHint().height();
            EXPECT_GE(text->height(), needed) << text->shownText().toStdString();
            EXPECT_GE(text->width(), text->minimumSizeHint().width()) << text->shownText().toStdString();
        }
        for (const QPushButton* const button : shown<QPushButton>(view())) {
            EXPECT_GE(button->height(), button->minimumSizeHint().height()) << button->text().toStdString();
            if (qobject_cast<const ListRow*>(button) == nullptr)
                EXPECT_GE(button->width(), button->sizeHint().width()) << button->text().toStdString();
        }
        for (const QWidget* const widget : view().findChildren<QWidget*>()) {
            const int right = widget->mapTo(&view(), QPoint(widget->width(), 0)).x();
            if (widget->isVisible())
                EXPECT_LE(right, view().width()) << widget->metaObject()->className();
        }
    }
};

class WindowLayout : public WindowLayoutTest, public ::testing::WithParamInterface<Width> {
protected:
    [[nodiscard]] static QSize size() { return {GetParam().width, GetParam().height}; }
};

TEST_P(WindowLayout, CutsNothingWhileAPageIsToBeChosen) {
    fill(size());
    askForPage(u"A page whose title is longer than any window that somebody would want to put it into — Checkout"_s);
    expectNothingCut();
    const ListRow* const row = view().findChild<ListRow*>();
    ASSERT_NE(row, nullptr);
    EXPECT_TRUE(row->width() >= 640 || row->toolTip().contains(u"would want to put it into"));
}

TEST_P(WindowLayout, CutsNothingOfALongFailure) {
    fill(size());
    failWithFortyWords();
    expectNothingCut();
}

TEST_P(WindowLayout, CutsNothingWhileTheSetupIsIncomplete) {
    tree.trusted = false;
    probe.found = SetupFacts{};
    probe.found.availableIOSRuntimeCount = 0;
    makeCoordinator();
    showView(size());
    const testing::WatchedTask checks(coordinator->runSetupChecks());
    clock.advance(1s);
    settle();
    expectNothingCut();
    probe.script.delay(testing::PreflightOperation::facts, 1s);
    const testing::WatchedTask again(coordinator->runSetupChecks());
    settle();
    ASSERT_NE(label(view(), u"Checking this Mac…"_s), nullptr);
    expectNothingCut();
    clock.advance(2s);
}

TEST_P(WindowLayout, ElidesTheDeviceAndTellsTheWholeInTheTooltip) {
    fill(size());
    const QComboBox* const picker = view().findChild<QComboBox*>();
    EXPECT_TRUE(picker->toolTip().contains(longDevice));
}

INSTANTIATE_TEST_SUITE_P(, WindowLayout,
                         ::testing::Values(Width{"Narrowest", 300, 480}, Width{"Narrow", 380, 700},
                                           Width{"AtFirst", 430, 860}, Width{"Wide", 700, 900}),
                         [](const auto& row) { return row.param.name; });

TEST_F(WindowLayoutTest, Is430By860AtFirstAndNoSmallerThan300By480) {
    makeReady();
    showView();
    EXPECT_EQ(view().sizeHint(), QSize(430, 860));
    EXPECT_EQ(view().minimumSize(), QSize(300, 480));
}

TEST_F(WindowLayoutTest, HasTheWorkspaceButtonsInOneRowAt430AndInTwoBelow380) {
    makeReady();
    showView();
    const auto rows = [this] {
        std::map<int, Texts> byTop;
        for (const QString& text : {u"Start Workspace"_s, u"Open / Reload"_s, u"Re-tile"_s, u"Stop"_s}) {
            const QPushButton* const found = button(view(), text);
            byTop[found->y()].push_back(text.toStdString());
        }
        std::vector<Texts> result;
        for (const auto& [top, texts] : byTop)
            result.push_back(texts);
        return result;
    };
    EXPECT_THAT(rows(), ::testing::ElementsAre(Texts{"Start Workspace", "Open / Reload", "Re-tile", "Stop"}));
    resizeView({379, 860});
    EXPECT_THAT(rows(), ::testing::ElementsAre(Texts{"Start Workspace", "Open / Reload"}, Texts{"Re-tile", "Stop"}));
}

TEST_F(WindowLayoutTest, HasTheButtonsOfTwoRowsExactlyBelowEachOther) {
    makeReady();
    showView({379, 860});
    const auto span = [this](const QString& text) {
        const QRect place = button(view(), text)->geometry();
        return std::pair(place.left(), place.right());
    };
    EXPECT_EQ(span(u"Re-tile"_s), span(u"Start Workspace"_s));
    EXPECT_EQ(span(u"Stop"_s), span(u"Open / Reload"_s));
}

TEST_F(WindowLayoutTest, KeepsTheSubtitleOnOneLineAt430) {
    makeReady();
    showView();
    const TextLabel* const subtitle = label(view(), u"Web testing workspace for iOS Simulator"_s);
    EXPECT_LT(subtitle->height(), 2 * subtitle->fontMetrics().lineSpacing());
}

TEST_F(WindowLayoutTest, MovesNothingWhenTheFocusMoves) {
    makeReady();
    coordinator->selectLocation({1, 2}, u"One"_s, true);
    coordinator->saveFavorite();
    // High enough that nothing needs to be scrolled into sight.
    showView({430, 1400});
    const auto geometries = [this] {
        std::vector<QRect> all;
        for (const QWidget* const widget : view().findChildren<QWidget*>())
            all.push_back(widget->geometry());
        return all;
    };
    for (QWidget* const widget : view().findChildren<QWidget*>()) {
        if (!widget->isVisible() || !widget->isEnabled() || !isTabStop(*widget))
            continue;
        const auto before = geometries();
        widget->setFocus();
        settle();
        EXPECT_EQ(geometries(), before) << widget->metaObject()->className();
    }
}

TEST_F(WindowLayoutTest, MovesNoRowWhileTheSetupIsChecked) {
    makeReady();
    showView();
    const TextLabel* const first = label(view(), u"Apple silicon Mac"_s);
    const int before = first->mapTo(&view(), QPoint()).y();
    probe.script.delay(testing::PreflightOperation::facts, 1s);
    const testing::WatchedTask checks(coordinator->runSetupChecks());
    settle();
    EXPECT_EQ(first->mapTo(&view(), QPoint()).y(), before);
    clock.advance(2s);
}

TEST_F(WindowLayoutTest, LeavesHalfOfTheWindowToTheControlsHoweverMuchThereIsToSay) {
    makeReady();
    showView({300, 480});
    simulator.script.fail(testing::SimulatorOperation::boot,
                          testing::FakeError(fortyWords.repeated(8), fortyWords.repeated(8)));
    const auto task = start();
    clock.advance(300ms);
    settle();
    EXPECT_LE(view().findChild<StatusSection*>()->height(), 240);
}

TEST_F(WindowLayoutTest, CutsNothingInALargeFont) {
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPixelSize(20);
    QApplication::setFont(large);
    fill({430, 860});
    failWithFortyWords();
    EXPECT_EQ(label(view(), u"Workspace"_s)->fontInfo().pixelSize(), 20);
    expectNothingCut();
    QApplication::setFont(before);
}

} // namespace

} // namespace corvanta
