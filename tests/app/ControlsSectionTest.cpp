// SPDX-License-Identifier: MIT
#include "window/ControlsSection.h"

#include "WindowSectionTest.h"
#include "window/widgets/IconButton.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QKeyEvent>
#include <QLineEdit>

#include <set>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using testing::SimulatorOperation;

class ControlsSectionTest : public WindowSectionTest {
protected:
    void showSection() {
        m_section = &show<ControlsSection>();
        ASSERT_NE(address(), nullptr);
        ASSERT_NE(picker(), nullptr);
    }

    [[nodiscard]] const ControlsSection& section() const { return *m_section; }

    [[nodiscard]] QLineEdit* address() const { return m_section->findChild<QLineEdit*>(); }

    [[nodiscard]] QComboBox* picker() const { return m_section->findChild<QComboBox*>(); }

    [[nodiscard]] Texts pickerEntries() const {
        Texts entries;
        for (int index = 0; index < picker()->count(); ++index)
            entries.push_back(picker()->itemText(index).toStdString());
        return entries;
    }

    /// The four workspace buttons that can be pressed.
    [[nodiscard]] Texts enabledButtons() const {
        Texts enabled;
        for (const QString& text : {u"Start Workspace"_s, u"Open / Reload"_s, u"Re-tile"_s, u"Stop"_s}) {
            const QPushButton* const found = button(*m_section, text);
            if (found == nullptr)
                enabled.push_back("no button " + text.toStdString());
            else if (found->isEnabled())
                enabled.push_back(text.toStdString());
        }
        return enabled;
    }

    void press(const QString& text) { WindowSectionTest::press(*m_section, text); }

    void pressReturn() {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
        QCoreApplication::sendEvent(address(), &press);
    }

private:
    ControlsSection* m_section = nullptr;
};

TEST_F(ControlsSectionTest, StartsOnReturnInTheAddressFieldWhileIdle) {
    makeReady();
    showSection();
    pressReturn();
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::preflight);
    EXPECT_THAT(log.calls(), ElementsAre("ensureSafariRunning"));
}

TEST_F(ControlsSectionTest, ReloadsOnReturnInTheAddressFieldWhileRunning) {
    makeRunning();
    showSection();
    pressReturn();
    ASSERT_FALSE(journal.empty());
    EXPECT_EQ(journal.front(), "phase openingPage");
    EXPECT_EQ(log.count("openURL A"), 1);
    EXPECT_EQ(log.count("ensureSafariRunning"), 0);
}

TEST_F(ControlsSectionTest, StartsOnReturnInTheAddressFieldAfterAFailure) {
    makeReady();
    showSection();
    simulator.script.fail(SimulatorOperation::boot, testing::FakeError(u"No such device."_s));
    const auto task = start();
    clock.advance(300ms);
    ASSERT_EQ(coordinator->phase(), WorkspacePhase::failed);
    forget();
    pressReturn();
    EXPECT_EQ(log.count("ensureSafariRunning"), 1);
}

TEST_F(ControlsSectionTest, AsksTheCoordinatorToStartOnReturnAlsoWhenTheButtonIsDisabled) {
    makeCoordinator();
    showSection();
    pressReturn();
    EXPECT_EQ(status(), "Complete the setup items above before starting");
}

TEST_F(ControlsSectionTest, HandsTheTypedAddressOver) {
    makeReady();
    showSection();
    address()->setText(u"example.org"_s);
    EXPECT_EQ(coordinator->urlInput(), u"example.org");
}

TEST_F(ControlsSectionTest, ShowsTheCoordinatorsAddress) {
    makeReady();
    showSection();
    EXPECT_EQ(address()->text(), coordinator->urlInput());
    coordinator->setUrlInput(u"http://example.org/"_s);
    EXPECT_EQ(address()->text(), u"http://example.org/");
}

TEST_F(ControlsSectionTest, OffersNothingBeforeTheSetupIsComplete) {
    makeCoordinator();
    showSection();
    EXPECT_THAT(enabledButtons(), IsEmpty());
}

TEST_F(ControlsSectionTest, OffersToStartOnceTheSetupIsComplete) {
    makeCoordinator();
    showSection();
    makeReady();
    EXPECT_THAT(enabledButtons(), ElementsAre("Start Workspace"));
}

TEST_F(ControlsSectionTest, OffersOnlyToStopWhileTheWorkspaceStarts) {
    makeReady();
    showSection();
    const auto task = start();
    ASSERT_EQ(coordinator->phase(), WorkspacePhase::preflight);
    EXPECT_THAT(enabledButtons(), ElementsAre("Stop"));
}

TEST_F(ControlsSectionTest, OffersAllButToStartWhileTheWorkspaceRuns) {
    makeCoordinator();
    showSection();
    makeRunning();
    EXPECT_THAT(enabledButtons(), ElementsAre("Open / Reload", "Re-tile", "Stop"));
}

TEST_F(ControlsSectionTest, OffersNoTilingWithoutTheControlWindow) {
    makeRunning();
    showSection();
    coordinator->setControlWindow({});
    EXPECT_THAT(enabledButtons(), ElementsAre("Open / Reload", "Stop"));
}

