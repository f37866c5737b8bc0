// SPDX-License-Identifier: MIT
#include "window/SetupSection.h"

#include "WindowSectionTest.h"
#include "window/widgets/CheckRow.h"
#include "window/widgets/ProgressIndicator.h"
#include "window/widgets/SymbolMark.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;

class SetupSectionTest : public WindowSectionTest {
protected:
    /// Runs the checks again, to their end.
    void check() {
        const testing::WatchedTask checks(coordinator->runSetupChecks());
        clock.advance(1s);
        ASSERT_TRUE(checks.isDone());
    }
};

TEST_F(SetupSectionTest, ShowsARowForEachCheckWithItsTitleAndDetail) {
    makeReady();
    const auto& section = show<SetupSection>();
    ASSERT_EQ(coordinator->setupChecks().size(), 7U);
    Texts expected{"Setup ready"};
    for (const SetupCheck& check : coordinator->setupChecks()) {
        expected.push_back(check.title.toStdString());
        expected.push_back(check.detail.toStdString());
    }
    EXPECT_EQ(labels(section), expected);
    EXPECT_EQ(shown<CheckRow>(section).size(), 7U);
    EXPECT_THAT(buttons(section), ElementsAre("Check Again"));
}

TEST_F(SetupSectionTest, ReplacesTheRowsAfterAnotherCheck) {
    makeReady();
    const auto& section = show<SetupSection>();
    probe.found.availableIOSRuntimeCount = 1;
    probe.found.isAppleSilicon = false;
    check();
    EXPECT_EQ(shown<CheckRow>(section).size(), 7U);
    EXPECT_THAT(labels(section), Contains("1 iOS runtime installed"));
    EXPECT_THAT(labels(section), Not(Contains("2 iOS runtimes installed")));
    EXPECT_THAT(labels(section), Contains("Setup checks"));
    EXPECT_THAT(labels(section), Not(Contains("Setup ready")));
}

TEST_F(SetupSectionTest, ShowsThatItChecksInPlaceOfTheButton) {
    makeReady();
    const auto& section = show<SetupSection>();
    auto* const again = button(section, u"Check Again"_s);
    ASSERT_NE(again, nullptr);
    probe.script.delay(testing::PreflightOperation::facts, 1s);
    again->click();
    EXPECT_TRUE(coordinator->isCheckingSetup());
    EXPECT_THAT(labels(section), Contains("Checking this Mac…"));
    EXPECT_EQ(button(section, u"Check Again"_s), nullptr);
    clock.advance(2s);
    EXPECT_FALSE(coordinator->isCheckingSetup());
    EXPECT_THAT(labels(section), Not(Contains("Checking this Mac…")));
    EXPECT_NE(button(section, u"Check Again"_s), nullptr);
}

struct ActionCase {
    std::string name;
    /// What is wrong with the host.
    void (*spoil)(SetupFacts& facts, testing::FakeAccessibilityTree& tree, testing::FakeSafari& safari);
    QString title;
    /// The row's button; empty for none.
    std::string button;

    friend void PrintTo(const ActionCase& row, std::ostream* stream) { *stream << row.name; }
};

class SetupSectionAction : public SetupSectionTest, public ::testing::WithParamInterface<ActionCase> {};

TEST_P(SetupSectionAction, StandsInTheRowOfTheFailedCheckAlone) {
    GetParam().spoil(probe.found, tree, safari);
    makeCoordinator();
    const auto& section = show<SetupSection>();
    check();
    const QLabel* const title = label(section, GetParam().title);
    ASSERT_NE(title, nullptr);
    const Texts expected = GetParam().button.empty() ? Texts{} : Texts{GetParam().button};
    EXPECT_EQ(buttons(*title->parentWidget()), expected);
    EXPECT_EQ(shown<SymbolMark>(*title->parentWidget()).size(), 1U);
    EXPECT_EQ(buttons(section).size(), 1 + expected.size());
}

using Tree = testing::FakeAccessibilityTree;
using Safari = testing::FakeSafari;

