// SPDX-License-Identifier: MIT
// A window with one field, as any other program's; prints what was typed, anew at each change.
#include <QApplication>
#include <QLineEdit>

#include <cstdio>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QLineEdit field;
    field.setWindowTitle(QStringLiteral("Typing"));
    field.setGeometry(700, 900, 400, 40);
    QObject::connect(&field, &QLineEdit::textChanged, [](const QString& text) {
        std::printf("%s\n", qUtf8Printable(text));
        std::fflush(stdout);
    });
    field.show();
    return QApplication::exec();
}
