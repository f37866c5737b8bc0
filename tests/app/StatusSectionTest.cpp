// SPDX-License-Identifier: MIT
#include "window/StatusSection.h"

#include "WindowSectionTest.h"
#include "window/Widgets.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;

using testing::SimulatorOperation;

class StatusSectionTest : public WindowSectionTest {
protected:
    /// Starts a workspace whose device does not boot.
    void startInVain(const testing::FakeError& error) {
        simulator.script.fail(SimulatorOperation::boot, error);
        const auto task = start();
        clock.advance(300ms);
        ASSERT_TRUE(task.isDone());
    }
};

TEST_F(StatusSectionTest, ShowsTheStatusAndTheRecoveryBeneathIt) {
    makeReady();
    const auto& section = show<StatusSection>(*coordinator);
    startInVain(testing::FakeError(u"No such device."_s, u"Choose another."_s));
    EXPECT_THAT(labels(section), ElementsAre("No such device.", "Choose another."));
}

TEST_F(StatusSectionTest, ShowsWhatIsThereAlready) {
    makeReady();
    startInVain(testing::FakeError(u"No such device."_s, u"Choose another."_s));
    EXPECT_THAT(labels(show<StatusSection>(*coordinator)), ElementsAre("No such device.", "Choose another."));
}

TEST_F(StatusSectionTest, HidesTheSecondLineWithoutARecovery) {
    makeReady();
    const auto& section = show<StatusSection>(*coordinator);
    startInVain(testing::FakeError(u"No such device."_s, u"Choose another."_s));
    startInVain(testing::FakeError(u"The disk is full."_s));
    EXPECT_THAT(labels(section), ElementsAre("The disk is full."));
}

TEST_F(StatusSectionTest, ShowsTextsAsTheyStandAndNeverAsMarkup) {
    makeReady();
    const auto& section = show<StatusSection>(*coordinator);
    startInVain(testing::FakeError(u"<b>Bold</b>"_s, u"<img src=x>"_s));
    for (const QLabel* const text : shown<QLabel>(section))
        EXPECT_EQ(text->textFormat(), Qt::PlainText);
    EXPECT_THAT(labels(section), ElementsAre("<b>Bold</b>", "<img src=x>"));
}

TEST_F(StatusSectionTest, ShowsProgressWhileTheWorkspaceStarts) {
    makeReady();
    const auto& section = show<StatusSection>(*coordinator);
    const auto* const progress = section.findChild<ProgressIndicator*>();
    ASSERT_NE(progress, nullptr);
    EXPECT_FALSE(progress->isActive());
    safari.listed = {page(u"Start"_s, 0)};
    safari.willList({});
    const auto task = start();
    EXPECT_TRUE(progress->isActive());
    clock.advance(300ms);
    ASSERT_TRUE(task.isDone());
    EXPECT_FALSE(progress->isActive());
}

} // namespace

} // namespace corvanta
