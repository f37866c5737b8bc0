// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

typedef union _GdkEvent GdkEvent;
typedef struct _GdkEventKey GdkEventKey;
typedef struct _GtkWidget GtkWidget;

namespace corvanta::lab {

/// What a person can do with the device beside its screen.
struct DeviceCommands {
    std::function<void()> rotateLeft;
    std::function<void()> rotateRight;
    std::function<void()> toggleAppearance;
    std::function<void()> toggleReducedMotion;
    std::function<void()> toggleKeyboard;
    std::function<void()> newPage;
    std::function<void()> editAddress;
    std::function<void()> showPages;
    std::function<void()> closePage;
    std::function<void()> reload;
    std::function<bool()> isDark;
    std::function<bool()> isMotionReduced;
    std::function<bool()> isKeyboardShown;
};

/// A button that opens the device's menu; owned by its parent widget.
[[nodiscard]] GtkWidget* makeDeviceMenuButton(const DeviceCommands& commands);

/// Opens the device's menu below the button, or where the event happened. The commands outlive the menu.
void openDeviceMenu(const DeviceCommands& commands, GtkWidget* over, const GdkEvent* event);

/// Does what the key is a shortcut for; false when it is none. While a text is edited the keys that move in it are
/// none.
[[nodiscard]] bool handleShortcut(const DeviceCommands& commands, const GdkEventKey& event, bool isEditing);

} // namespace corvanta::lab
