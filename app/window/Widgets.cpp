// SPDX-License-Identifier: MIT
#include "window/Widgets.h"

#include "window/Appearance.h"

#include <QGridLayout>
#include <QPainter>
#include <QResizeEvent>
#include <QTimerEvent>
#include <QVBoxLayout>

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int markSize = 16;
constexpr int stepsPerTurn = 12;
/// Of a button whose text may be elided, both sides together.
constexpr int horizontalPadding = 24;

} // namespace

Card::Card(QWidget* parent)
    : QFrame(parent)
    , m_rows(new QVBoxLayout(this)) {
    setObjectName(u"card"_s);
    m_rows->setContentsMargins(12, 12, 12, 12);
    m_rows->setSpacing(8);
}

StateMark::StateMark(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void StateMark::setState(SetupCheckState state) {
    const Appearance appearance = Appearance::forPalette(palette());
    switch (state) {
    case SetupCheckState::passed:
        m_shape = Shape::check;
        m_colour = appearance.passed;
        break;
    case SetupCheckState::failed:
        m_shape = Shape::cross;
        m_colour = appearance.failed;
        break;
    case SetupCheckState::blocked:
        m_shape = Shape::dash;
        m_colour = appearance.blocked;
        break;
    }
    update();
}

void StateMark::setPhase(WorkspacePhase phase) {
    const Appearance appearance = Appearance::forPalette(palette());
    m_shape = phase == WorkspacePhase::failed ? Shape::cross : Shape::dot;
    m_colour = phase == WorkspacePhase::running  ? appearance.passed
               : phase == WorkspacePhase::failed ? appearance.failed
               : isWorking(phase)                ? appearance.accent
                                                 : appearance.blocked;
    update();
}

QSize StateMark::sizeHint() const {
    return {markSize, markSize};
}

void StateMark::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_colour);
    const QPointF centre = rect().toRectF().center();
    if (m_shape == Shape::dot) {
        painter.drawEllipse(centre, 5, 5);
        return;
    }
    painter.drawEllipse(centre, 7.5, 7.5);
    painter.setPen(QPen(Appearance::forPalette(palette()).card, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.translate(centre);
    switch (m_shape) {
    case Shape::check:
        painter.drawPolyline(QPolygonF{{-3.4, 0.2}, {-1, 2.6}, {3.4, -2.4}});
        break;
    case Shape::cross:
        painter.drawLine(QPointF(-2.6, -2.6), QPointF(2.6, 2.6));
        painter.drawLine(QPointF(-2.6, 2.6), QPointF(2.6, -2.6));
        break;
    case Shape::dash:
        painter.drawLine(QPointF(-3.2, 0), QPointF(3.2, 0));
        break;
    case Shape::dot:
        break;
    }
}

ProgressIndicator::ProgressIndicator(QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(u"Working"_s);
}

void ProgressIndicator::setActive(bool isActive) {
    if (isActive == this->isActive())
        return;
    if (isActive) {
        m_timer = startTimer(std::chrono::milliseconds(1000 / stepsPerTurn));
    } else {
        killTimer(m_timer);
        m_timer = 0;
    }
    update();
}

QSize ProgressIndicator::sizeHint() const {
    return {markSize, markSize};
}

void ProgressIndicator::paintEvent(QPaintEvent*) {
    if (!isActive())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Appearance appearance = Appearance::forPalette(palette());
    const QRectF circle = rect().toRectF().adjusted(2, 2, -2, -2);
    painter.setPen(QPen(appearance.hairline, 2));
    painter.drawEllipse(circle);
    painter.setPen(QPen(appearance.accent, 2, Qt::SolidLine, Qt::RoundCap));
    constexpr int sixteenthsOfDegree = 16;
    painter.drawArc(circle, -m_angle * sixteenthsOfDegree, 100 * sixteenthsOfDegree);
}

void ProgressIndicator::timerEvent(QTimerEvent*) {
    m_angle = (m_angle + 360 / stepsPerTurn) % 360;
    update();
}

Picker::Picker(QWidget* parent)
    : QComboBox(parent) {}

void Picker::paintEvent(QPaintEvent* event) {
    QComboBox::paintEvent(event);
    const Appearance appearance = Appearance::forPalette(palette());
    constexpr qreal distanceFromEdge = 14;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(isEnabled() ? appearance.secondaryText : appearance.blocked, 1.5, Qt::SolidLine, Qt::RoundCap,
                        Qt::RoundJoin));
    painter.translate(width() - distanceFromEdge, height() / 2.0);
    painter.drawPolyline(QPolygonF{{-3, -2.5}, {0, -5.5}, {3, -2.5}});
    painter.drawPolyline(QPolygonF{{-3, 2.5}, {0, 5.5}, {3, 2.5}});
}

