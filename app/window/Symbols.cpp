// SPDX-License-Identifier: MIT
#include "window/Symbols.h"

#include <QFile>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <variant>

/// In a static library nothing else brings the resources in; the macro wants the global namespace.
static void bringResourcesIn() {
    Q_INIT_RESOURCE(window);
}

namespace corvanta::Symbols {

using namespace Qt::Literals::StringLiterals;

namespace {

using Colour = std::variant<Tint, QColor>;

QString fileName(Symbol symbol) {
    switch (symbol) {
    case Symbol::workspace:
        return u"workspace"_s;
    case Symbol::checklist:
        return u"checklist"_s;
    case Symbol::seal:
        return u"seal"_s;
    case Symbol::passed:
        return u"passed"_s;
    case Symbol::failed:
        return u"failed"_s;
    case Symbol::blocked:
        return u"blocked"_s;
    case Symbol::play:
        return u"play"_s;
    case Symbol::refresh:
        return u"refresh"_s;
    case Symbol::search:
        return u"search"_s;
    case Symbol::columns:
        return u"columns"_s;
    case Symbol::stop:
        return u"stop"_s;
    case Symbol::compass:
        return u"compass"_s;
    case Symbol::chevronRight:
        return u"chevron-right"_s;
    case Symbol::chevronUpDown:
        return u"chevron-up-down"_s;
    case Symbol::star:
        return u"star"_s;
    case Symbol::location:
        return u"location"_s;
    case Symbol::locationOff:
        return u"location-off"_s;
    case Symbol::trash:
        return u"trash"_s;
    case Symbol::clock:
        return u"clock"_s;
    case Symbol::phaseIdle:
        return u"phase-idle"_s;
    case Symbol::phaseWorking:
        return u"phase-working"_s;
    case Symbol::phaseRunning:
        return u"phase-running"_s;
    case Symbol::phaseFailed:
        return u"phase-failed"_s;
    }
    return {};
}

const QByteArray& picture(Symbol symbol) {
    static QHash<int, QByteArray> pictures;
    QByteArray& known = pictures[static_cast<int>(symbol)];
    if (known.isEmpty()) {
        initialise();
        QFile file(u":/window/icons/"_s + fileName(symbol) + u".svg"_s);
        if (file.open(QIODevice::ReadOnly))
            known = file.readAll();
    }
    return known;
}

QByteArray coloured(QByteArray svg, const QColor& colour) {
    return svg.replace("currentColor", colour.name().toLatin1());
}

/// Draws anew at every size and scale that is asked for, in the colour of that moment.
class SymbolIconEngine final : public QIconEngine {
public:
    SymbolIconEngine(Symbol symbol, Colour colour)
        : m_symbol(symbol)
        , m_colour(colour) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        QSvgRenderer renderer(coloured(picture(m_symbol), colourFor(mode)));
        const int side = std::min(rect.width(), rect.height());
        const QRectF square(rect.left(), rect.top() + (rect.height() - side) / 2.0, side, side);
        renderer.render(painter, square);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return result;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new SymbolIconEngine(*this); }

private:
    [[nodiscard]] QColor colourFor(QIcon::Mode mode) const {
        const bool isEnabled = mode != QIcon::Disabled;
        if (const auto* const tint = std::get_if<Tint>(&m_colour))
            return Appearance::current().colour(*tint, isEnabled);
        return std::get<QColor>(m_colour);
    }

    Symbol m_symbol;
    Colour m_colour;
};

} // namespace

void initialise() {
    bringResourcesIn();
}

QIcon icon(Symbol symbol, Tint tint) {
    return QIcon(new SymbolIconEngine(symbol, tint));
}

QIcon icon(Symbol symbol, const QColor& colour) {
    return QIcon(new SymbolIconEngine(symbol, colour));
}

QIcon workspace(const QColor& colour) {
    return icon(Symbol::workspace, colour);
}

} // namespace corvanta::Symbols
