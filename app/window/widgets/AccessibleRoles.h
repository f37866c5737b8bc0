// SPDX-License-Identifier: MIT
#pragma once

#include <QAccessible>

class QWidget;

namespace corvanta {

/// Says what a widget of the project's own is to those who hear the window; without it Qt calls it a plain client area.
/// Call it in the widget's constructor.
void setAccessibleRole(QWidget& widget, QAccessible::Role role);

/// How a text is read out in the name of a widget.
using Announcing = void (*)(QWidget& source, const QString& text);

/// The means of this platform, for the life of the process; nothing is read out before.
void setAnnouncing(Announcing means);

/// Has `text` read out as news, unless it is the widget's name already: the name becomes it, and whoever reads the
/// screen out is told to say it whatever has the focus. An empty text is no news.
void announce(QWidget& widget, const QString& text);

} // namespace corvanta
