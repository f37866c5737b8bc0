// SPDX-License-Identifier: MIT
#include "window/StatusSection.h"

#include "WindowSectionTest.h"
#include "window/widgets/ProgressIndicator.h"

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
    const auto& section = show<StatusSection>();
    startInVain(testing::FakeError(u"No such device."_s, u"Choose another."_s));
    EXPECT_THAT(labels(section), ElementsAre("No such device.", "Choose another."));
}

TEST_F(StatusSectionTest, ShowsWhatIsThereAlready) {
    makeReady();
    startInVain(testing::FakeError(u"No such device."_s, u"Choose another."_s));
    EXPECT_THAT(labels(show<StatusSection>()), ElementsAre("No such device.", "Choose another."));
}

TEST_F(StatusSectionTest, HidesTheSecondLineWithoutARecovery) {
    makeReady();
    const auto& section = show<StatusSection>();
    startInVain(testing::FakeError(u"No such device."_s, u"Choose another."_s));
    startInVain(testing::FakeError(u"The disk is full."_s));
    EXPECT_THAT(labels(section), ElementsAre("The disk is full."));
}

TEST_F(StatusSectionTest, ShowsTextsAsTheyStandAndNeverAsMarkup) {
    makeReady();
    const auto& section = show<StatusSection>();
    startInVain(testing::FakeError(u"<b>Bold</b>"_s, u"<img src=x>"_s));
    for (const TextLabel* const text : shown<TextLabel>(section))
        EXPECT_EQ(text->textFormat(), Qt::PlainText);
    EXPECT_THAT(labels(section), ElementsAre("<b>Bold</b>", "<img src=x>"));
}

TEST_F(StatusSectionTest, ShowsProgressWhileTheWorkspaceStarts) {
    makeReady();
    const auto& section = show<StatusSection>();
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

struct HelpCase {
    std::string name;
    QString message;
    /// The helper button; empty for none.
    std::string button;

    friend void PrintTo(const HelpCase& row, std::ostream* stream) { *stream << row.name; }
};

class StatusSectionHelp : public StatusSectionTest, public ::testing::WithParamInterface<HelpCase> {};

TEST_P(StatusSectionHelp, IsChosenByTheWordsOfTheRecovery) {
    makeReady();
    const auto& section = show<StatusSection>();
    startInVain(testing::FakeError(u"It failed in Safari, Develop, Accessibility."_s, GetParam().message));
    const Texts expected = GetParam().button.empty() ? Texts{} : Texts{GetParam().button};
    EXPECT_EQ(buttons(section), expected);
}

INSTANTIATE_TEST_SUITE_P(
    , StatusSectionHelp,
    ::testing::Values(HelpCase{"Accessibility", u"Allow Accessibility access."_s, "Open Accessibility Settings"},
                      HelpCase{"AccessibilityInAnyCase", u"allow ACCESSIBILITY access."_s,
                               "Open Accessibility Settings"},
                      HelpCase{"AccessibilityBeforeSafari", u"Open Safari, then allow Accessibility access."_s,
                               "Open Accessibility Settings"},
                      HelpCase{"Safari", u"Look into safari."_s, "Open Safari"},
                      HelpCase{"Develop", u"Look into the develop menu."_s, "Open Safari"},
                      HelpCase{"PartOfAWord", u"Ask the developers."_s, "Open Safari"},
                      HelpCase{"Neither", u"Choose another device."_s, ""}, HelpCase{"Empty", QString(u""_s), ""}),
    testing::CaseName());

TEST_F(StatusSectionTest, OffersNoHelpWithoutARecovery) {
    makeReady();
    const auto& section = show<StatusSection>();
    startInVain(testing::FakeError(u"Safari is gone."_s));
    EXPECT_THAT(buttons(section), ::testing::IsEmpty());
}

TEST_F(StatusSectionTest, OpensTheAccessibilitySettings) {
    makeReady();
    const auto& section = show<StatusSection>();
    startInVain(testing::FakeError(u"No."_s, u"Allow Accessibility access."_s));
    forget();
    press(section, u"Open Accessibility Settings"_s);
    EXPECT_THAT(log.calls(),
                ElementsAre("open x-apple.systempreferences:com.apple.preference.security?Privacy_Accessibility"));
}

TEST_F(StatusSectionTest, BringsARunningSafariForward) {
    makeReady();
    const auto& section = show<StatusSection>();
    startInVain(testing::FakeError(u"No."_s, u"Look into Safari."_s));
    desktop.running = {u"com.apple.Safari"_s};
    forget();
    press(section, u"Open Safari"_s);
    EXPECT_THAT(log.calls(), ElementsAre("activate com.apple.Safari"));
}

TEST_F(StatusSectionTest, DoesNothingForASafariThatDoesNotRun) {
    makeReady();
    const auto& section = show<StatusSection>();
    startInVain(testing::FakeError(u"No."_s, u"Look into Safari."_s));
    forget();
    press(section, u"Open Safari"_s);
    EXPECT_THAT(log.calls(), ::testing::IsEmpty());
}

TEST_F(StatusSectionTest, LetsItsTextsBeSelected) {
    makeReady();
    const auto& section = show<StatusSection>();
    startInVain(testing::FakeError(u"No such device."_s, u"Choose another."_s));
    for (const TextLabel* const text : shown<TextLabel>(section))
        EXPECT_TRUE(text->textInteractionFlags().testFlag(Qt::TextSelectableByMouse));
}

TEST_F(StatusSectionTest, ShowsProgressWhileALocationIsSet) {
    makeReady();
    const auto& section = show<StatusSection>();
    const auto* const progress = section.findChild<ProgressIndicator*>();
    coordinator->selectLocation({1, 2}, u"One"_s, true);
    simulator.script.delay(SimulatorOperation::setLocation, 1s);
    const testing::WatchedTask task(coordinator->setLocationOnSimulator());
    EXPECT_TRUE(progress->isActive());
    clock.advance(1s);
    EXPECT_FALSE(progress->isActive());
}

} // namespace

} // namespace corvanta
