// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

class QObject;
class QWidget;

namespace corvanta {

/// Calls `then` once, on a turn of the event loop of its own: when the window has been painted for the first time, when
/// it is gone before that, or after a while when nobody gets to see it. Not called any more once `context` is gone.
void afterFirstPaint(QWidget& window, QObject& context, std::function<void()> then);

} // namespace corvanta
