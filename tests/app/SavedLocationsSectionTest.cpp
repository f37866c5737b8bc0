// SPDX-License-Identifier: MIT
#include "window/SavedLocationsSection.h"

#include "WindowSectionTest.h"
#include "window/widgets/ListRow.h"
#include "window/widgets/LocationList.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QTabBar>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr Coordinate barcelona{41.3874, 2.1686};
constexpr Coordinate oslo{59.9139, 10.7522};

class SavedLocationsSectionTest : public WindowSectionTest {
protected:
    void SetUp() override { makeReady(); }

    void saveFavorite(const Coordinate& coordinate, const QString& name) {
        coordinator->selectLocation(coordinate, name, false);
        coordinator->saveFavorite();
    }

    void use(const Coordinate& coordinate, const QString& name) {
        coordinator->selectLocation(coordinate, name, false);
        const testing::WatchedTask task(coordinator->setLocationOnSimulator());
        ASSERT_TRUE(task.isDone());
    }

    static QTabBar& tabs(const QWidget& section) { return *section.findChild<QTabBar*>(); }
};

TEST_F(SavedLocationsSectionTest, HasTwoTabsWithIcons) {
    const auto& section = show<SavedLocationsSection>();
    ASSERT_EQ(tabs(section).count(), 2);
    EXPECT_EQ(tabs(section).tabText(0), u"Favorites");
    EXPECT_EQ(tabs(section).tabText(1), u"Recents");
    EXPECT_FALSE(tabs(section).tabIcon(0).isNull());
    EXPECT_FALSE(tabs(section).tabIcon(1).isNull());
    EXPECT_EQ(tabs(section).currentIndex(), 0);
}

TEST_F(SavedLocationsSectionTest, SaysWhenAListIsEmpty) {
    const auto& section = show<SavedLocationsSection>();
    EXPECT_THAT(labels(section), ElementsAre("No favorite locations"));
    tabs(section).setCurrentIndex(1);
    EXPECT_THAT(labels(section), ElementsAre("No recent locations"));
}

TEST_F(SavedLocationsSectionTest, ShowsEachFavoriteWithItsNameAndCoordinatePair) {
    const auto& section = show<SavedLocationsSection>();
    saveFavorite(barcelona, u"Barcelona"_s);
    saveFavorite(oslo, u"Oslo"_s);
    EXPECT_THAT(buttons(section), ElementsAre("Oslo", "Barcelona"));
    EXPECT_EQ(button(section, u"Oslo"_s)->accessibleDescription(), u"59.9139,10.7522");
    EXPECT_THAT(labels(section), IsEmpty());
}

TEST_F(SavedLocationsSectionTest, SelectsThePressedFavoriteAndCentresTheMapOnIt) {
    const auto& section = show<SavedLocationsSection>();
    saveFavorite(barcelona, u"Barcelona"_s);
    saveFavorite(oslo, u"Oslo"_s);
    press(section, u"Barcelona"_s);
    EXPECT_EQ(coordinator->selectedCoordinate(), barcelona);
    EXPECT_EQ(coordinator->selectedLocationName(), u"Barcelona");
    EXPECT_TRUE(coordinator->recenterMapOnSelection());
}

TEST_F(SavedLocationsSectionTest, DeletesAFavoriteAndSaysSoAtOnce) {
    const auto& section = show<SavedLocationsSection>();
    saveFavorite(barcelona, u"Barcelona"_s);
    saveFavorite(oslo, u"Oslo"_s);
    press(section, u"Delete Oslo"_s);
    EXPECT_THAT(buttons(section), ElementsAre("Barcelona"));
    EXPECT_EQ(status(), "Deleted favorite");
    EXPECT_EQ(locationRepository.loadFavorites(), coordinator->favorites());
    press(section, u"Delete Barcelona"_s);
    EXPECT_THAT(labels(section), ElementsAre("No favorite locations"));
}

TEST_F(SavedLocationsSectionTest, DeletesOneFavoriteByADoubleClick) {
    const auto& section = show<SavedLocationsSection>();
    saveFavorite(barcelona, u"Barcelona"_s);
    saveFavorite(oslo, u"Oslo"_s);
    QPushButton* const trash = button(section, u"Delete Oslo"_s);
    ASSERT_NE(trash, nullptr);
    const auto send = [trash](QEvent::Type type) {
        const QPointF middle = trash->rect().center();
        QMouseEvent event(type, middle, trash->mapToGlobal(middle), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(trash, &event);
    };
    send(QEvent::MouseButtonPress);
    send(QEvent::MouseButtonRelease);
    send(QEvent::MouseButtonDblClick);
    send(QEvent::MouseButtonRelease);
    EXPECT_THAT(buttons(section), ElementsAre("Barcelona"));
}

TEST_F(SavedLocationsSectionTest, ShowsRecentsWithoutADeletion) {
    const auto& section = show<SavedLocationsSection>();
    use(barcelona, u"Barcelona"_s);
    use(oslo, u"Oslo"_s);
    tabs(section).setCurrentIndex(1);
    EXPECT_THAT(buttons(section), ElementsAre("Oslo", "Barcelona"));
    EXPECT_EQ(shown<QPushButton>(section).size(), 2U);
    press(section, u"Barcelona"_s);
    EXPECT_EQ(coordinator->selectedCoordinate(), barcelona);
    EXPECT_TRUE(coordinator->recenterMapOnSelection());
}

TEST_F(SavedLocationsSectionTest, IsAbout150HighHoweverManyThereAre) {
    const auto& section = show<SavedLocationsSection>();
    const int empty = section.sizeHint().height();
    for (int index = 0; index < 12; ++index)
        saveFavorite({1.0 + index, 2}, u"Place %1"_s.arg(index));
    EXPECT_EQ(section.sizeHint().height(), empty);
    const int padding = 26;
    EXPECT_NEAR(empty - padding, 150, 12);
}

} // namespace

} // namespace corvanta
