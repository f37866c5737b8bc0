// SPDX-License-Identifier: MIT
#pragma once

#include "shell/MenuBarContentView.h"

#include <QObject>
#include <QSystemTrayIcon>

#include <functional>

namespace corvanta {

/// The program's icon in the system's menu bar or tray, with its menu.
class MenuBarExtra final : public QObject {
    Q_OBJECT

public:
    /// `isAvailable` says whether the desktop has a place for such icons. `commands` outlives the icon.
    MenuBarExtra(ShellCommands& commands, std::function<bool()> isAvailable);

    void show();
    void hide();

    /// Whether there is an icon by which the program can be reached at the moment. On a desktop whose tray comes later
    /// the icon appears with it.
    [[nodiscard]] bool isReachable() const;

    [[nodiscard]] MenuBarContentView& menu() { return m_menu; }

private:
    const std::function<bool()> m_isAvailable;
    MenuBarContentView m_menu;
    QSystemTrayIcon m_icon;
};

} // namespace corvanta
