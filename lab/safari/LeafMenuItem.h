// SPDX-License-Identifier: MIT
#pragma once

#include <gtk/gtk.h>

namespace corvanta::lab {

/// A menu item without a submenu that can be pressed through the accessibility bus while its menu is closed.
///
/// GTK 3.24 has such a press open a grab on the menu that was never shown, and complain about it. This item is
/// activated and nothing else; in an open menu it behaves as GTK's own. `title` is plain text: no mnemonics. Floating
/// reference.
[[nodiscard]] GtkWidget* makeLeafMenuItem(const char* title);

/// The same for an item that is checked or not: a GtkCheckMenuItem.
[[nodiscard]] GtkWidget* makeLeafCheckItem(const char* title);

} // namespace corvanta::lab
