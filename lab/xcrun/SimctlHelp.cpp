// SPDX-License-Identifier: MIT
#include "Simctl.h"

#include <QMap>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

const QMap<QString, QString>& commandHelp() {
    static const QMap<QString, QString> texts = {
        {u"boot"_s, u"Boot a device.\nUsage: simctl boot <device>\n"_s},
        {u"bootstatus"_s, u"Wait until a device has booted.\nUsage: simctl bootstatus <device> [-b]\n\n"
                          "    -b    Boot the device if it is not booted.\n"_s},
        {u"create"_s, u"Create a new device.\nUsage: simctl create <name> <device type id> [<runtime id>]\n\n"
                      "    Types and runtimes may be given by name. Without a runtime the newest one is used.\n"_s},
        {u"delete"_s, u"Delete devices.\nUsage: simctl delete <device> [... <device n>] | all | unavailable\n"_s},
        {u"help"_s, u"Print help for a command.\nUsage: simctl help [command]\n"_s},
        {u"list"_s, u"List available devices, device types, runtimes, or device pairs.\n"
                    "Usage: simctl list [-j | --json] [-v] [devices|devicetypes|runtimes|pairs] "
                    "[<search term>|available]\n"_s},
        {u"location"_s,
         u"Control a device's simulated location\nUsage: simctl location <device> <action> [arguments]\n\n"
         "    clear\n        Stop any running scenario and clear any simulated location.\n\n"
         "    set <lat>,<lon>\n        Set the location to a specific latitude and longitude.\n"_s},
        {u"openurl"_s, u"Open a URL in a device.\nUsage: simctl openurl <device> <URL>\n"_s},
        {u"shutdown"_s, u"Shutdown a device.\nUsage: simctl shutdown <device> | all\n"_s},
    };
    return texts;
}

} // namespace

QString simctlHelp(const QString& command) {
    if (!command.isEmpty()) {
        return commandHelp().value(command);
    }
    QString text = u"usage: simctl [--set <path>] <subcommand> ...\n       simctl help [subcommand]\n"
                   "Command line utility to control the Simulator\n\n"
                   "For subcommands that require a <device> argument, you may specify a device UDID, a device name\n"
                   "or the special \"booted\" string which will cause simctl to pick a booted device.\n\n"
                   "Subcommands:\n"_s;
    for (auto entry = commandHelp().begin(); entry != commandHelp().end(); ++entry) {
        text += u"\t%1%2\n"_s.arg(entry.key(), -20).arg(entry.value().section(u'\n', 0, 0));
    }
    return text;
}

} // namespace corvanta::lab
