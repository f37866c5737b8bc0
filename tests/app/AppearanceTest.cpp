// SPDX-License-Identifier: MIT
#include "window/Appearance.h"

#include <QApplication>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QStyle>

#include <gtest/gtest.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

QPalette paletteOf(const QColor& ground, const QColor& text, const QColor& highlight = u"#3070c0"_s) {
    QPalette palette(ground);
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, text);
    palette.setColor(QPalette::Highlight, highlight);
    return palette;
}

TEST(Appearance, IsLightOrDarkAsThePaletteIs) {
    EXPECT_EQ(Appearance::forPalette(paletteOf(u"#efefef"_s, u"#000000"_s)), Appearance::light());
    EXPECT_EQ(Appearance::forPalette(paletteOf(u"#2d2d2d"_s, u"#ffffff"_s)), Appearance::dark());
}

TEST(Appearance, TakesTheColoursOfAPaletteOfHighContrast) {
    const Appearance appearance = Appearance::forPalette(paletteOf(Qt::black, u"#ffff00"_s, u"#00ffff"_s));
    EXPECT_EQ(appearance.card, QColor(Qt::black));
    EXPECT_EQ(appearance.text, QColor(u"#ffff00"_s));
    EXPECT_EQ(appearance.controlBorder, appearance.text);
    EXPECT_EQ(appearance.accent, QColor(u"#00ffff"_s));
}

TEST(Appearance, DoesWithoutAHighlightThatCannotBeTold) {
    const Appearance appearance = Appearance::forPalette(paletteOf(Qt::white, Qt::black, u"#ffff00"_s));
    EXPECT_EQ(appearance.accent, QColor(Qt::black));
}

TEST(Appearance, KeepsItsTextsReadable) {
    for (const Appearance& appearance :
         {Appearance::light(), Appearance::dark(), Appearance::forPalette(paletteOf(Qt::white, Qt::black)),
          Appearance::forPalette(paletteOf(Qt::black, Qt::white))}) {
        for (const QColor& ground : {appearance.ground, appearance.card, appearance.bar}) {
            EXPECT_GE(contrastRatio(appearance.text, ground), 7);
            EXPECT_GE(contrastRatio(appearance.secondaryText, ground), 4.5);
        }
        EXPECT_GE(contrastRatio(appearance.failed, appearance.card), 4.5);
        EXPECT_GE(contrastRatio(appearance.secondaryText, appearance.rowHover), 4.5);
        for (const QColor& ground : {appearance.accent, appearance.accentHover, appearance.accentPressed})
            EXPECT_GE(contrastRatio(appearance.onAccent, ground), 4.5) << ground.name().toStdString();
        // What is no text has to be told from its ground.
        for (const QColor& shape : {appearance.accent, appearance.passed, appearance.blocked})
            EXPECT_GE(contrastRatio(shape, appearance.card), 3) << shape.name().toStdString();
    }
}

TEST(TypeScale, Has17And13And12) {
    QFont font;
    font.setPixelSize(10);
    EXPECT_EQ(TypeScale::forFont(font), (TypeScale{17, 13, 12}));
}

TEST(TypeScale, GrowsWithTheFontOfThePlatform) {
    QFont font;
    font.setPixelSize(26);
    EXPECT_EQ(TypeScale::forFont(font), (TypeScale{34, 26, 24}));
}

/// What the application looks like once the appearance has been applied.
class AppliedAppearance : public ::testing::Test {
protected:
    static void SetUpTestSuite() { applyAppearance(*qApp); }

    void TearDown() override {
        QApplication::setPalette(m_palette);
        QApplication::setFont(m_font);
    }

private:
    QPalette m_palette = QApplication::palette();
    QFont m_font = QApplication::font();
};

TEST_F(AppliedAppearance, FollowsThePaletteWhileTheProgramRuns) {
    QApplication::setPalette(paletteOf(u"#efefef"_s, u"#000000"_s));
    EXPECT_TRUE(qApp->styleSheet().contains(Appearance::light().ground.name()));
    QApplication::setPalette(paletteOf(u"#2d2d2d"_s, u"#ffffff"_s));
    EXPECT_TRUE(qApp->styleSheet().contains(Appearance::dark().ground.name()));
    EXPECT_FALSE(qApp->styleSheet().contains(Appearance::light().ground.name()));
}

TEST_F(AppliedAppearance, FollowsTheFontWhileTheProgramRuns) {
    QFont font = QApplication::font();
    font.setPixelSize(26);
    QApplication::setFont(font);
    EXPECT_TRUE(qApp->styleSheet().contains(u"font-size: 26px"));
    EXPECT_TRUE(qApp->styleSheet().contains(u"font-size: 34px"));
}

TEST_F(AppliedAppearance, LeavesNoPlaceholderUnfilled) {
    EXPECT_FALSE(qApp->styleSheet().isEmpty());
    EXPECT_FALSE(qApp->styleSheet().contains(u"@{"));
}

TEST_F(AppliedAppearance, ChangesNoSizeWithTheFocus) {
    QWidget window;
    QPushButton button(u"Start"_s, &window);
    QLineEdit field(&window);
    window.show();
    QApplication::setActiveWindow(&window);
    const QSize buttonSize = button.sizeHint();
    const QSize fieldSize = field.sizeHint();
    button.setFocus();
    ASSERT_TRUE(button.hasFocus());
    EXPECT_EQ(button.sizeHint(), buttonSize);
    field.setFocus();
    EXPECT_EQ(field.sizeHint(), fieldSize);
}

} // namespace

} // namespace corvanta
