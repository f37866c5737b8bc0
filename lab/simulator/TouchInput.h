// SPDX-License-Identifier: MIT
#pragma once

typedef struct _GtkWidget GtkWidget;

namespace corvanta::lab {

/// Makes the mouse a finger on the web view: its first button pressed is a touch, which taps, scrolls and long-presses
/// as the engine does it on a touch screen, and pages get touch events. Moving without a button does nothing, as no
/// finger hovers. The wheel goes on scrolling. For the life of the widget.
void touchWithMouse(GtkWidget* view);

} // namespace corvanta::lab
