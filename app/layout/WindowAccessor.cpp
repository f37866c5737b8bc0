// SPDX-License-Identifier: MIT
#include "layout/WindowAccessor.h"

#include <QHideEvent>
#include <QShowEvent>

#include <utility>

namespace corvanta {

WindowCaptureView::WindowCaptureView(QWidget* parent)
    : QWidget(parent) {
    setFixedSize(0, 0);
    setFocusPolicy(Qt::NoFocus);
}

void WindowCaptureView::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    // A spontaneous event comes from the window system: the window was iconified or brought back, not moved into.
    if (onWindow && !event->spontaneous())
        onWindow(window());
}

void WindowCaptureView::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    if (onWindow && !event->spontaneous())
        onWindow(nullptr);
}

WindowAccessor::WindowAccessor(QWidget& host, WindowCallback onWindow)
    : m_view(new WindowCaptureView(&host)) {
    update(std::move(onWindow));
    m_view->lower();
}

void WindowAccessor::update(WindowCallback onWindow) {
    m_view->onWindow = std::move(onWindow);
}

} // namespace corvanta
