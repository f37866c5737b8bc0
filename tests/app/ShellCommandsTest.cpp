// SPDX-License-Identifier: MIT
#include "shell/ShellCommands.h"

#include "ShellTest.h"
#include "shell/AppIdentity.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;

struct ItemCase {
    std::string name;
    ShellCommand command;
    ShellState state;
    MenuItem item;
};

void PrintTo(const ItemCase& value, std::ostream* stream) {
    *stream << value.name;
}

class ShellCommandItem : public ::testing::TestWithParam<ItemCase> {};

TEST_P(ShellCommandItem, ShowsTextAndState) {
    EXPECT_EQ(menuItem(GetParam().command, GetParam().state), GetParam().item);
}

const ShellState nothing;

INSTANTIATE_TEST_SUITE_P(
    Cases, ShellCommandItem,
    ::testing::Values(
        ItemCase{"startUnavailable", ShellCommand::startWorkspace, nothing, {u"Start Workspace"_s, false}},
        ItemCase{"startAvailable", ShellCommand::startWorkspace, {.canStart = true}, {u"Start Workspace"_s, true}},
        ItemCase{"startAfterAFailure",
                 ShellCommand::startWorkspace,
                 {.phase = WorkspacePhase::failed, .canStart = true},
                 {u"Start Workspace"_s, true}},
        ItemCase{"startWhileRunning",
                 ShellCommand::startWorkspace,
                 {.phase = WorkspacePhase::running, .canStart = true},
                 {u"Start Workspace"_s, false}},
        ItemCase{"reloadUnavailable", ShellCommand::reloadPage, nothing, {u"Open / Reload Page"_s, false}},
        ItemCase{"reloadAvailable", ShellCommand::reloadPage, {.canReload = true}, {u"Open / Reload Page"_s, true}},
        ItemCase{"retileUnavailable", ShellCommand::retileWindows, nothing, {u"Re-tile Windows"_s, false}},
        ItemCase{"retileAvailable", ShellCommand::retileWindows, {.canRetile = true}, {u"Re-tile Windows"_s, true}},
        ItemCase{"stopUnavailable", ShellCommand::stopWorkspace, nothing, {u"Stop Workspace"_s, false}},
        ItemCase{"stopAvailable", ShellCommand::stopWorkspace, {.canStop = true}, {u"Stop Workspace"_s, true}},
        ItemCase{"updatesUnchecked", ShellCommand::checkForUpdates, nothing, {u"Check for Updates…"_s, true}},
        ItemCase{"updatesBeingChecked",
                 ShellCommand::checkForUpdates,
                 {.isCheckingForUpdates = true},
                 {u"Checking for Updates…"_s, false}},
        ItemCase{"website", ShellCommand::openWebsite, nothing, {u"Corvanta Website"_s, true}},
        ItemCase{"support", ShellCommand::emailSupport, nothing, {u"Email Support"_s, true}},
        ItemCase{"version", ShellCommand::copyVersionInformation, nothing, {u"Copy Version Information"_s, true}}),
    testing::CaseName());

TEST(ShellStatusText, NamesEveryPhase) {
    std::vector<std::string> texts;
    for (const WorkspacePhase phase : allWorkspacePhases)
        texts.push_back(statusText(phase).toStdString());
    EXPECT_THAT(texts, ElementsAre("Status: Idle", "Status: Checking setup", "Status: Booting", "Status: Opening page",
                                   "Status: Attaching inspector", "Status: Running", "Status: Needs attention"));
}

class ShellCommandsTest : public ShellTest {};

TEST_F(ShellCommandsTest, ReadsTheStateFromCoordinatorAndChecker) {
    makeCoordinator();
    makeCommands();
    EXPECT_EQ(commands->state(), ShellState());
    makeRunning();
    EXPECT_EQ(commands->state(), (ShellState{.phase = WorkspacePhase::running,
                                             .canStart = true,
                                             .canReload = true,
                                             .canRetile = true,
                                             .canStop = true,
                                             .isCheckingForUpdates = false}));
    commands->perform(ShellCommand::checkForUpdates);
    EXPECT_TRUE(commands->state().isCheckingForUpdates);
}

