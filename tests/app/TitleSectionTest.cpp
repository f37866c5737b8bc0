// SPDX-License-Identifier: MIT
#include "window/TitleSection.h"

#include "WindowSectionTest.h"
#include "window/widgets/SymbolMark.h"

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::Contains;
using ::testing::UnorderedElementsAre;

class TitleSectionTest : public WindowSectionTest {
protected:
    /// The mark of the phase, which is the smaller of the two.
    static SymbolMark* markOf(const TitleSection& section) {
        const auto marks = section.findChildren<SymbolMark*>();
        return *std::ranges::min_element(marks, {}, [](const SymbolMark* mark) { return mark->sizeHint().width(); });
    }
};

TEST_F(TitleSectionTest, NamesTheProgramItsPurposeAndThePhase) {
    makeReady();
    EXPECT_THAT(labels(show<TitleSection>()),
                UnorderedElementsAre("Idle", "Corvanta", "Web testing workspace for iOS Simulator"));
}

TEST_F(TitleSectionTest, FollowsThePhase) {
    makeReady();
    const auto& section = show<TitleSection>();
    safari.listed = {page(u"Start"_s, 0)};
    safari.willList({});
    const auto task = start();
    EXPECT_THAT(labels(section), Contains("Checking setup"));
    clock.advance(300ms);
    EXPECT_THAT(labels(section), Contains("Running"));
}

TEST_F(TitleSectionTest, GivesEveryKindOfPhaseAShapeOfItsOwn) {
    makeReady();
    const auto& section = show<TitleSection>();
    const auto mark = [&] { return markOf(section)->symbol(); };
    const Symbol idle = mark();
    simulator.script.fail(testing::SimulatorOperation::boot, testing::FakeError(u"No such device."_s));
    const auto task = start();
    const Symbol working = mark();
    clock.advance(300ms);
    const Symbol failed = mark();
    EXPECT_EQ(idle, Symbol::phaseIdle);
    EXPECT_EQ(working, Symbol::phaseWorking);
    EXPECT_EQ(failed, Symbol::phaseFailed);
}

} // namespace

} // namespace corvanta
