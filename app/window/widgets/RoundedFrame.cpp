// SPDX-License-Identifier: MIT
#include "window/widgets/RoundedFrame.h"

#include "window/Appearance.h"

#include <QEvent>
#include <QPainter>
#include <QPainterPath>

namespace corvanta {

namespace {

constexpr qreal radius = 6;

} // namespace

RoundedFrame::RoundedFrame(QWidget& parent)
    : QWidget(&parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    parent.installEventFilter(this);
    cover();
}

void RoundedFrame::cover() {
    setGeometry(parentWidget()->rect());
    raise();
}

bool RoundedFrame::eventFilter(QObject* watched, QEvent* event) {
    if (watched == parentWidget() && (event->type() == QEvent::Resize || event->type() == QEvent::ChildAdded))
        cover();
    return QWidget::eventFilter(watched, event);
}

void RoundedFrame::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Appearance appearance = Appearance::current();
    const QRectF line = rect().toRectF().adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath outside;
    outside.addRect(rect());
    QPainterPath inside;
    inside.addRoundedRect(line, radius, radius);
    painter.fillPath(outside.subtracted(inside), appearance.card);
    painter.setPen(QPen(appearance.hairline, 1));
    painter.drawPath(inside);
}

} // namespace corvanta
