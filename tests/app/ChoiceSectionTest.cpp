// SPDX-License-Identifier: MIT
#include "window/ChoiceSection.h"

#include "WindowSectionTest.h"
#include "window/widgets/ListRow.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;

class ChoiceSectionTest : public WindowSectionTest {
protected:
    /// Starts a workspace and finds two new pages.
    void makeAsking(const QString& first = u"One"_s, const QString& second = u"Two"_s) {
        safari.willList({});
        safari.listed = {page(first, 0), page(second, 1)};
        const auto task = start();
        clock.advance(300ms);
        ASSERT_EQ(coordinator->candidateTargets().size(), 2U);
    }
};

TEST_F(ChoiceSectionTest, IsAbsentWhileNoChoiceIsPending) {
    makeReady();
    EXPECT_FALSE(isShown(show<ChoiceSection>()));
}

TEST_F(ChoiceSectionTest, AppearsWithAButtonForEachCandidate) {
    makeReady();
    const auto& section = show<ChoiceSection>();
    makeAsking();
    EXPECT_TRUE(isShown(section));
    EXPECT_NE(label(section, u"Choose Safari Page"_s), nullptr);
    EXPECT_THAT(buttons(section), ElementsAre("One", "Two"));
}

TEST_F(ChoiceSectionTest, DisappearsOnceTheCandidatesAreEmptied) {
    makeReady();
    const auto& section = show<ChoiceSection>();
    makeAsking();
    const auto task = start();
    ASSERT_TRUE(coordinator->candidateTargets().empty());
    EXPECT_FALSE(isShown(section));
}

TEST_F(ChoiceSectionTest, ReplacesTheButtonsWithTheCandidates) {
    makeReady();
    const auto& section = show<ChoiceSection>();
    makeAsking();
    makeAsking(u"Three"_s, u"Four"_s);
    EXPECT_THAT(buttons(section), ElementsAre("Three", "Four"));
}

TEST_F(ChoiceSectionTest, AttachesToThePageOfThePressedButtonAndDisappears) {
    makeReady();
    const auto& section = show<ChoiceSection>();
    makeAsking();
    auto* const two = button(section, u"Two"_s);
    ASSERT_NE(two, nullptr);
    two->click();
    EXPECT_EQ(log.count("attach Two on iPhone 16"), 1);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::running);
    EXPECT_FALSE(isShown(section));
}

TEST_F(ChoiceSectionTest, ShowsACompassBeforeAndAChevronAfterEachTitle) {
    makeReady();
    const auto& section = show<ChoiceSection>();
    makeAsking();
    for (const ListRow* const row : shown<ListRow>(section)) {
        EXPECT_EQ(row->leadingSymbol(), Symbol::compass);
        EXPECT_EQ(row->trailingSymbol(), Symbol::chevronRight);
    }
}

TEST_F(ChoiceSectionTest, ChoosesOnceForTwoPresses) {
    makeReady();
    const auto& section = show<ChoiceSection>();
    makeAsking();
    QPushButton* const two = button(section, u"Two"_s);
    ASSERT_NE(two, nullptr);
    two->click();
    two->click();
    EXPECT_EQ(log.count("attach Two on iPhone 16"), 1);
}

} // namespace

} // namespace corvanta
