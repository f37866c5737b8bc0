// SPDX-License-Identifier: MIT
#include "window/Symbols.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QPalette>

#include <gtest/gtest.h>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

QPalette paletteOf(const QColor& ground, const QColor& text) {
    QPalette palette(ground);
    palette.setColor(QPalette::Window, ground);
    palette.setColor(QPalette::WindowText, text);
    return palette;
}

class SymbolsTest : public ::testing::Test {
protected:
    void TearDown() override { QApplication::setPalette(m_palette); }

    /// The mean colour of what is drawn, and how much of the square it covers.
    struct Ink {
        QColor colour;
        double coverage = 0;
    };

    static Ink inkOf(const QImage& image) {
        double red = 0;
        double green = 0;
        double blue = 0;
        double alpha = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor pixel = image.pixelColor(x, y);
                red += pixel.redF() * pixel.alphaF();
                green += pixel.greenF() * pixel.alphaF();
                blue += pixel.blueF() * pixel.alphaF();
                alpha += pixel.alphaF();
            }
        }
        if (alpha == 0)
            return {};
        return {QColor::fromRgbF(static_cast<float>(red / alpha), static_cast<float>(green / alpha),
                                 static_cast<float>(blue / alpha)),
                alpha / (image.width() * image.height())};
    }

    static void expectNear(const QColor& actual, const QColor& expected, const std::string& what) {
        EXPECT_NEAR(actual.red(), expected.red(), 6) << what;
        EXPECT_NEAR(actual.green(), expected.green(), 6) << what;
        EXPECT_NEAR(actual.blue(), expected.blue(), 6) << what;
    }

    static Ink inkOf(Symbol symbol, Tint tint, qreal scale, QIcon::Mode mode = QIcon::Normal) {
        const QPixmap pixmap = Symbols::icon(symbol, tint).pixmap(QSize(16, 16), scale, mode);
        EXPECT_EQ(pixmap.width(), qRound(16 * scale));
        EXPECT_EQ(pixmap.devicePixelRatio(), scale);
        return inkOf(pixmap.toImage());
    }

private:
    QPalette m_palette = QApplication::palette();
};

TEST_F(SymbolsTest, DrawsEachSymbolAtEachScaleInTheColourOfThePalette) {
    for (const bool isDark : {false, true}) {
        QApplication::setPalette(isDark ? paletteOf(u"#202020"_s, u"#f0f0f0"_s)
                                        : paletteOf(u"#efefef"_s, u"#101010"_s));
        for (int index = 0; index <= static_cast<int>(lastSymbol); ++index) {
            for (const qreal scale : {1.0, 1.5, 2.0, 3.0}) {
                const Ink ink = inkOf(static_cast<Symbol>(index), Tint::accent, scale);
                const std::string what = "symbol " + std::to_string(index) + " at " + std::to_string(scale);
                EXPECT_GT(ink.coverage, 0.05) << what;
                EXPECT_LT(ink.coverage, 0.95) << what;
                expectNear(ink.colour, (isDark ? Appearance::dark() : Appearance::light()).accent, what);
            }
        }
    }
}

TEST_F(SymbolsTest, FollowsAPaletteThatChangesAfterTheIconWasMade) {
    QApplication::setPalette(paletteOf(u"#efefef"_s, u"#101010"_s));
    const QIcon icon = Symbols::icon(Symbol::star);
    expectNear(inkOf(icon.pixmap(32, 32).toImage()).colour, Appearance::light().text, "light");
    QApplication::setPalette(paletteOf(u"#202020"_s, u"#f0f0f0"_s));
    expectNear(inkOf(icon.pixmap(32, 32).toImage()).colour, Appearance::dark().text, "dark");
}

TEST_F(SymbolsTest, IsPalerWhereItIsDisabled) {
    QApplication::setPalette(paletteOf(u"#efefef"_s, u"#101010"_s));
    const Ink ink = inkOf(Symbol::refresh, Tint::text, 2, QIcon::Disabled);
    expectNear(ink.colour, Appearance::light().colour(Tint::text, false), "disabled");
    EXPECT_GT(ink.colour.lightness(), 100);
}

TEST_F(SymbolsTest, HasEdgesAsSharpAsTheScaleAllows) {
    // The share of half-covered pixels falls as the resolution grows; a bitmap that is blown up keeps it.
    const auto softShare = [](qreal scale) {
        const QImage image = Symbols::icon(Symbol::stop).pixmap(QSize(16, 16), scale).toImage();
        int soft = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const int alpha = image.pixelColor(x, y).alpha();
                soft += alpha > 20 && alpha < 235 ? 1 : 0;
            }
        }
        return static_cast<double>(soft) / (image.width() * image.height());
    };
    EXPECT_LT(softShare(3), 0.02);
    EXPECT_LE(softShare(3), softShare(1) + 0.001);
}

TEST_F(SymbolsTest, KeepsAColourOfItsOwn) {
    const QImage image = Symbols::workspace(QColor(u"#123456"_s)).pixmap(48, 48).toImage();
    expectNear(inkOf(image).colour, QColor(u"#123456"_s), "own colour");
}

} // namespace

} // namespace corvanta
