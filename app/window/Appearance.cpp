// SPDX-License-Identifier: MIT
#include "window/Appearance.h"

#include <QFont>
#include <QFontInfo>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double disabledStrength = 0.5;
constexpr double highContrast = 15;
constexpr double readableContrast = 4.5;

QColor blend(const QColor& over, const QColor& under, double strength) {
    const auto mixed = [strength](int first, int second) {
        return static_cast<int>(std::lround(first * strength + second * (1 - strength)));
    };
    return {mixed(over.red(), under.red()), mixed(over.green(), under.green()), mixed(over.blue(), under.blue())};
}

double luminance(const QColor& colour) {
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

bool isHighContrast(const QColor& ground, const QColor& text) {
    const bool isPure = ground.rgb() == QColor(Qt::black).rgb() || ground.rgb() == QColor(Qt::white).rgb();
    return isPure && contrastRatio(ground, text) >= highContrast;
}

Appearance ofHighContrast(const QPalette& palette, const Appearance& plain) {
    const QColor ground = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    const QColor highlight = palette.color(QPalette::Highlight);
    const QColor accent = contrastRatio(highlight, ground) >= readableContrast ? highlight : text;
    Appearance appearance = plain;
    appearance.ground = appearance.card = appearance.bar = appearance.control = appearance.field = ground;
    appearance.text = appearance.secondaryText = appearance.hairline = appearance.controlBorder = text;
    appearance.accent = appearance.accentHover = appearance.accentPressed = accent;
    appearance.onAccent = ground;
    appearance.controlHover = appearance.rowHover = blend(text, ground, 0.15);
    appearance.controlPressed = appearance.rowPressed = blend(text, ground, 0.3);
    appearance.accentDisabled = blend(text, ground, 0.2);
    appearance.onAccentDisabled = blend(text, ground, 0.8);
    appearance.blocked = text;
    return appearance;
}

} // namespace

double contrastRatio(const QColor& first, const QColor& second) {
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

Appearance Appearance::light() {
    return {.ground = QColor(u"#f5f5f7"_s),
            .card = QColor(u"#ffffff"_s),
            .bar = QColor(u"#fbfbfc"_s),
            .hairline = QColor(u"#e2e2e7"_s),
            .controlBorder = QColor(u"#cfcfd6"_s),
            .control = QColor(u"#ffffff"_s),
            .field = QColor(u"#ffffff"_s),
            .controlHover = QColor(u"#f4f4f7"_s),
            .controlPressed = QColor(u"#e6e6eb"_s),
            .rowHover = QColor(u"#edf3fc"_s),
            .rowPressed = QColor(u"#d9e6f9"_s),
            .text = QColor(u"#1d1d1f"_s),
            .secondaryText = QColor(u"#6e6e76"_s),
            .accent = QColor(u"#0a66d8"_s),
            .accentHover = QColor(u"#1a72e0"_s),
            .accentPressed = QColor(u"#0955b4"_s),
            .accentDisabled = QColor(u"#8fb8ec"_s),
            .onAccent = QColor(u"#ffffff"_s),
            .onAccentDisabled = QColor(u"#ffffff"_s),
            .passed = QColor(u"#24924a"_s),
            .failed = QColor(u"#c9352b"_s),
            .blocked = QColor(u"#8a8a92"_s)};
}

Appearance Appearance::dark() {
    return {.ground = QColor(u"#1e1f22"_s),
            .card = QColor(u"#292a2e"_s),
            .bar = QColor(u"#26272a"_s),
            .hairline = QColor(u"#3a3b40"_s),
            .controlBorder = QColor(u"#505159"_s),
            .control = QColor(u"#33343a"_s),
            .field = QColor(u"#1e1f22"_s),
            .controlHover = QColor(u"#3d3e45"_s),
            .controlPressed = QColor(u"#4a4b53"_s),
            .rowHover = QColor(u"#2c3645"_s),
            .rowPressed = QColor(u"#364a6b"_s),
            .text = QColor(u"#ececef"_s),
            .secondaryText = QColor(u"#a0a0a9"_s),
            .accent = QColor(u"#4a95f5"_s),
            .accentHover = QColor(u"#62a4f7"_s),
            .accentPressed = QColor(u"#3b82dd"_s),
            .accentDisabled = QColor(u"#2f4666"_s),
            .onAccent = QColor(u"#10151d"_s),
            .onAccentDisabled = QColor(u"#8ea5c4"_s),
            .passed = QColor(u"#4cc274"_s),
            .failed = QColor(u"#ff6b5e"_s),
            .blocked = QColor(u"#8d8d96"_s)};
}

Appearance Appearance::forPalette(const QPalette& palette) {
    const QColor ground = palette.color(QPalette::Window);
    const QColor text = palette.color(QPalette::WindowText);
    const Appearance plain = ground.lightness() < text.lightness() ? dark() : light();
    return isHighContrast(ground, text) ? ofHighContrast(palette, plain) : plain;
}

Appearance Appearance::current() {
    return forPalette(QGuiApplication::palette());
}

QColor Appearance::colour(Tint tint, bool isEnabled) const {
    const auto shown = [&](const QColor& colour) { return isEnabled ? colour : blend(colour, card, disabledStrength); };
    switch (tint) {
    case Tint::text:
        return shown(text);
    case Tint::secondary:
        return shown(secondaryText);
    case Tint::accent:
        return shown(accent);
    case Tint::onAccent:
        return isEnabled ? onAccent : onAccentDisabled;
    case Tint::passed:
        return shown(passed);
    case Tint::failed:
        return shown(failed);
    case Tint::blocked:
        return shown(blocked);
    }
    return text;
}

TypeScale TypeScale::forFont(const QFont& font) {
    const TypeScale least;
    const int body = std::max(least.body, QFontInfo(font).pixelSize());
    const auto scaled = [&](int size) { return static_cast<int>(std::lround(1.0 * size * body / least.body)); };
    return {.title = scaled(least.title), .body = body, .secondary = scaled(least.secondary)};
}

} // namespace corvanta
