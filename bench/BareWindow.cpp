// SPDX-License-Identifier: MIT
// The least that a program with a window can be: what the start of Corvanta is measured against.
#include <QApplication>
#include <QWidget>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QWidget window;
    window.resize(430, 860);
    window.show();
    return QApplication::exec();
}
