// SPDX-License-Identifier: MIT
#include "window/LocationSection.h"

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

} // namespace

} // namespace corvanta
