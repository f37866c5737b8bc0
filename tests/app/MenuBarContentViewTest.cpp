// SPDX-License-Identifier: MIT
#include "shell/MenuBarContentView.h"

#include "ShellTest.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;

class MenuBarContentViewTest : public ShellTest {
protected:
    void makeMenu() {
        makeCommands();
        menu = std::make_unique<MenuBarContentView>(*commands);
        QObject::connect(menu.get(), &MenuBarContentView::openRequested, menu.get(),
                         [this] { requests.push_back("open while " + rawValue(coordinator->phase()).toStdString()); });
        QObject::connect(menu.get(), &MenuBarContentView::quitRequested, menu.get(),
                         [this] { requests.emplace_back("quit"); });
    }

    std::unique_ptr<MenuBarContentView> menu;
    std::vector<std::string> requests;
};

TEST_F(MenuBarContentViewTest, HasItsItemsInOrder) {
    makeCoordinator();
    makeMenu();
    EXPECT_THAT(rows(*menu), ElementsAre("Status: Idle off", "Open Corvanta", "---", "Start Workspace off",
                                         "Open / Reload Page off", "Re-tile Windows off", "Stop Workspace off", "---",
                                         "Check for Updates…", "---", "Quit Corvanta [Ctrl+Q]"));
}

TEST_F(MenuBarContentViewTest, FollowsTheWorkspace) {
    makeCoordinator();
    makeMenu();
    makeReady();
    EXPECT_THAT(rows(*menu), ElementsAre("Status: Idle off", "Open Corvanta", "---", "Start Workspace",
                                         "Open / Reload Page off", "Re-tile Windows off", "Stop Workspace off", "---",
                                         "Check for Updates…", "---", "Quit Corvanta [Ctrl+Q]"));
    makeRunning();
    EXPECT_THAT(rows(*menu), ElementsAre("Status: Running off", "Open Corvanta", "---", "Start Workspace off",
                                         "Open / Reload Page", "Re-tile Windows", "Stop Workspace", "---",
                                         "Check for Updates…", "---", "Quit Corvanta [Ctrl+Q]"));
}

TEST_F(MenuBarContentViewTest, NamesThePhasesOfAStart) {
    makeReady();
    makeMenu();
    std::vector<std::string> statuses;
    QObject::connect(coordinator.get(), &WorkspaceCoordinator::phaseChanged, menu.get(),
                     [&] { statuses.push_back(rows(*menu).front()); });
    safari.listed = {page(u"Start"_s, 0)};
    safari.willList({});
    choose(*menu, u"Start Workspace"_s);
    clock.advance(300ms);
    coordinator->stopWorkspace();
    EXPECT_THAT(statuses, ElementsAre("Status: Checking setup off", "Status: Booting off", "Status: Opening page off",
                                      "Status: Attaching inspector off", "Status: Running off", "Status: Idle off"));
}

TEST_F(MenuBarContentViewTest, OpensTheWindowBeforeItStarts) {
    makeReady();
    makeMenu();
    choose(*menu, u"Start Workspace"_s);
    EXPECT_THAT(requests, ElementsAre("open while idle"));
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::preflight);
    coordinator->stopWorkspace();
}

TEST_F(MenuBarContentViewTest, OpensNothingForTheOtherItems) {
    makeRunning();
    makeMenu();
    choose(*menu, u"Re-tile Windows"_s);
    choose(*menu, u"Open / Reload Page"_s);
    choose(*menu, u"Stop Workspace"_s);
    EXPECT_THAT(requests, ElementsAre());
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
}

TEST_F(MenuBarContentViewTest, AsksForTheWindowAndForQuitting) {
    makeCoordinator();
    makeMenu();
    choose(*menu, u"Open Corvanta"_s);
    choose(*menu, u"Quit Corvanta"_s);
    EXPECT_THAT(requests, ElementsAre("open while idle", "quit"));
}

TEST_F(MenuBarContentViewTest, SaysWhileUpdatesAreLookedFor) {
    makeCoordinator();
    makeMenu();
    choose(*menu, u"Check for Updates…"_s);
    EXPECT_NE(item(*menu, u"Checking for Updates…"_s), nullptr);
    EXPECT_FALSE(item(*menu, u"Checking for Updates…"_s)->isEnabled());
    endCheck();
    EXPECT_NE(item(*menu, u"Check for Updates…"_s), nullptr);
}

} // namespace

} // namespace corvanta
