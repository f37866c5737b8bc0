// SPDX-License-Identifier: MIT
// The small parts that the sections are made of.
#include "VirtualClock.h"
#include "window/widgets/AddressField.h"
#include "window/widgets/IconButton.h"
#include "window/widgets/ListRow.h"
#include "window/widgets/ProgressIndicator.h"
#include "window/widgets/TextLabel.h"
#include "window/widgets/ToolTip.h"

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QKeyEvent>

#include <gtest/gtest.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

TEST(ProgressIndicator, TellsForHowLongItHasBeenGoing) {
    testing::VirtualClock clock;
    ProgressIndicator indicator(clock);
    EXPECT_FALSE(indicator.isActive());
    EXPECT_TRUE(indicator.toolTip().isEmpty());
    indicator.setActive(true);
    EXPECT_EQ(indicator.toolTip(), u"Working for 0 s");
    clock.advance(12900ms);
    indicator.turn();
    EXPECT_EQ(indicator.toolTip(), u"Working for 12 s");
    EXPECT_EQ(indicator.accessibleDescription(), u"Working for 12 s");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&indicator)->text(QAccessible::Description), u"Working for 12 s");
}

TEST(ProgressIndicator, CountsAnewEachTime) {
    testing::VirtualClock clock;
    ProgressIndicator indicator(clock);
    indicator.setActive(true);
    clock.advance(30s);
    indicator.setActive(true);
    indicator.turn();
    EXPECT_EQ(indicator.toolTip(), u"Working for 30 s");
    indicator.setActive(false);
    EXPECT_TRUE(indicator.toolTip().isEmpty());
    EXPECT_TRUE(indicator.isHidden());
    indicator.setActive(true);
    EXPECT_EQ(indicator.toolTip(), u"Working for 0 s");
}

TEST(TextLabel, BreaksWhatIsTooLongForAWordAndGivesItBackWhole) {
    const QString address = u"https://staging.example.com/checkout/basket/confirm?session=0123456789abcdef"_s;
    TextLabel label(TextStyle::body, u"Opening "_s + address);
    EXPECT_LT(label.minimumSizeHint().width(), 120);
    EXPECT_EQ(label.shownText(), u"Opening "_s + address);
    EXPECT_EQ(label.accessibleName(), u"Opening "_s + address);
    label.setSelectable();
    label.setSelection(0, static_cast<int>(label.text().size()));
    QKeyEvent copy(QEvent::KeyPress, Qt::Key_C, Qt::ControlModifier);
    QCoreApplication::sendEvent(&label, &copy);
    EXPECT_EQ(QApplication::clipboard()->text(), u"Opening "_s + address);
}

TEST(TextLabel, BreaksAnAddressAfterItsPunctuationFirst) {
    const TextLabel label(TextStyle::body, u"http://localhost:3000/checkout"_s);
    EXPECT_EQ(label.text(), u"http://\u200Blocalhost:\u200B3000/\u200Bcheckout");
}

TEST(TextLabel, LeavesWordsWhole) {
    const QString text = u"Accessibility access is needed to verify Safari."_s;
    const TextLabel label(TextStyle::secondary, text);
    EXPECT_EQ(label.text(), text);
}

TEST(TextLabel, ShowsWhatLooksLikeMarkUpLetterByLetter) {
    const TextLabel label(TextStyle::body, u"<b>Bold</b>"_s);
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
}

TEST(ListRow, ElidesWhatDoesNotFitAndTellsTheWholeInTheTooltip) {
    ListRow row;
    row.showTexts(u"A <i>title</i> that is far too long for a row that is as narrow as this one"_s, u"1,2"_s);
    row.resize(100, row.sizeHint().height());
    row.show();
    EXPECT_TRUE(row.toolTip().contains(u"&lt;i&gt;title"));
    EXPECT_TRUE(row.toolTip().contains(u"1,2"));
    row.resize(900, row.sizeHint().height());
    EXPECT_TRUE(row.toolTip().isEmpty());
}

TEST(ListRow, TakesNoAmpersandForAMnemonic) {
    ListRow row;
    row.showTexts(u"Terms & Conditions"_s);
    EXPECT_EQ(row.accessibleName(), u"Terms & Conditions");
    EXPECT_TRUE(row.shortcut().isEmpty());
}

TEST(AddressField, ShowsTheBeginningOfALongAddressAndTheWholeInTheTooltip) {
    AddressField field;
    field.resize(200, field.sizeHint().height());
    const QString address = u"https://staging.example.com/checkout/basket/confirm?session=0123456789abcdef"_s;
    field.showAddress(address);
    EXPECT_EQ(field.cursorPosition(), 0);
    EXPECT_EQ(field.toolTip(), plainToolTip(address));
    field.showAddress(u"http://a/"_s);
    EXPECT_TRUE(field.toolTip().isEmpty());
}

TEST(AddressField, LeavesTheCursorWhereSomebodyTypes) {
    AddressField field;
    field.showAddress(u"http://localhost/"_s);
    field.setCursorPosition(5);
    field.showAddress(u"http://localhost/"_s);
    EXPECT_EQ(field.cursorPosition(), 5);
}

TEST(IconButton, ShowsTheWorkInPlaceOfTheSymbolAndKeepsItsSize) {
    testing::VirtualClock clock;
    IconButton button(Symbol::refresh, u"Refresh"_s, IconButton::Frame::shown);
    button.setClock(clock);
    button.resize(button.sizeHint());
    const QSize before = button.sizeHint();
    button.setBusy(true);
    EXPECT_TRUE(button.isBusy());
    EXPECT_TRUE(button.icon().isNull());
    EXPECT_TRUE(button.isEnabled());
    EXPECT_EQ(button.sizeHint(), before);
    button.setBusy(false);
    EXPECT_FALSE(button.icon().isNull());
}

} // namespace

} // namespace corvanta
