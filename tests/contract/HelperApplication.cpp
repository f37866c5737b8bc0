// SPDX-License-Identifier: MIT
//
// The program beside the contract on macOS, with a menu and a window of Qt's, which are native there. It reports on
// standard output what is chosen, and ends with its standard input.
#include <QApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSocketNotifier>

#include <cstdio>

#include <unistd.h>

using namespace Qt::Literals::StringLiterals;

namespace {

void say(const QString& line) {
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

QAction* addEntry(QMenu& menu, const QString& title) {
    QAction* const entry = menu.addAction(title);
    // Otherwise entries move to the application's own menu by their titles.
    entry->setMenuRole(QAction::NoRole);
    QObject::connect(entry, &QAction::triggered, entry, [title] { say(u"pressed "_s + title); });
    return entry;
}

} // namespace

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QMainWindow window;
    window.setWindowTitle(u"Fixture Window"_s);
    addEntry(*window.menuBar()->addMenu(u"File"_s), u"New Window"_s);
    QMenu* const develop = window.menuBar()->addMenu(u"Develop"_s);
    QMenu* const device = develop->addMenu(u"iPhone 16 Pro – iOS 18.2"_s);
    addEntry(*device, u"iPhone 16 Pro Simulator"_s)->setEnabled(false);
    addEntry(*device, u"localhost — first"_s);
    addEntry(*device, u"localhost — second"_s);
    window.resize(400, 300);
    window.show();
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &application, [] {
        char byte = 0;
        if (::read(STDIN_FILENO, &byte, 1) <= 0)
            QCoreApplication::quit();
    });
    say(u"ready"_s);
    return QApplication::exec();
}
