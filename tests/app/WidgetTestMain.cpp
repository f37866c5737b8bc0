// SPDX-License-Identifier: MIT
#include "TestMessages.h"

#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir runtimeDirectory;
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeDirectory.path()));
    corvanta::testing::failOnUnexpectedMessages();
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
