// SPDX-License-Identifier: MIT
#include "window/widgets/OverlayScrollArea.h"

#include <QEvent>
#include <QScrollBar>
#include <QStyle>

#include <algorithm>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

OverlayScrollArea::OverlayScrollArea(Height height, QWidget* parent)
    : QScrollArea(parent)
    , m_height(height)
    , m_bar(new QScrollBar(Qt::Vertical, this)) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setObjectName(u"scrollViewport"_s);
    viewport()->setAutoFillBackground(false);
    m_bar->setObjectName(u"overlay"_s);
    m_bar->setFocusPolicy(Qt::NoFocus);
    m_bar->hide();
    if (height == Height::ofContent)
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    QScrollBar* const hidden = verticalScrollBar();
    connect(hidden, &QScrollBar::valueChanged, m_bar, &QScrollBar::setValue);
    connect(m_bar, &QScrollBar::valueChanged, hidden, &QScrollBar::setValue);
    connect(hidden, &QScrollBar::rangeChanged, this, &OverlayScrollArea::placeBar);
}

void OverlayScrollArea::setContent(QWidget* content) {
    setWidget(content);
    // Taking a widget in makes it opaque.
    content->setAutoFillBackground(false);
}

void OverlayScrollArea::placeBar() {
    const QScrollBar& hidden = *verticalScrollBar();
    m_bar->setRange(hidden.minimum(), hidden.maximum());
    m_bar->setPageStep(hidden.pageStep());
    m_bar->setSingleStep(hidden.singleStep());
    m_bar->setValue(hidden.value());
    const int barWidth = m_bar->sizeHint().width();
    m_bar->setGeometry(QStyle::visualRect(layoutDirection(), rect(), QRect(width() - barWidth, 0, barWidth, height())));
    m_bar->setVisible(hidden.maximum() > hidden.minimum());
    m_bar->raise();
}

int OverlayScrollArea::heightForWidth(int width) const {
    if (widget() == nullptr)
        return 0;
    return widget()->hasHeightForWidth() ? widget()->heightForWidth(width) : widget()->sizeHint().height();
}

QSize OverlayScrollArea::sizeHint() const {
    return m_height == Height::ofContent && widget() != nullptr ? widget()->sizeHint() : QScrollArea::sizeHint();
}

QSize OverlayScrollArea::minimumSizeHint() const {
    const int least = fontMetrics().lineSpacing();
    return {0, m_height == Height::ofContent ? least : 2 * least};
}

void OverlayScrollArea::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    placeBar();
}

bool OverlayScrollArea::eventFilter(QObject* watched, QEvent* event) {
    const bool isHandled = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::LayoutRequest && m_height == Height::ofContent)
        updateGeometry();
    return isHandled;
}

} // namespace corvanta
