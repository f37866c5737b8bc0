// SPDX-License-Identifier: MIT
#include "shell/AppIdentity.h"
#include "shell/CommandLine.h"
#include "shell/CorvantaApp.h"
#include "window/Appearance.h"

#include <QApplication>

#include <cstdio>

namespace {

QStringList textArguments(int argc, char** argv) {
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    return arguments;
}

} // namespace

int main(int argc, char** argv) {
    using namespace Qt::Literals::StringLiterals;

    // Read before anything that needs a display, so that --help and --version work everywhere.
    const corvanta::CommandLineOutcome outcome = corvanta::parseCommandLine(textArguments(argc, argv));
    if (!outcome.commandLine) {
        std::fputs(outcome.message.toUtf8().constData(), outcome.exitStatus == 0 ? stdout : stderr);
        return outcome.exitStatus;
    }

    QCoreApplication::setOrganizationName(u"Corvanta"_s);
    QCoreApplication::setApplicationName(u"Corvanta"_s);
    QCoreApplication::setApplicationVersion(corvanta::AppIdentity::version());
    QGuiApplication::setApplicationDisplayName(u"Corvanta"_s);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    corvanta::applyAppearance(application);

    corvanta::CorvantaApp app(corvanta::makePlatform(), *outcome.commandLine);
    app.start();
    return QApplication::exec();
}
