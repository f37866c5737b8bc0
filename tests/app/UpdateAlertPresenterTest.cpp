// SPDX-License-Identifier: MIT
#include "shell/UpdateAlertPresenter.h"

#include "OffscreenWindows.h"
#include "ShellTest.h"
#include "UpdateTest.h"
#include "shell/AppIdentity.h"
#include "shell/UpdateAlertDialog.h"

#include <QAbstractTextDocumentLayout>
#include <QApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextLayout>

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

using ::testing::ElementsAre;
using testing::updateManifest;

class UpdateAlertPresenterTest : public ShellTest {
protected:
    UpdateAlertPresenterTest()
        : presenter(checker, desktop, [this] { return window.get(); }) {}

    ~UpdateAlertPresenterTest() override {
        presenter.close();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }

    /// The alerts on the screen.
    static std::vector<UpdateAlertDialog*> alerts() {
        std::vector<UpdateAlertDialog*> shown;
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            auto* const dialog = qobject_cast<UpdateAlertDialog*>(widget);
            if (dialog && dialog->isVisible())
                shown.push_back(dialog);
        }
        return shown;
    }

    /// Title, message and buttons of the one alert on the screen; the default button is marked.
    static std::vector<std::string> texts() {
        if (alerts().size() != 1)
            return {};
        const UpdateAlertDialog& dialog = *alerts().front();
        std::vector<std::string> result{dialog.findChild<QLabel*>()->text().toStdString(),
                                        dialog.findChild<QPlainTextEdit*>()->toPlainText().toStdString()};
        for (const QPushButton* const button : dialog.findChildren<QPushButton*>())
            result.push_back(button->text().toStdString() + (button->isDefault() ? " (default)" : ""));
        std::sort(result.begin() + 2, result.end());
        return result;
    }

    static void press(const QString& text) {
        ASSERT_EQ(alerts().size(), 1U);
        for (QPushButton* const button : alerts().front()->findChildren<QPushButton*>()) {
            if (button->text() == text)
                return button->click();
        }
        FAIL() << "no button " << text.toStdString();
    }

    static void pressKey(Qt::Key key) {
        ASSERT_EQ(alerts().size(), 1U);
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(alerts().front(), &event);
    }

    testing::OffscreenWindows offscreenWindows;
    std::unique_ptr<QWidget> window;
    UpdateAlertPresenter presenter;
};

TEST_F(UpdateAlertPresenterTest, ShowsNothingWithoutAnAlert) {
    presenter.present();
    EXPECT_TRUE(alerts().empty());
}

TEST_F(UpdateAlertPresenterTest, OffersAnUpdateWithItsNotesAsTheyStand) {
    checker.setPresentedAlert(UpdateAlert::available(updateManifest()));
    EXPECT_THAT(texts(), ElementsAre("Corvanta 1.4.0 is available", "Faster.\n<b>Bolder.</b>",
                                     "Download Update (default)", "Not Now"));
    EXPECT_EQ(alerts().front()->findChild<QLabel*>()->textFormat(), Qt::PlainText);
    EXPECT_FALSE(alerts().front()->isModal());
}

TEST_F(UpdateAlertPresenterTest, OpensTheDownloadAndTakesTheAlertBack) {
    checker.setPresentedAlert(UpdateAlert::available(updateManifest()));
    press(u"Download Update"_s);
    EXPECT_THAT(log.calls(), ElementsAre("open https://downloads.example/Corvanta.dmg"));
    EXPECT_EQ(checker.presentedAlert(), std::nullopt);
    EXPECT_TRUE(alerts().empty());
}

TEST_F(UpdateAlertPresenterTest, OpensNothingThatIsNotHttps) {
    for (const auto& address : {u"http://downloads.example/a"_s, u"file:///etc/passwd"_s, u"javascript:alert(1)"_s}) {
        UpdateManifest manifest = updateManifest();
        manifest.downloadURL = URL::parse(address).value();
        checker.setPresentedAlert(UpdateAlert::available(manifest));
        press(u"Download Update"_s);
        EXPECT_EQ(checker.presentedAlert(), std::nullopt);
    }
    EXPECT_TRUE(log.calls().empty());
}

TEST_F(UpdateAlertPresenterTest, LeavesTheUpdateForLater) {
    checker.setPresentedAlert(UpdateAlert::available(updateManifest()));
    press(u"Not Now"_s);
    EXPECT_TRUE(log.calls().empty());
    EXPECT_EQ(checker.presentedAlert(), std::nullopt);
    EXPECT_TRUE(alerts().empty());
}

TEST_F(UpdateAlertPresenterTest, SaysThatThereIsNothingNewer) {
    checker.setPresentedAlert(UpdateAlert::upToDate());
    EXPECT_THAT(texts(), ElementsAre("You're up to date",
                                     "You have the latest version of Corvanta (" +
                                         AppIdentity::versionLine().toStdString() + ").",
                                     "OK (default)"));
    press(u"OK"_s);
    EXPECT_EQ(checker.presentedAlert(), std::nullopt);
}

