// SPDX-License-Identifier: MIT
#include "WindowViewTest.h"

#include <QComboBox>
#include <QLineEdit>
#include <QTabBar>

#include <set>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

class WindowTextsTest : public WindowViewTest {
protected:
    using TextSet = std::set<std::string>;

    static void add(TextSet& texts, const QString& text) {
        if (!text.isEmpty())
            texts.insert(text.toStdString());
    }

    /// Everything that can be read in the window, beside what comes from devices, pages and the user.
    [[nodiscard]] TextSet allTexts() const {
        TextSet texts;
        for (const TextLabel* const label : shown<TextLabel>(view()))
            add(texts, label->shownText());
        for (const QPushButton* const button : shown<QPushButton>(view()))
            add(texts, button->text());
        for (const QLineEdit* const field : shown<QLineEdit>(view()))
            add(texts, field->placeholderText());
        for (const QComboBox* const picker : shown<QComboBox>(view())) {
            for (int index = 0; index < picker->count(); ++index)
                add(texts, picker->itemText(index));
        }
        for (const QTabBar* const tabs : shown<QTabBar>(view())) {
            for (int index = 0; index < tabs->count(); ++index)
                add(texts, tabs->tabText(index));
        }
        return texts;
    }

    [[nodiscard]] TextSet toolTips() const {
        TextSet texts;
        for (const QWidget* const widget : shown<QWidget>(view()))
            add(texts, widget->toolTip());
        return texts;
    }

    [[nodiscard]] TextSet accessibleNames() const {
        TextSet texts;
        for (QWidget* const widget : shown<QWidget>(view())) {
            if (isTabStop(*widget))
                add(texts, nameOf(*widget));
        }
        return texts;
    }
};

const std::set<std::string> titles{"Corvanta", "Web testing workspace for iOS Simulator"};

std::set<std::string> joined(std::initializer_list<std::set<std::string>> sets) {
    std::set<std::string> all;
    for (const auto& set : sets)
        all.insert(set.begin(), set.end());
    return all;
}

TEST_F(WindowTextsTest, SaysThisAndNothingElseAtFirst) {
    simulator.devices.clear();
    makeCoordinator();
    showView();
    EXPECT_EQ(allTexts(), joined({titles,
                                  {"Idle",
                                   "Setup checks",
                                   "Check Again",
                                   "Workspace",
                                   "http://localhost:3000",
                                   "Simulator",
                                   "No available simulators",
                                   "Start Workspace",
                                   "Open / Reload",
                                   "Re-tile",
                                   "Stop",
                                   "Search for a place",
                                   "Dropped Pin",
                                   "No location will be restored",
                                   "Set Location",
                                   "Clear",
                                   "Favorites",
                                   "Recents",
                                   "No favorite locations",
                                   "Ready"}}));
    EXPECT_EQ(toolTips(),
              (TextSet{"<span>No available simulators</span>", "Refresh simulator devices", "Save favorite"}));
    ASSERT_TRUE(testing::waitUntil([this] { return map != nullptr && map->widget().isVisible(); }));
    EXPECT_EQ(accessibleNames(),
              (TextSet{"Map", "Check Again", "Page address", "Simulator", "Refresh simulator devices",
                       "Start Workspace", "Open / Reload", "Re-tile", "Stop", "Search for a place", "Save favorite",
                       "Set Location", "Clear", "Saved locations"}));
}

TEST_F(WindowTextsTest, SaysThisAndNothingElseWhileItRuns) {
    makeRunning();
    coordinator->selectLocation({1.5, -2.25}, u"Here"_s, true);
    coordinator->saveFavorite();
    showView();
    TextSet checks;
    for (const SetupCheck& check : coordinator->setupChecks()) {
        add(checks, check.title);
        add(checks, check.detail);
    }
    EXPECT_EQ(allTexts(), joined({titles,
                                  checks,
                                  {"Running",
                                   "Setup ready",
                                   "Check Again",
                                   "Workspace",
                                   "http://localhost:3000",
                                   "Simulator",
                                   coordinator->devices()[0].displayName().toStdString(),
                                   coordinator->devices()[1].displayName().toStdString(),
                                   "Start Workspace",
                                   "Open / Reload",
                                   "Re-tile",
                                   "Stop",
                                   "Search for a place",
                                   "Here",
                                   "1.5,-2.25",
                                   "Set Location",
                                   "Clear",
                                   "Favorites",
                                   "Recents",
                                   "Saved favorite"}}));
}

TEST_F(WindowTextsTest, CallsEachPhaseByItsName) {
    const std::set<std::string> expected{"Idle",    "Checking setup", "Booting", "Opening page", "Attaching inspector",
                                         "Running", "Needs attention"};
    std::set<std::string> names;
    for (const WorkspacePhase phase :
         {WorkspacePhase::idle, WorkspacePhase::preflight, WorkspacePhase::booting, WorkspacePhase::openingPage,
          WorkspacePhase::attachingInspector, WorkspacePhase::running, WorkspacePhase::failed})
        names.insert(displayName(phase).toStdString());
    EXPECT_EQ(names, expected);
}

} // namespace

} // namespace corvanta
