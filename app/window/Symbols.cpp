// SPDX-License-Identifier: MIT
#include "window/Symbols.h"

#include <QIconEngine>
#include <QPainter>
#include <QPixmap>

#include <functional>
#include <utility>

namespace corvanta::Symbols {

namespace {

/// Side of the square on which the symbols are drawn.
constexpr qreal grid = 16;

using Drawing = std::function<void(QPainter&, QIcon::Mode)>;

/// Draws anew at every size and scale that is asked for.
class DrawnIconEngine final : public QIconEngine {
public:
    explicit DrawnIconEngine(Drawing drawing)
        : m_drawing(std::move(drawing)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(rect.width() / grid, rect.height() / grid);
        m_drawing(*painter, mode);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return picture;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new DrawnIconEngine(m_drawing); }

private:
    Drawing m_drawing;
};

QPen stroke(const QColor& colour) {
    return {colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin};
}

} // namespace

QIcon workspace(const QColor& colour) {
    return QIcon(new DrawnIconEngine([colour](QPainter& painter, QIcon::Mode) {
        painter.setPen(stroke(colour));
        painter.drawRoundedRect(QRectF(1.5, 2.5, 13, 11), 2.2, 2.2);
        painter.drawLine(QPointF(1.5, 5.5), QPointF(14.5, 5.5));
        painter.drawLine(QPointF(5.6, 5.5), QPointF(5.6, 13.5));
        painter.drawLine(QPointF(10.4, 5.5), QPointF(10.4, 13.5));
    }));
}

QIcon refresh(const QColor& colour, const QColor& disabled) {
    return QIcon(new DrawnIconEngine([colour, disabled](QPainter& painter, QIcon::Mode mode) {
        painter.setPen(stroke(mode == QIcon::Disabled ? disabled : colour));
        constexpr int sixteenthsOfDegree = 16;
        painter.drawArc(QRectF(3, 3, 10, 10), 40 * sixteenthsOfDegree, 290 * sixteenthsOfDegree);
        painter.drawPolyline(QPolygonF{{12.9, 2.2}, {12.7, 5.4}, {9.6, 5.2}});
    }));
}

} // namespace corvanta::Symbols
