// SPDX-License-Identifier: MIT
#include "shell/MenuBarExtra.h"

#include "window/Symbols.h"

#include <QGuiApplication>
#include <QIcon>
#include <QPalette>

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

/// The installed symbol is one that the desktop colours after its bar.
QIcon menuBarIcon() {
    QIcon drawn = Symbols::workspace(QGuiApplication::palette().color(QPalette::WindowText));
    drawn.setIsMask(true);
    return QIcon::fromTheme(u"dev.corvanta.Corvanta-symbolic"_s, drawn);
}

} // namespace

MenuBarExtra::MenuBarExtra(ShellCommands& commands, std::function<bool()> isAvailable)
    : m_isAvailable(std::move(isAvailable))
    , m_menu(commands) {
    m_icon.setToolTip(u"Corvanta"_s);
    m_icon.setContextMenu(&m_menu);
    connect(&m_icon, &QSystemTrayIcon::activated, &m_menu, [this](QSystemTrayIcon::ActivationReason reason) {
        // Some trays show the menu for the other button alone.
        if (reason == QSystemTrayIcon::Trigger)
            Q_EMIT m_menu.openRequested();
    });
}

void MenuBarExtra::show() {
    if (m_icon.icon().isNull())
        m_icon.setIcon(menuBarIcon());
    m_icon.show();
}

void MenuBarExtra::hide() {
    m_icon.hide();
}

bool MenuBarExtra::isReachable() const {
    return m_icon.isVisible() && m_isAvailable();
}

} // namespace corvanta
