// SPDX-License-Identifier: MIT
#include "shell/WindowPlacement.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>

#include <utility>

namespace corvanta {

WindowPlacement::WindowPlacement(PreferencesStore& preferences, QString key, std::function<bool()> isOwn,
                                 QObject* parent)
    : QObject(parent)
    , m_preferences(preferences)
    , m_key(std::move(key))
    , m_isOwn(std::move(isOwn)) {}

void WindowPlacement::apply(QWidget& window, QSize defaultSize) {
    window.resize(defaultSize.boundedTo(window.screen()->availableSize()));
    const auto stored = m_preferences.data(m_key);
    // Qt moves a window back that would stand outside of every screen, and shrinks one that is larger than its screen.
    if (stored && window.restoreGeometry(*stored))
        window.resize(window.size().boundedTo(window.screen()->availableSize()));
    window.installEventFilter(this);
}

void WindowPlacement::save() {
    if (!m_geometry.isEmpty())
        m_preferences.setData(m_key, m_geometry);
}

bool WindowPlacement::eventFilter(QObject* watched, QEvent* event) {
    const bool isPlacement = event->type() == QEvent::Move || event->type() == QEvent::Resize;
    auto* const window = qobject_cast<QWidget*>(watched);
    if (isPlacement && window && window->isVisible() && m_isOwn())
        m_geometry = window->saveGeometry();
    return false;
}

} // namespace corvanta
