// SPDX-License-Identifier: MIT
#include "Announcing.h"
#include "SingleInstance.h"
#include "shell/AppIdentity.h"
#include "shell/CommandLine.h"
#include "shell/CorvantaApp.h"
#include "window/Appearance.h"
#include "window/widgets/AccessibleRoles.h"

#include <QApplication>

#include <cstdio>
#include <optional>

namespace {

QStringList textArguments(int argc, char** argv) {
    QStringList arguments;
    for (int index = 0; index < argc; ++index)
        arguments.append(QString::fromLocal8Bit(argv[index]));
    return arguments;
}

/// The exit status when this program has nothing to do because another one does it.
std::optional<int> handOver(corvanta::SingleInstance& instance, const QStringList& arguments) {
    switch (instance.claim(arguments)) {
    case corvanta::SingleInstance::Standing::alone:
        return std::nullopt;
    case corvanta::SingleInstance::Standing::handedOver:
        std::puts("Corvanta is already running; its window has been brought forward.");
        return 0;
    case corvanta::SingleInstance::Standing::unanswered:
        std::fputs("Corvanta is already running, but it does not answer.\n", stderr);
        return 1;
    }
    Q_UNREACHABLE();
}

} // namespace

int main(int argc, char** argv) {
    using namespace Qt::Literals::StringLiterals;

    // Read before anything that needs a display, so that --help and --version work everywhere.
    const QStringList arguments = textArguments(argc, argv);
    const corvanta::CommandLineOutcome outcome = corvanta::parseCommandLine(arguments);
    if (!outcome.commandLine) {
        std::fputs(outcome.message.toUtf8().constData(), outcome.exitStatus == 0 ? stdout : stderr);
        return outcome.exitStatus;
    }

    QCoreApplication::setOrganizationName(u"Corvanta"_s);
    QCoreApplication::setApplicationName(u"Corvanta"_s);
    QCoreApplication::setApplicationVersion(corvanta::AppIdentity::version());
    QGuiApplication::setApplicationDisplayName(u"Corvanta"_s);
    QGuiApplication::setDesktopFileName(u"dev.corvanta.Corvanta"_s);
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    corvanta::setAnnouncing(corvanta::announceOnPlatform);

    const auto instance = corvanta::makeSingleInstance();
    // An unattended run does its own work whoever else is there, and takes over nobody's.
    if (!outcome.commandLine->screenshot) {
        if (const auto status = handOver(*instance, arguments))
            return *status;
    }

    corvanta::prepareAppearance();
    corvanta::CorvantaApp app(corvanta::makePlatform(), *outcome.commandLine);
    QObject::connect(&app, &corvanta::CorvantaApp::leaving, &app, [&instance] { instance->release(); });
    // With the style sheet there already, each widget that is put into another would have all below it styled anew.
    QObject::connect(
        &app, &corvanta::CorvantaApp::windowMade, &app, [&application] { corvanta::applyAppearance(application); },
        Qt::SingleShotConnection);
    instance->setOpenedHandler([&app](const QStringList& handed) {
        app.open(corvanta::parseCommandLine(handed).commandLine.value_or(corvanta::CommandLine()));
    });
    app.start();
    return QApplication::exec();
}
