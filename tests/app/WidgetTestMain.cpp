// SPDX-License-Identifier: MIT
#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>

namespace {

/// Fails the running test on a warning that it did not expect.
void failOnWarning(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const QByteArray text = qFormatLogMessage(type, context, message).toUtf8();
    if (type == QtDebugMsg || type == QtInfoMsg) {
        std::fprintf(stderr, "%s\n", text.constData());
        return;
    }
    ADD_FAILURE() << "unexpected message: " << text.constData();
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir runtimeDirectory;
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(runtimeDirectory.path()));
    qInstallMessageHandler(failOnWarning);
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
