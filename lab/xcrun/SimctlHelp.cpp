// SPDX-License-Identifier: MIT
#include "Simctl.h"

#include <QMap>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

constexpr char ioHelp[] = R"(Set up a device IO operation.
Usage: simctl io <device> <operation> <arguments>

Supported operations:
	recordVideo [--codec=<codec>] [--display=<display>] [--mask=<policy>] [--force] <file or url>
	    Records the screen until it is interrupted (Ctrl+C), as a QuickTime movie.
	    --codec      "jpeg". "hevc" and "h264" are taken too; the movie is Motion JPEG all the same.
	    --force      Writes over a file that exists.

	screenshot [--type=<type>] [--display=<display>] [--mask=<policy>] <file or url>
	    Saves a picture of the screen; "-" is standard output.
	    --type       "png", "tiff", "bmp", "gif" or "jpeg". Otherwise the file's extension tells, else it is "png".

	For both:
	    --display    "internal", the only one that a device has.
	    --mask       What becomes of the screen's rounded corners: "ignored" (there are none), "alpha" (cut out) or
	                 "black".
)";

constexpr char locationHelp[] = R"(Control a device's simulated location
Usage: simctl location <device> <action> [arguments]

    list
        Names the scenarios that can be run.

    clear
        Ends a scenario or route and takes the location away.

    set <lat>,<lon>
        Puts the device at that place, given in degrees.

    run <scenario>
        Lets the device travel as the scenario says, round and round.

    start [--speed=<meters/sec>] [--distance=<meters>|--interval=<seconds>] <lat1>,<lon1> <lat2>,<lon2> [...]|-
        Lets the device travel from place to place, two at least, and stay at the last. With "-" the places are read
        from standard input.
        --speed       20 unless given.
        --distance    Tells programs the location each time that many metres are done.
        --interval    Tells it each time that many seconds have passed; 1 unless given.
)";

constexpr char privacyHelp[] = R"(Grant, revoke, or reset privacy and permissions
Usage: simctl privacy <device> <action> <service> [<bundle identifier>]

	action
	     grant - Allows the service without asking. Needs a bundle identifier.
	     revoke - Denies the service. Needs a bundle identifier.
	     reset - Forgets what was chosen, so the device asks the next time; for all applications without a
	             bundle identifier.
	service
	     all, calendar, contacts-limited, contacts, location, location-always, photos-add, photos, media-library,
	     microphone, motion, reminders, siri or camera.
	     On a device of the lab the location of com.apple.mobilesafari is what makes a difference.
)";

constexpr char statusBarHelp[] = R"(Set or clear status bar overrides
Usage: simctl status_bar <device> [list | clear | override <override arguments>]

    list
        Shows the overrides.

    clear
        Takes all overrides away.

    override
        Sets one or several; the next boot takes them away.

        --time <string>
             A text, or an ISO date of which the time is shown.
        --dataNetwork <dataNetworkType>
             'hide', 'wifi', '3g', '4g', 'lte', 'lte-a', 'lte+', '5g', '5g+', '5g-uwb', or '5g-uc'.
        --wifiMode <mode>
             'searching', 'failed', or 'active'.
        --wifiBars <int>
             0-3.
        --cellularMode <mode>
             'notSupported', 'searching', 'failed', or 'active'.
        --cellularBars <int>
             0-4.
        --operatorName <string>
             May be empty.
        --batteryState <state>
             'charging', 'charged', or 'discharging'.
        --batteryLevel <int>
             0-100.
)";

constexpr char uiHelp[] = R"(Get or Set UI options
Usage: simctl ui <device> <option> [<arguments>]

    Without an argument the option's value is shown.

    appearance
        light or dark.

    increase_contrast
        enabled or disabled.

    content_size
        extra-small, small, medium, large, extra-large, extra-extra-large, extra-extra-extra-large,
        accessibility-medium, accessibility-large, accessibility-extra-large, accessibility-extra-extra-large or
        accessibility-extra-extra-extra-large; increment or decrement for the next one.
)";

const QMap<QString, QString>& commandHelp() {
    static const QMap<QString, QString> texts = {
        {u"boot"_s, u"Boot a device or device pair.\nUsage: simctl boot <device> [--arch=<arch>]\n"_s},
        {u"bootstatus"_s, u"Check the boot status of the specified device, until it has booted.\n"
                          "Usage: simctl bootstatus <device> [-bcd]\n\n"
                          "    -b    Boot the device if it is not booted.\n"_s},
        {u"clone"_s, u"Clone an existing device.\nUsage: simctl clone <device> <new name>\n\n"
                     "    The device must be shut down. Prints the identifier of the new one.\n"_s},
        {u"create"_s, u"Create a new device.\nUsage: simctl create <name> <device type id> [<runtime id>]\n\n"
                      "    Types and runtimes may be given by name. Without a runtime the newest one is used.\n"_s},
        {u"delete"_s, u"Delete specified devices, unavailable devices, or all devices.\n"
                      "Usage: simctl delete <device> [... <device n>] | unavailable | all\n"_s},
        {u"erase"_s, u"Erase a device's contents and settings.\n"
                     "Usage: simctl erase <device> [... <device n>] | all\n"_s},
        {u"getenv"_s, u"Print an environment variable from a running device.\n"
                      "Usage: simctl getenv <device> <variable name>\n"_s},
        {u"help"_s, u"Prints the usage for a given subcommand.\nUsage: simctl help [subcommand]\n"_s},
        {u"io"_s, QString::fromLatin1(ioHelp)},
        {u"list"_s, u"List available devices, device types, runtimes, or device pairs.\n"
                    "Usage: simctl list [-j | --json] [-e | --no-escape-slashes] [-v] "
                    "[devices|devicetypes|runtimes|pairs] [<search term>|available]\n\n"
                    "    -j    Prints JSON.\n"
                    "    -e    Leaves slashes in JSON as they are.\n"
                    "    -v    Tells the folders of device types, runtimes and devices too.\n"_s},
        {u"location"_s, QString::fromLatin1(locationHelp)},
        {u"openurl"_s, u"Open a URL in a device.\nUsage: simctl openurl <device> <URL>\n"_s},
        {u"privacy"_s, QString::fromLatin1(privacyHelp)},
        {u"rename"_s, u"Rename a device.\nUsage: simctl rename <device> <name>\n"_s},
        {u"shutdown"_s, u"Shutdown a device.\nUsage: simctl shutdown <device> | all\n"_s},
        {u"status_bar"_s, QString::fromLatin1(statusBarHelp)},
        {u"ui"_s, QString::fromLatin1(uiHelp)},
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
