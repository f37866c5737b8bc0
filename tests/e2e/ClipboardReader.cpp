// SPDX-License-Identifier: MIT
// Prints the text on the desktop's clipboard.
#include <QClipboard>
#include <QGuiApplication>

#include <cstdio>

int main(int argc, char** argv) {
    const QGuiApplication application(argc, argv);
    std::fputs(qUtf8Printable(QGuiApplication::clipboard()->text()), stdout);
    return 0;
}
