// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

class QWidget;

namespace corvanta {

/// Says what a widget of the project's own is to those who hear the window; without it Qt calls it a plain client area.
/// Call it in the widget's constructor.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

/// Has `text` read out as news: the widget's name becomes it, and an alert points to it.
void announce(QWidget& widget, const QString& text);

} // namespace corvanta
