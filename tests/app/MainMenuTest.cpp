// SPDX-License-Identifier: MIT
#include "shell/MainMenu.h"

#include "ShellTest.h"

#include <QMenu>
#include <QMenuBar>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;

class MainMenuTest : public ShellTest {
protected:
    void makeMenu() {
        makeCommands();
        mainMenu = new MainMenu(bar, *commands);
    }

    [[nodiscard]] const QMenu& menu(const QString& title) const {
        for (const QAction* const action : bar.actions()) {
            if (action->text() == title)
                return *action->menu();
        }
        throw std::out_of_range("no menu " + title.toStdString());
    }

    QMenuBar bar;
    MainMenu* mainMenu = nullptr;
};

TEST_F(MainMenuTest, HasThreeMenus) {
    makeCoordinator();
    makeMenu();
    EXPECT_THAT(rows(bar), ElementsAre("File", "Workspace", "Help"));
    EXPECT_THAT(rows(menu(u"File"_s)),
                ElementsAre("About Corvanta", "---", "Close Window [Ctrl+W]", "---", "Quit Corvanta [Ctrl+Q]"));
    EXPECT_THAT(rows(menu(u"Help"_s)), ElementsAre("Check for Updates…", "---", "Corvanta Website", "Email Support",
                                                   "---", "Copy Version Information"));
}

TEST_F(MainMenuTest, OffersNothingOfAWorkspaceBeforeTheSetupIsReady) {
    makeCoordinator();
    makeMenu();
    EXPECT_THAT(rows(menu(u"Workspace"_s)),
                ElementsAre("Start Workspace [Ctrl+Return] off", "Open / Reload Page [Ctrl+Shift+R] off",
                            "Re-tile Windows [Ctrl+Shift+T] off", "Stop Workspace [Ctrl+.] off"));
}

TEST_F(MainMenuTest, FollowsTheWorkspace) {
    makeCoordinator();
    makeMenu();
    const QMenu& workspace = menu(u"Workspace"_s);
    makeReady();
    EXPECT_THAT(rows(workspace), ElementsAre("Start Workspace [Ctrl+Return]", "Open / Reload Page [Ctrl+Shift+R] off",
                                             "Re-tile Windows [Ctrl+Shift+T] off", "Stop Workspace [Ctrl+.] off"));
    makeRunning();
    EXPECT_THAT(rows(workspace), ElementsAre("Start Workspace [Ctrl+Return] off", "Open / Reload Page [Ctrl+Shift+R]",
                                             "Re-tile Windows [Ctrl+Shift+T]", "Stop Workspace [Ctrl+.]"));
    coordinator->setControlWindow({});
    EXPECT_THAT(rows(workspace), ElementsAre("Start Workspace [Ctrl+Return] off", "Open / Reload Page [Ctrl+Shift+R]",
                                             "Re-tile Windows [Ctrl+Shift+T] off", "Stop Workspace [Ctrl+.]"));
}

TEST_F(MainMenuTest, StartsAndStopsTheWorkspace) {
    makeReady();
    makeMenu();
    choose(menu(u"Workspace"_s), u"Start Workspace"_s);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::preflight);
    choose(menu(u"Workspace"_s), u"Stop Workspace"_s);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
}

TEST_F(MainMenuTest, SaysWhileUpdatesAreLookedFor) {
    makeCoordinator();
    makeMenu();
    choose(menu(u"Help"_s), u"Check for Updates…"_s);
    EXPECT_EQ(rows(menu(u"Help"_s)).front(), "Checking for Updates… off");
    endCheck();
    EXPECT_EQ(rows(menu(u"Help"_s)).front(), "Check for Updates…");
}

TEST_F(MainMenuTest, AsksForClosingAndQuitting) {
    makeCoordinator();
    makeMenu();
    std::vector<std::string> requests;
    QObject::connect(mainMenu, &MainMenu::closeRequested, mainMenu, [&] { requests.emplace_back("close"); });
    QObject::connect(mainMenu, &MainMenu::quitRequested, mainMenu, [&] { requests.emplace_back("quit"); });
    choose(menu(u"File"_s), u"Close Window"_s);
    choose(menu(u"File"_s), u"Quit Corvanta"_s);
    EXPECT_THAT(requests, ElementsAre("close", "quit"));
}

} // namespace

} // namespace corvanta
