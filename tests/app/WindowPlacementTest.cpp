// SPDX-License-Identifier: MIT
#include "shell/WindowPlacement.h"

#include "MemoryPreferencesStore.h"
#include "OffscreenWindows.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>

#include <gtest/gtest.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

class WindowPlacementTest : public ::testing::Test {
protected:
    static constexpr QSize defaultSize{430, 600};

    [[nodiscard]] static QRect screen() { return QGuiApplication::primaryScreen()->availableGeometry(); }

    /// Opens a window, puts it there if told so, and closes it; where it stood in the end.
    QRect openAndClose(const std::optional<QRect>& place = std::nullopt) {
        QWidget window;
        placement.apply(window, defaultSize);
        window.show();
        QApplication::processEvents();
        if (place)
            window.setGeometry(*place);
        QApplication::processEvents();
        const QRect result = window.geometry();
        placement.save();
        return result;
    }

    testing::OffscreenWindows offscreenWindows;
    testing::MemoryPreferencesStore preferences;
    bool isOwn = true;
    WindowPlacement placement{preferences, u"window"_s, [this] { return isOwn; }};
};

TEST_F(WindowPlacementTest, BeginsWithTheDefaultSize) {
    EXPECT_EQ(openAndClose().size(), defaultSize);
}

TEST_F(WindowPlacementTest, FitsTheDefaultSizeToASmallScreen) {
    QWidget window;
    placement.apply(window, {430, 10'000});
    EXPECT_EQ(window.width(), 430);
    EXPECT_LE(window.height(), screen().height());
}

TEST_F(WindowPlacementTest, RemembersPlaceAndSize) {
    const QRect place(100, 120, 380, 500);
    EXPECT_EQ(openAndClose(place), place);
    EXPECT_EQ(openAndClose(), place);
}

TEST_F(WindowPlacementTest, RemembersThemInTheNextRun) {
    const QRect place(100, 120, 380, 500);
    openAndClose(place);
    WindowPlacement next(preferences, u"window"_s, [] { return true; });
    QWidget window;
    next.apply(window, defaultSize);
    EXPECT_EQ(window.geometry(), place);
}

TEST_F(WindowPlacementTest, ForgetsAPlaceThatTheProgramChose) {
    const QRect place(100, 120, 380, 500);
    openAndClose(place);
    isOwn = false;
    openAndClose(QRect(0, 0, 300, 700));
    isOwn = true;
    EXPECT_EQ(openAndClose(), place);
}

TEST_F(WindowPlacementTest, BringsAWindowBackFromAScreenThatIsGone) {
    openAndClose(QRect(5000, 4000, 380, 500));
    QWidget window;
    placement.apply(window, defaultSize);
    EXPECT_TRUE(screen().intersects(window.geometry())) << window.x() << ',' << window.y();
    EXPECT_EQ(window.size(), QSize(380, 500));
}

TEST_F(WindowPlacementTest, ShrinksAWindowThatCameFromALargerScreen) {
    openAndClose(QRect(0, 0, 4000, 3000));
    QWidget window;
    placement.apply(window, defaultSize);
    EXPECT_LE(window.width(), screen().width());
    EXPECT_LE(window.height(), screen().height());
}

TEST_F(WindowPlacementTest, TakesTheDefaultForAnythingElseThanAPlace) {
    preferences.setData(u"window"_s, "not a place");
    EXPECT_EQ(openAndClose().size(), defaultSize);
}

TEST_F(WindowPlacementTest, StoresNothingForAWindowThatWasNeverShown) {
    QWidget window;
    placement.apply(window, defaultSize);
    placement.save();
    EXPECT_EQ(preferences.data(u"window"_s), std::nullopt);
}

} // namespace

} // namespace corvanta