INSTANTIATE_TEST_SUITE_P(
    , SetupSectionAction,
    ::testing::Values(
        ActionCase{"Processor", [](SetupFacts& facts, Tree&, Safari&) { facts.isAppleSilicon = false; },
                   u"Apple silicon Mac"_s, ""},
        ActionCase{"System", [](SetupFacts& facts, Tree&, Safari&) { facts.macOSMajorVersion = 14; },
                   u"macOS 15 or later"_s, "Update macOS"},
        ActionCase{"Xcode", [](SetupFacts& facts, Tree&, Safari&) { facts.xcodeVersion.reset(); }, u"Xcode"_s,
                   "Get Xcode"},
        ActionCase{"CommandTools", [](SetupFacts& facts, Tree&, Safari&) { facts.simctlAvailable = false; },
                   u"Simulator command tools"_s, "Open Xcode"},
        ActionCase{"Runtime", [](SetupFacts& facts, Tree&, Safari&) { facts.availableIOSRuntimeCount = 0; },
                   u"iOS Simulator runtime"_s, "Open Xcode"},
        ActionCase{"Permission", [](SetupFacts&, Tree& tree, Safari&) { tree.trusted = false; },
                   u"Accessibility permission"_s, "Allow Access"},
        ActionCase{"DeveloperFeatures", [](SetupFacts&, Tree&, Safari& safari) { safari.hasDeveloperFeatures = false; },
                   u"Safari developer features"_s, "Open Safari"}),
    testing::CaseName());

TEST_F(SetupSectionTest, CarriesOutTheActionOfThePressedButton) {
    tree.trusted = false;
    makeCoordinator();
    const auto& section = show<SetupSection>();
    check();
    auto* const allow = button(section, u"Allow Access"_s);
    ASSERT_NE(allow, nullptr);
    allow->click();
    EXPECT_EQ(tree.trustRequests, 1);
    clock.advance(5s);
    EXPECT_EQ(tasks.size(), 0U);
}

/// The symbols of a part of the section that are shown, in order.
std::vector<Symbol> symbolsOf(const std::vector<SymbolMark*>& marks) {
    std::vector<Symbol> symbols;
    for (const SymbolMark* const mark : marks)
        symbols.push_back(mark->symbol());
    return symbols;
}

TEST_F(SetupSectionTest, ShowsASealOnceEverythingIsReadyAndAListBefore) {
    makeCoordinator();
    const auto& section = show<SetupSection>();
    EXPECT_THAT(symbolsOf(shown<SymbolMark>(section)), ElementsAre(Symbol::checklist));
    makeReady();
    EXPECT_EQ(symbolsOf(shown<SymbolMark>(section)).front(), Symbol::seal);
}

TEST_F(SetupSectionTest, ShowsEachStateByASymbolWithAName) {
    tree.trusted = false;
    makeCoordinator();
    const auto& section = show<SetupSection>();
    check();
    std::vector<Symbol> expected;
    for (const SetupCheck& row : coordinator->setupChecks()) {
        expected.push_back(row.state == SetupCheckState::passed   ? Symbol::passed
                           : row.state == SetupCheckState::failed ? Symbol::failed
                                                                  : Symbol::blocked);
    }
    ASSERT_THAT(expected, Contains(Symbol::failed));
    ASSERT_THAT(expected, Contains(Symbol::blocked));
    std::vector<Symbol> rows;
    Texts names;
    for (const CheckRow* const row : shown<CheckRow>(section)) {
        const SymbolMark* const mark = shown<SymbolMark>(*row).front();
        rows.push_back(mark->symbol());
        names.push_back(mark->accessibleName().toStdString());
    }
    EXPECT_EQ(rows, expected);
    EXPECT_THAT(names, Contains("Passed"));
    EXPECT_THAT(names, Contains("Failed"));
    EXPECT_THAT(names, Contains("Blocked"));
}

TEST_F(SetupSectionTest, KeepsTheRowsWhenTheStatesChange) {
    makeReady();
    const auto& section = show<SetupSection>();
    const auto before = shown<CheckRow>(section);
    tree.trusted = false;
    check();
    EXPECT_EQ(shown<CheckRow>(section), before);
}

} // namespace

} // namespace corvanta
