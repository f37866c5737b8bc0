// SPDX-License-Identifier: MIT
// The style sheet that the appearance is applied with.
#include "window/Appearance.h"
#include "window/Symbols.h"

#include <QApplication>
#include <QEvent>
#include <QFile>
#include <QFontDatabase>
#include <QProxyStyle>
#include <QStyle>
#include <QStyleFactory>

#include <algorithm>
#include <utility>
#include <vector>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

using Values = std::vector<std::pair<QString, QString>>;

QString readSheet(const QString& name) {
    QFile file(u":/window/"_s + name);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

/// The desktop's family; Inter where no desktop has named one.
QString familyRule(const QFont& font) {
    static const QStringList generic{u"Sans Serif"_s, u"Sans"_s, u"sans-serif"_s, QString()};
    if (!generic.contains(font.family(), Qt::CaseInsensitive) || !QFontDatabase::hasFamily(u"Inter"_s))
        return {};
    return u"font-family: \"Inter\";"_s;
}

Values valuesFor(const Appearance& appearance, const QFont& font) {
    const TypeScale type = TypeScale::forFont(font);
    const auto disabled = [&appearance](Tint tint) { return appearance.colour(tint, false).name(); };
    return {{u"family"_s, familyRule(font)},
            {u"titleSize"_s, QString::number(type.title)},
            {u"bodySize"_s, QString::number(type.body)},
            {u"secondarySize"_s, QString::number(type.secondary)},
            {u"ground"_s, appearance.ground.name()},
            {u"card"_s, appearance.card.name()},
            {u"bar"_s, appearance.bar.name()},
            {u"hairline"_s, appearance.hairline.name()},
            {u"controlBorder"_s, appearance.controlBorder.name()},
            {u"control"_s, appearance.control.name()},
            {u"field"_s, appearance.field.name()},
            {u"controlHover"_s, appearance.controlHover.name()},
            {u"controlPressed"_s, appearance.controlPressed.name()},
            {u"text"_s, appearance.text.name()},
            {u"textDisabled"_s, disabled(Tint::text)},
            {u"secondaryText"_s, appearance.secondaryText.name()},
            {u"accent"_s, appearance.accent.name()},
            {u"accentHover"_s, appearance.accentHover.name()},
            {u"accentPressed"_s, appearance.accentPressed.name()},
            {u"accentDisabled"_s, appearance.accentDisabled.name()},
            {u"onAccent"_s, appearance.onAccent.name()},
            {u"onAccentDisabled"_s, appearance.onAccentDisabled.name()},
            {u"failed"_s, appearance.failed.name()},
            {u"failedDisabled"_s, disabled(Tint::failed)}};
}

/// Puts the values in the place of their names, `@{name}`.
QString filled(QString sheet, const Values& values) {
    for (const auto& [name, value] : values)
        sheet.replace(u"@{"_s + name + u'}', value);
    return sheet;
}

/// Writes the style sheet anew whenever the desktop's palette or font changes.
class AppearanceKeeper final : public QObject {
public:
    explicit AppearanceKeeper(QApplication& application)
        : QObject(&application)
        , m_application(application) {
        application.installEventFilter(this);
        update();
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == &m_application &&
            (event->type() == QEvent::ApplicationPaletteChange || event->type() == QEvent::ApplicationFontChange))
            update();
        return false;
    }

private:
    void update() {
        QString sheet = readSheet(u"surfaces.qss"_s);
        // Where the platform draws its own controls, they keep their look.
        if (QApplication::style()->name() != u"macos")
            sheet += readSheet(u"controls.qss"_s);
        sheet = filled(sheet, valuesFor(Appearance::current(), QApplication::font()));
        if (sheet != m_application.styleSheet())
            m_application.setStyleSheet(sheet);
    }

    QApplication& m_application;
};

/// Fusion with the one picture that a menu bar asks for at once drawn as a symbol: the picture file of the base style
/// would bring in every reader of picture formats that is installed.
class WindowStyle final : public QProxyStyle {
public:
    WindowStyle()
        : QProxyStyle(QStyleFactory::create(u"Fusion"_s)) {}

    [[nodiscard]] QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                                     const QWidget* widget) const override {
        if (icon == SP_ToolBarHorizontalExtensionButton)
            return Symbols::icon(Symbol::chevronRight, Tint::text);
        return QProxyStyle::standardIcon(icon, option, widget);
    }
};

} // namespace

void prepareAppearance() {
    Symbols::initialise();
    // The style sheet's own style hides ours once there is a style sheet, and is named after it.
    if (!qApp->styleSheet().isEmpty())
        return;
    const QStyle* const style = QApplication::style();
    if (style->name() != u"macos" && dynamic_cast<const WindowStyle*>(style) == nullptr)
        QApplication::setStyle(new WindowStyle);
}

void applyAppearance(QApplication& application) {
    prepareAppearance();
    new AppearanceKeeper(application);
}

} // namespace corvanta
