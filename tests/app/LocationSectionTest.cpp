// SPDX-License-Identifier: MIT
#include "window/LocationSection.h"

#include "OffscreenWindows.h"
#include "TaskWaiting.h"
#include "WindowSectionTest.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

using testing::SimulatorOperation;

constexpr Coordinate barcelona{41.3874, 2.1686};

class LocationSectionTest : public WindowSectionTest {
protected:
    /// The two location buttons that can be pressed.
    [[nodiscard]] Texts enabledButtons(const QWidget& section) const {
        Texts enabled;
        for (const QString& text : {u"Set Location"_s, u"Clear"_s}) {
            if (const QPushButton* const found = button(section, text); found != nullptr && found->isEnabled())
                enabled.push_back(text.toStdString());
        }
        return enabled;
    }

private:
    testing::OffscreenWindows m_offscreen;
};

TEST_F(LocationSectionTest, SaysThatNoLocationWillBeRestoredWithoutAPoint) {
    makeReady();
    EXPECT_THAT(labels(show<LocationSection>()), ElementsAre("Dropped Pin", "No location will be restored"));
}

TEST_F(LocationSectionTest, ShowsTheSelectedNameAndTheCoordinatePair) {
    makeReady();
    const auto& section = show<LocationSection>();
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    EXPECT_THAT(labels(section), ElementsAre("Barcelona", "41.3874,2.1686"));
}

TEST_F(LocationSectionTest, LetsTheCoordinateBeSelectedAndCopied) {
    makeReady();
    const auto& section = show<LocationSection>();
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    const TextLabel* const pair = label(section, u"41.3874,2.1686"_s);
    ASSERT_NE(pair, nullptr);
    EXPECT_TRUE(pair->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
    EXPECT_TRUE(pair->textInteractionFlags().testFlag(Qt::TextSelectableByKeyboard));
}

TEST_F(LocationSectionTest, OffersNothingWithoutADevice) {
    makeCoordinator();
    const auto& section = show<LocationSection>();
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    EXPECT_THAT(enabledButtons(section), IsEmpty());
}

TEST_F(LocationSectionTest, KeepsSetLocationDisabledUntilAPointIsPickedWhileClearNeedsNone) {
    makeReady();
    const auto& section = show<LocationSection>();
    EXPECT_THAT(enabledButtons(section), ElementsAre("Clear"));
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    EXPECT_THAT(enabledButtons(section), ElementsAre("Set Location", "Clear"));
}

TEST_F(LocationSectionTest, OffersNothingWhileALocationCommandRuns) {
    makeReady();
    const auto& section = show<LocationSection>();
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    simulator.script.delay(SimulatorOperation::setLocation, 1s);
    press(section, u"Set Location"_s);
    EXPECT_TRUE(coordinator->isLocationWorking());
    EXPECT_THAT(enabledButtons(section), IsEmpty());
    clock.advance(2s);
    EXPECT_THAT(enabledButtons(section), ElementsAre("Set Location", "Clear"));
}

TEST_F(LocationSectionTest, FollowsTheDeviceThatIsSelected) {
    makeReady();
    const auto& section = show<LocationSection>();
    coordinator->setSelectedDeviceID(std::nullopt);
    EXPECT_THAT(enabledButtons(section), IsEmpty());
    coordinator->setSelectedDeviceID(u"B"_s);
    EXPECT_THAT(enabledButtons(section), ElementsAre("Clear"));
}

TEST_F(LocationSectionTest, SetsAndClearsTheLocationOfTheDevice) {
    makeReady();
    const auto& section = show<LocationSection>();
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    press(section, u"Set Location"_s);
    EXPECT_EQ(status(), "Set location on iPhone 16");
    press(section, u"Clear"_s);
    EXPECT_EQ(status(), "Cleared location on iPhone 16");
    EXPECT_THAT(labels(section), Contains("No location will be restored"));
    EXPECT_EQ(tasks.size(), 0U);
}

TEST_F(LocationSectionTest, SavesAFavoriteByTheStar) {
    makeReady();
    const auto& section = show<LocationSection>();
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    press(section, u"Save favorite"_s);
    EXPECT_EQ(button(section, u"Save favorite"_s)->toolTip(), u"Save favorite");
    ASSERT_EQ(coordinator->favorites().size(), 1U);
    EXPECT_EQ(coordinator->favorites().front().name, u"Barcelona");
}

TEST_F(LocationSectionTest, LeavesItToTheCoordinatorWhatTheStarDoesWithoutAPoint) {
    makeReady();
    const auto& section = show<LocationSection>();
    press(section, u"Save favorite"_s);
    EXPECT_TRUE(coordinator->favorites().empty());
}

TEST_F(LocationSectionTest, MakesTheMapAfterTheFirstPaint) {
    makeReady();
    show<LocationSection>();
    EXPECT_EQ(map, nullptr);
    window.resize(430, 500);
    window.show();
    ASSERT_TRUE(testing::waitUntil([this] { return map != nullptr; }));
    EXPECT_EQ(map->widget().height(), 250);
    EXPECT_EQ(map->widget().width(), map->widget().parentWidget()->width());
    window.resize(600, 500);
    EXPECT_TRUE(testing::waitUntil([this] {
        return map->widget().width() > 500 && map->widget().width() == map->widget().parentWidget()->width();
    }));
}

TEST_F(LocationSectionTest, SelectsADroppedPinWhereTheMapIsClicked) {
    makeReady();
    const auto& section = show<LocationSection>();
    window.show();
    ASSERT_TRUE(testing::waitUntil([this] { return map != nullptr && map->delegate != nullptr; }));
    const auto regions = map->regionChanges.size();
    map->click({10, 20});
    EXPECT_EQ(coordinator->selectedCoordinate(), map->coordinateAt({10, 20}));
    EXPECT_EQ(coordinator->selectedLocationName(), u"Dropped Pin");
    EXPECT_FALSE(coordinator->recenterMapOnSelection());
    EXPECT_THAT(labels(section), Contains("Dropped Pin"));
    ASSERT_EQ(map->annotations.size(), 1U);
    EXPECT_EQ(map->annotations.front()->coordinate, coordinator->selectedCoordinate());
    EXPECT_EQ(map->regionChanges.size(), regions);
}

TEST_F(LocationSectionTest, MovesTheMapToASelectionThatAsksForItAndNotToAClickAfterwards) {
    makeReady();
    show<LocationSection>();
    window.show();
    ASSERT_TRUE(testing::waitUntil([this] { return map != nullptr && map->delegate != nullptr; }));
    const auto regions = map->regionChanges.size();
    coordinator->selectLocation({37.33182, -122.03118}, u"Office"_s, true);
    EXPECT_EQ(map->regionChanges.size(), regions + 1);
    EXPECT_EQ(map->shown.center, (Coordinate{37.33182, -122.03118}));
    map->click({10, 20});
    EXPECT_EQ(map->regionChanges.size(), regions + 1);
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    EXPECT_EQ(map->regionChanges.size(), regions + 2);
}

TEST_F(LocationSectionTest, TakesThePinAwayWithTheLocation) {
    makeReady();
    const auto& section = show<LocationSection>();
    window.show();
    ASSERT_TRUE(testing::waitUntil([this] { return map != nullptr && map->delegate != nullptr; }));
    coordinator->selectLocation(barcelona, u"Barcelona"_s, true);
    EXPECT_EQ(map->annotations.size(), 1U);
    press(section, u"Clear"_s);
    EXPECT_THAT(map->annotations, IsEmpty());
}

} // namespace

} // namespace corvanta