ButtonRows::ButtonRows(std::vector<QPushButton*> buttons, QWidget* parent)
    : QWidget(parent)
    , m_buttons(std::move(buttons))
    , m_grid(new QGridLayout(this)) {
    m_grid->setContentsMargins(0, 0, 0, 0);
    m_grid->setSpacing(6);
    // The row decides by the width that it is given, so its buttons must not widen the window.
    m_grid->setSizeConstraint(QLayout::SetNoConstraint);
    place(widthOfOneRow());
}

int ButtonRows::widthOfOneRow() const {
    int width = -m_grid->spacing();
    for (const QPushButton* const button : m_buttons)
        width += button->sizeHint().width() + m_grid->spacing();
    return width;
}

QSize ButtonRows::minimumSizeHint() const {
    return {0, m_grid->sizeHint().height()};
}

void ButtonRows::place(int width) {
    const int buttonCount = static_cast<int>(m_buttons.size());
    const int columns = width >= widthOfOneRow() ? buttonCount : (buttonCount + 1) / 2;
    for (int index = 0; index < buttonCount; ++index)
        m_grid->addWidget(m_buttons[static_cast<std::size_t>(index)], index / columns, index % columns);
    updateGeometry();
}

void ButtonRows::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    place(event->size().width());
}

ElidingButton::ElidingButton(const QString& text, QWidget* parent)
    : QPushButton(parent)
    , m_text(text) {
    showElided(QPushButton::fontMetrics().horizontalAdvance(text) + 2 * horizontalPadding);
    setAccessibleName(text);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize ElidingButton::minimumSizeHint() const {
    return {60, QPushButton::minimumSizeHint().height()};
}

void ElidingButton::resizeEvent(QResizeEvent* event) {
    showElided(event->size().width());
    QPushButton::resizeEvent(event);
}

void ElidingButton::showElided(int width) {
    const QString shown = fontMetrics().elidedText(m_text, Qt::ElideMiddle, width - horizontalPadding);
    // A single ampersand would be taken for a mnemonic.
    setText(QString(shown).replace(u'&', u"&&"_s));
    setToolTip(shown == m_text ? QString() : plainToolTip(m_text));
}

QString plainToolTip(const QString& text) {
    return u"<span>"_s + text.toHtmlEscaped() + u"</span>"_s;
}

QLabel* makeLabel(TextStyle style, const QString& text) {
    auto* const label = new QLabel(text);
    // Texts come from tools and pages too, and are never mark-up.
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    QFont font = label->font();
    switch (style) {
    case TextStyle::title:
        font.setPixelSize(17);
        font.setWeight(QFont::DemiBold);
        break;
    case TextStyle::heading:
        font.setPixelSize(13);
        font.setWeight(QFont::DemiBold);
        break;
    case TextStyle::body:
        font.setPixelSize(13);
        break;
    case TextStyle::secondary:
        font.setPixelSize(12);
        label->setObjectName(u"secondary"_s);
        break;
    }
    label->setFont(font);
    return label;
}

} // namespace corvanta
