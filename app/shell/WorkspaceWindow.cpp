// SPDX-License-Identifier: MIT
#include "shell/WorkspaceWindow.h"

#include "shell/AboutBox.h"
#include "shell/MainMenu.h"
#include "window/Appearance.h"
#include "window/Symbols.h"

#include <QCloseEvent>
#include <QMenuBar>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

WorkspaceWindow::WorkspaceWindow(QWidget* content, ShellCommands& commands) {
    setObjectName(u"workspace"_s);
    setWindowTitle(u"Corvanta"_s);
    setWindowIcon(Symbols::workspace(Appearance::light().accent));
    setCentralWidget(content);
    auto* const menu = new MainMenu(*menuBar(), commands);
    connect(menu, &MainMenu::aboutRequested, this, [this] { openAboutBox(*this); });
    connect(menu, &MainMenu::closeRequested, this, &QWidget::close);
    connect(menu, &MainMenu::quitRequested, this, &WorkspaceWindow::quitRequested);
}

void WorkspaceWindow::bringForward() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void WorkspaceWindow::closeEvent(QCloseEvent* event) {
    Q_EMIT closing();
    event->accept();
}

} // namespace corvanta
