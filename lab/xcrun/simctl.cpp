// SPDX-License-Identifier: MIT
#include "Simctl.h"

#include <QString>

int main(int argc, char** argv) {
    QStringList arguments;
    for (int index = 1; index < argc; ++index) {
        arguments.append(QString::fromUtf8(argv[index]));
    }
    return corvanta::lab::runSimctl(arguments);
}
