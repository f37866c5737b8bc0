// SPDX-License-Identifier: MIT
#include "window/widgets/ProgressIndicator.h"

#include "window/Appearance.h"
#include "window/widgets/AccessibleRoles.h"

#include <QCursor>
#include <QPainter>
#include <QToolTip>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int side = 16;
constexpr int stepsPerTurn = 24;
constexpr auto turnTime = std::chrono::milliseconds(1200);

} // namespace

ProgressIndicator::ProgressIndicator(const Clock& clock, QWidget* parent)
    : QWidget(parent)
    , m_clock(clock) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleRole(*this, QAccessible::ProgressBar);
    setAccessibleName(u"Working"_s);
    setVisible(false);
}

void ProgressIndicator::setActive(bool isActive) {
    if (isActive == this->isActive())
        return;
    if (isActive) {
        m_since = m_clock.now();
        m_timer = startTimer(turnTime / stepsPerTurn);
    } else {
        m_since.reset();
        killTimer(m_timer);
    }
    tellTime();
    setVisible(isActive);
}

QSize ProgressIndicator::sizeHint() const {
    return {side, side};
}

void ProgressIndicator::turn() {
    m_angle = (m_angle + 360 / stepsPerTurn) % 360;
    tellTime();
    update();
}

void ProgressIndicator::tellTime() {
    QString text;
    if (m_since) {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(m_clock.now() - *m_since);
        text = u"Working for %1 s"_s.arg(seconds.count());
    }
    if (text == accessibleDescription())
        return;
    setAccessibleDescription(text);
    setToolTip(text);
    // A tooltip that is open already would stand still.
    if (!text.isEmpty() && underMouse() && QToolTip::isVisible())
        QToolTip::showText(QCursor::pos(), text, this);
}

void ProgressIndicator::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Appearance appearance = Appearance::current();
    constexpr int ringWidth = 2;
    const QRectF circle = rect().toRectF().adjusted(ringWidth, ringWidth, -ringWidth, -ringWidth);
    painter.setPen(QPen(appearance.hairline, ringWidth));
    painter.drawEllipse(circle);
    painter.setPen(QPen(appearance.accent, ringWidth, Qt::SolidLine, Qt::RoundCap));
    constexpr int sixteenthsOfDegree = 16;
    constexpr int arc = 100;
    painter.drawArc(circle, (90 - m_angle) * sixteenthsOfDegree, arc * sixteenthsOfDegree);
}

void ProgressIndicator::timerEvent(QTimerEvent*) {
    turn();
}

} // namespace corvanta
