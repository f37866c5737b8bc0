// SPDX-License-Identifier: MIT
#include "window/Appearance.h"

#include <QApplication>
#include <QPalette>
#include <QStyleFactory>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto styleSheet = uR"(
QWidget#workspaceView, QScrollArea, QWidget#scrolledContent { background: %ground; }
QFrame#card { background: %card; border: 1px solid %hairline; border-radius: 10px; }
QFrame#statusBar { background: %card; border: none; border-top: 1px solid %hairline; }
QFrame#rowSeparator { background: %hairline; border: none; }
QLabel { color: %text; background: transparent; }
QLabel#secondary { color: %secondary; }
QLineEdit, QComboBox {
    background: %card; color: %text; border: 1px solid %control; border-radius: 6px; padding: 4px 8px;
    min-height: 20px; selection-background-color: %accent; selection-color: #ffffff;
}
QLineEdit:focus, QComboBox:focus { border: 2px solid %accent; padding: 3px 7px; }
QComboBox::drop-down { border: none; width: 26px; }
QComboBox QAbstractItemView {
    background: %card; color: %text; border: 1px solid %control; selection-background-color: %accent;
    selection-color: #ffffff; outline: none;
}
QPushButton {
    background: %card; color: %text; border: 1px solid %control; border-radius: 6px; padding: 4px 10px;
    min-height: 20px;
}
QPushButton:hover { background: %hover; }
QPushButton:pressed { background: %hairline; }
QPushButton:focus { border: 2px solid %accent; padding: 3px 9px; }
QPushButton:disabled { color: %blocked; background: %card; border-color: %hairline; }
QPushButton#prominent { background: %accent; color: #ffffff; border-color: %accent; font-weight: 600; }
QPushButton#prominent:hover { background: %accentHover; }
QPushButton#prominent:focus { border: 2px solid %text; }
QPushButton#prominent:disabled { background: %hairline; color: %secondary; border-color: %hairline; }
QPushButton#destructive { color: %failed; }
QPushButton#destructive:disabled { color: %blocked; }
QPushButton#choice { text-align: left; }
QToolTip { background: %card; color: %text; border: 1px solid %control; padding: 4px; }
QScrollBar:vertical { background: transparent; width: 10px; margin: 2px; }
QScrollBar::handle:vertical { background: %control; border-radius: 3px; min-height: 24px; }
QScrollBar::add-line:vertical, QScrollBar::sub-line:vertical { height: 0; }
QScrollBar::add-page:vertical, QScrollBar::sub-page:vertical { background: transparent; }
)";

QString filledStyleSheet(const Appearance& appearance, bool isDark) {
    QString sheet = QString::fromUtf16(styleSheet);
    const auto fill = [&sheet](QStringView name, const QColor& colour) {
        sheet.replace(QString(u'%' + name.toString()), colour.name());
    };
    fill(u"accentHover", isDark ? appearance.accent.lighter(110) : appearance.accent.darker(110));
    fill(u"accent", appearance.accent);
    fill(u"ground", appearance.ground);
    fill(u"hairline", appearance.hairline);
    fill(u"secondary", appearance.secondaryText);
    fill(u"control", isDark ? QColor(u"#55565d"_s) : QColor(u"#c9c9d0"_s));
    fill(u"hover", isDark ? QColor(u"#33353a"_s) : QColor(u"#f2f2f5"_s));
    fill(u"blocked", appearance.blocked);
    fill(u"failed", appearance.failed);
    fill(u"card", appearance.card);
    fill(u"text", appearance.text);
    return sheet;
}

bool isDarkPalette(const QPalette& palette) {
    return palette.color(QPalette::Window).lightness() < palette.color(QPalette::WindowText).lightness();
}

} // namespace

Appearance Appearance::light() {
    return {.ground = QColor(u"#f5f5f7"_s),
            .card = QColor(u"#ffffff"_s),
            .hairline = QColor(u"#e2e2e7"_s),
            .text = QColor(u"#1d1d1f"_s),
            .secondaryText = QColor(u"#6e6e76"_s),
            .accent = QColor(u"#0a66d8"_s),
            .passed = QColor(u"#24924a"_s),
            .failed = QColor(u"#c9352b"_s),
            .blocked = QColor(u"#8a8a92"_s)};
}

Appearance Appearance::dark() {
    return {.ground = QColor(u"#1e1f22"_s),
            .card = QColor(u"#292a2e"_s),
            .hairline = QColor(u"#3a3b40"_s),
            .text = QColor(u"#ececef"_s),
            .secondaryText = QColor(u"#a0a0a9"_s),
            .accent = QColor(u"#4a95f5"_s),
            .passed = QColor(u"#4cc274"_s),
            .failed = QColor(u"#ff6b5e"_s),
            .blocked = QColor(u"#8d8d96"_s)};
}

Appearance Appearance::forPalette(const QPalette& palette) {
    return isDarkPalette(palette) ? dark() : light();
}

void applyAppearance(QApplication& application) {
    QApplication::setStyle(QStyleFactory::create(u"Fusion"_s));
    const QPalette palette = QApplication::palette();
    application.setStyleSheet(filledStyleSheet(Appearance::forPalette(palette), isDarkPalette(palette)));
}

} // namespace corvanta