TEST_F(ControlsSectionTest, OffersOnlyToStopWithoutADevice) {
    makeRunning();
    showSection();
    coordinator->setSelectedDeviceID(std::nullopt);
    EXPECT_EQ(coordinator->canRetile(), true);
    EXPECT_THAT(enabledButtons(), ElementsAre("Re-tile", "Stop"));
}

TEST_F(ControlsSectionTest, OffersToStartAndToStopAfterAFailure) {
    makeReady();
    showSection();
    simulator.script.fail(SimulatorOperation::boot, testing::FakeError(u"No such device."_s));
    const auto task = start();
    clock.advance(300ms);
    ASSERT_EQ(coordinator->phase(), WorkspacePhase::failed);
    EXPECT_THAT(enabledButtons(), ElementsAre("Start Workspace", "Stop"));
}

TEST_F(ControlsSectionTest, CallsTheOperationOfThePressedButton) {
    makeReady();
    showSection();
    safari.listed = {page(u"Start"_s, 0)};
    safari.willList({});
    press(u"Start Workspace"_s);
    clock.advance(300ms);
    ASSERT_EQ(coordinator->phase(), WorkspacePhase::running);
    forget();
    press(u"Re-tile"_s);
    EXPECT_THAT(log.calls(), ElementsAre("tile iPhone 16"));
    forget();
    press(u"Open / Reload"_s);
    EXPECT_EQ(log.count("openURL A"), 1);
    forget();
    press(u"Stop"_s);
    EXPECT_THAT(log.calls(), ElementsAre("restore"));
    EXPECT_EQ(coordinator->phase(), WorkspacePhase::idle);
}

TEST_F(ControlsSectionTest, SaysThatNoSimulatorIsAvailableWhenTheListIsEmpty) {
    simulator.devices.clear();
    makeCoordinator();
    showSection();
    EXPECT_THAT(pickerEntries(), ElementsAre("No available simulators"));
    const testing::WatchedTask list(coordinator->refreshDevices());
    ASSERT_TRUE(list.isDone());
    EXPECT_THAT(pickerEntries(), ElementsAre("No available simulators"));
    EXPECT_EQ(picker()->currentText(), u"No available simulators");
}

TEST_F(ControlsSectionTest, ListsTheDevicesAndShowsTheSelectedOne) {
    makeCoordinator();
    showSection();
    makeReady();
    EXPECT_THAT(pickerEntries(), ElementsAre(coordinator->devices()[0].displayName().toStdString(),
                                             coordinator->devices()[1].displayName().toStdString()));
    EXPECT_EQ(picker()->currentData().toString(), u"A");
    coordinator->setSelectedDeviceID(u"B"_s);
    EXPECT_EQ(picker()->currentData().toString(), u"B");
}

TEST_F(ControlsSectionTest, SelectsThePickedDevice) {
    makeReady();
    showSection();
    picker()->setCurrentIndex(1);
    // Only a person's choice is announced so.
    Q_EMIT picker()->activated(1);
    EXPECT_EQ(coordinator->selectedDeviceID(), u"B"_s);
}

TEST_F(ControlsSectionTest, SuggestsAnAddress) {
    makeReady();
    showSection();
    EXPECT_EQ(address()->placeholderText(), u"http://localhost:3000");
}

TEST_F(ControlsSectionTest, GivesEachWorkspaceButtonASymbolAndTwoOfThemWeight) {
    makeReady();
    showSection();
    const auto emphasis = [this](const QString& text) {
        const QPushButton* const found = button(section(), text);
        EXPECT_FALSE(found->icon().isNull()) << text.toStdString();
        return found->property("emphasis").toString();
    };
    EXPECT_EQ(emphasis(u"Start Workspace"_s), u"prominent");
    EXPECT_EQ(emphasis(u"Open / Reload"_s), QString());
    EXPECT_EQ(emphasis(u"Re-tile"_s), QString());
    EXPECT_EQ(emphasis(u"Stop"_s), u"destructive");
}

TEST_F(ControlsSectionTest, RefreshesTheDevicesAndShowsTheProgressInPlaceOfTheSymbol) {
    makeReady();
    showSection();
    simulator.script.delay(SimulatorOperation::availableIOSDevices, 1s);
    auto* const refresh = section().findChild<IconButton*>();
    ASSERT_NE(refresh, nullptr);
    EXPECT_EQ(refresh->toolTip(), u"Refresh simulator devices");
    EXPECT_FALSE(refresh->isBusy());
    refresh->click();
    EXPECT_TRUE(refresh->isBusy());
    clock.advance(1s);
    EXPECT_FALSE(refresh->isBusy());
    EXPECT_EQ(log.count("availableIOSDevices"), 1);
}

TEST_F(ControlsSectionTest, HasAKeyForEachWorkspaceButton) {
    makeReady();
    showSection();
    std::set<QString> keys;
    for (const QString& text : {u"Start Workspace"_s, u"Open / Reload"_s, u"Re-tile"_s, u"Stop"_s})
        keys.insert(button(section(), text)->shortcut().toString());
    EXPECT_EQ(keys.size(), 4U);
    EXPECT_FALSE(keys.contains(QString()));
}

} // namespace

} // namespace corvanta