TEST_F(UpdateAlertPresenterTest, SaysWhatWentWrong) {
    checker.setPresentedAlert(UpdateAlert::failed(u"<i>No</i> network."_s));
    EXPECT_THAT(texts(), ElementsAre("Couldn't Check for Updates", "<i>No</i> network.", "OK (default)"));
    press(u"OK"_s);
    EXPECT_EQ(checker.presentedAlert(), std::nullopt);
}

TEST_F(UpdateAlertPresenterTest, IsDismissedWithTheEscapeKeyAndByItsWindowButton) {
    checker.setPresentedAlert(UpdateAlert::available(updateManifest()));
    pressKey(Qt::Key_Escape);
    EXPECT_EQ(checker.presentedAlert(), std::nullopt);
    checker.setPresentedAlert(UpdateAlert::upToDate());
    ASSERT_EQ(alerts().size(), 1U);
    alerts().front()->close();
    EXPECT_EQ(checker.presentedAlert(), std::nullopt);
    EXPECT_TRUE(log.calls().empty());
}

TEST_F(UpdateAlertPresenterTest, TakesTheReturnKeyForTheDefaultButton) {
    checker.setPresentedAlert(UpdateAlert::available(updateManifest()));
    pressKey(Qt::Key_Return);
    EXPECT_EQ(log.count("open "), 1);
    EXPECT_EQ(checker.presentedAlert(), std::nullopt);
}

TEST_F(UpdateAlertPresenterTest, ShowsOneAlertAtATime) {
    checker.setPresentedAlert(UpdateAlert::upToDate());
    checker.setPresentedAlert(UpdateAlert::failed(u"No network."_s));
    EXPECT_EQ(texts().front(), "Couldn't Check for Updates");
    EXPECT_NE(checker.presentedAlert(), std::nullopt);
    presenter.present();
    EXPECT_EQ(alerts().size(), 1U);
    checker.setPresentedAlert(std::nullopt);
    EXPECT_TRUE(alerts().empty());
}

TEST_F(UpdateAlertPresenterTest, ShowsTheAlertAgainInTheNextWindow) {
    window = std::make_unique<QWidget>();
    checker.setPresentedAlert(UpdateAlert::upToDate());
    ASSERT_EQ(alerts().size(), 1U);
    EXPECT_EQ(alerts().front()->parentWidget(), window.get());
    window.reset();
    EXPECT_TRUE(alerts().empty());
    EXPECT_EQ(checker.presentedAlert(), UpdateAlert::upToDate());
    presenter.present();
    EXPECT_EQ(alerts().size(), 1U);
}

TEST_F(UpdateAlertPresenterTest, ShowsTheWholeOfAMessageThatFits) {
    const QString longWord = QString(200, u'w');
    for (const QString& message : {u"One line."_s, u"A line of the notes.\n"_s.repeated(7).trimmed(), longWord}) {
        checker.setPresentedAlert(UpdateAlert::failed(message));
        ASSERT_EQ(alerts().size(), 1U);
        const auto* const view = alerts().front()->findChild<QPlainTextEdit*>();
        EXPECT_EQ(view->verticalScrollBar()->maximum(), 0) << message.toStdString();
        for (QTextBlock block = view->document()->begin(); block.isValid(); block = block.next()) {
            // Asking for its place lays it out.
            std::ignore = view->document()->documentLayout()->blockBoundingRect(block);
            for (int line = 0; line < block.layout()->lineCount(); ++line)
                EXPECT_LE(block.layout()->lineAt(line).naturalTextWidth(), view->viewport()->width());
        }
    }
}

TEST_F(UpdateAlertPresenterTest, LeavesNoRoomForNotesThatThereAreNot) {
    UpdateManifest manifest = updateManifest();
    manifest.releaseNotes.clear();
    checker.setPresentedAlert(UpdateAlert::available(manifest));
    ASSERT_EQ(alerts().size(), 1U);
    EXPECT_EQ(alerts().front()->findChild<QPlainTextEdit*>(), nullptr);
}

TEST_F(UpdateAlertPresenterTest, KeepsLongNotesWithinTheScreen) {
    UpdateManifest manifest = updateManifest();
    manifest.releaseNotes = u"A line of the notes.\n"_s.repeated(20'000);
    checker.setPresentedAlert(UpdateAlert::available(manifest));
    ASSERT_EQ(alerts().size(), 1U);
    EXPECT_LT(alerts().front()->height(), 500);
    EXPECT_EQ(alerts().front()->findChild<QPlainTextEdit*>()->toPlainText(), manifest.releaseNotes);
}

} // namespace

} // namespace corvanta
