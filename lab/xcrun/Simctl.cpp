// SPDX-License-Identifier: MIT
#include "Simctl.h"

#include "CommandFailure.h"
#include "Commands.h"
#include "DeviceSet.h"

#include <QDir>
#include <QFile>
#include <QMap>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

using Command = int (*)(const QStringList&);

const QMap<QString, Command>& commands() {
    static const QMap<QString, Command> known = {
        {u"boot"_s, bootCommand},          {u"bootstatus"_s, bootStatusCommand},
        {u"clone"_s, cloneCommand},        {u"create"_s, createCommand},
        {u"delete"_s, deleteCommand},      {u"erase"_s, eraseCommand},
        {u"getenv"_s, environmentCommand}, {u"help"_s, helpCommand},
        {u"io"_s, screenCommand},          {u"list"_s, listCommand},
        {u"location"_s, locationCommand},  {u"openurl"_s, openURLCommand},
        {u"privacy"_s, privacyCommand},    {u"rename"_s, renameCommand},
        {u"shutdown"_s, shutDownCommand},  {u"status_bar"_s, statusBarCommand},
        {u"ui"_s, interfaceCommand},
    };
    return known;
}

CommandFailure unknownCommand(const QString& word) {
    return {usageStatus, u"Unrecognized subcommand: %1\n"_s.arg(word) + simctlHelp()};
}

int dispatch(const QStringList& words) {
    const auto command = commands().find(words.first());
    if (command == commands().end()) {
        throw unknownCommand(words.first());
    }
    if (words.size() == 2 && (words[1] == u"--help" || words[1] == u"-h")) {
        return helpCommand({words.first()});
    }
    return (*command)(words.sliced(1));
}

int fail(int status, const QString& text) {
    printError(text);
    return status;
}

} // namespace

int helpCommand(const QStringList& arguments) {
    const QString text = simctlHelp(arguments.value(0));
    if (text.isEmpty()) {
        throw unknownCommand(arguments.first());
    }
    print(text);
    return 0;
}

std::optional<QString> takeOption(QStringList& words, const QString& name, const QString& command) {
    std::optional<QString> value;
    for (qsizetype index = 0; index < words.size();) {
        if (words[index].startsWith(name + u'=')) {
            value = words.takeAt(index).sliced(name.size() + 1);
        } else if (words[index] == name) {
            if (index + 1 >= words.size()) {
                throw usage(command, u"Missing value for "_s + name);
            }
            value = words[index + 1];
            words.remove(index, 2);
        } else {
            ++index;
        }
    }
    return value;
}

int runSimctl(QStringList arguments) {
    try {
        if (arguments.size() >= 2 && arguments[0] == u"--set") {
            qputenv("CORVANTA_DEVICE_SET", QFile::encodeName(QDir(arguments[1]).absolutePath()));
            arguments.remove(0, 2);
        }
        if (arguments.isEmpty()) {
            return fail(usageStatus, simctlHelp());
        }
        if (arguments.first() == u"--help" || arguments.first() == u"-h") {
            arguments.first() = u"help"_s;
        }
        return dispatch(arguments);
    } catch (const CommandFailure& problem) {
        return fail(problem.status, problem.text);
    } catch (const DeviceGoneError& problem) {
        const CommandFailure gone = unknownDevice(QString::fromUtf8(problem.what()));
        return fail(gone.status, gone.text);
    } catch (const std::exception& problem) {
        return fail(1, u"simctl: %1\n"_s.arg(QString::fromUtf8(problem.what())));
    }
}

} // namespace corvanta::lab