TEST_F(ShellCommandsTest, TellsOfEveryChange) {
    makeCoordinator();
    makeCommands();
    ShellState known = commands->state();
    QObject::connect(commands.get(), &ShellCommands::stateChanged, commands.get(),
                     [this, &known] { known = commands->state(); });
    makeReady();
    EXPECT_EQ(known, commands->state());
    EXPECT_TRUE(known.canStart);
    coordinator->setSelectedDeviceID(std::nullopt);
    EXPECT_FALSE(known.canStart);
    coordinator->setSelectedDeviceID(u"A"_s);
    EXPECT_TRUE(known.canStart);
    makeRunning();
    EXPECT_EQ(known, commands->state());
    coordinator->setControlWindow({});
    EXPECT_FALSE(known.canRetile);
    commands->perform(ShellCommand::checkForUpdates);
    EXPECT_TRUE(known.isCheckingForUpdates);
    endCheck();
    EXPECT_FALSE(known.isCheckingForUpdates);
    coordinator->stopWorkspace();
    EXPECT_EQ(known, commands->state());
    EXPECT_FALSE(known.canStop);
}

TEST_F(ShellCommandsTest, StartsInTheBackground) {
    makeReady();
    makeCommands();
    safari.listed = {page(u"Start"_s, 0)};
    safari.willList({});
    commands->perform(ShellCommand::startWorkspace);
    EXPECT_TRUE(isWorking(coordinator->phase()));
    EXPECT_EQ(tasks.size(), 1U);
    clock.advance(300ms);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::running);
    EXPECT_EQ(tasks.size(), 0U);
}

TEST_F(ShellCommandsTest, ReloadsRetilesAndStops) {
    makeRunning();
    makeCommands();
    commands->perform(ShellCommand::retileWindows);
    EXPECT_EQ(log.count("tile"), 1);
    commands->perform(ShellCommand::reloadPage);
    EXPECT_TRUE(isWorking(coordinator->phase()));
    commands->perform(ShellCommand::stopWorkspace);
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
}

TEST_F(ShellCommandsTest, AsksForUpdatesWithAnAnswerInAnyCase) {
    makeCoordinator();
    makeCommands();
    commands->perform(ShellCommand::checkForUpdates);
    ASSERT_TRUE(testing::waitUntil([this] { return requests() == 1; }));
    clock.advance(12s);
    ASSERT_TRUE(testing::waitUntil([this] {
        clock.settle();
        return !checker.isChecking();
    }));
    ASSERT_TRUE(checker.presentedAlert());
    EXPECT_TRUE(std::holds_alternative<UpdateAlert::Failed>(checker.presentedAlert()->value()));
}

TEST_F(ShellCommandsTest, OpensTheWebsiteAndAMessageToTheSupport) {
    makeCoordinator();
    makeCommands();
    commands->perform(ShellCommand::openWebsite);
    commands->perform(ShellCommand::emailSupport);
    EXPECT_THAT(log.calls(), ElementsAre("open " + AppIdentity::websiteURL().absoluteString().toStdString(),
                                         "open " + AppIdentity::supportEmailURL()->absoluteString().toStdString()));
}

TEST_F(ShellCommandsTest, CopiesTheVersionLineAlone) {
    makeCoordinator();
    makeCommands();
    auto* const before = new QMimeData;
    before->setHtml(u"<b>Something</b>"_s);
    before->setText(u"Something"_s);
    QClipboard* const clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(before);
    commands->perform(ShellCommand::copyVersionInformation);
    EXPECT_EQ(clipboard->text(), AppIdentity::versionLine());
    EXPECT_FALSE(clipboard->mimeData()->hasHtml());
}

} // namespace

} // namespace corvanta
