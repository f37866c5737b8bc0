// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "DeviceCatalogue.h"
#include "DeviceLauncher.h"
#include "Session.h"

#include <QDateTime>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace corvanta::lab {

namespace {

/// A device that is not running needs its runtime. Throws CommandFailure.
void requireRuntime(const Session& session, const Device& device) {
    if (session.system.findRuntime(device.runtime) == nullptr) {
        const Runtime* const known = findRuntime(device.runtime);
        throw failure(
            simulatorDomain, runtimeUnavailable,
            u"The %1 simulator runtime is not available."_s.arg(known != nullptr ? known->name : device.runtime));
    }
}

void boot(Session& session, const Device& device) {
    const QString state = session.bus().state(device.udid);
    if (state != u"Shutdown") {
        throw wrongState(u"boot device"_s, state);
    }
    requireRuntime(session, device);
    switch (bootDevice(session.bus(), session.set, device)) {
    case BootResult::accepted:
        return;
    case BootResult::alreadyRunning:
        throw wrongState(u"boot device"_s, session.bus().state(device.udid));
    case BootResult::failed:
        throw failure(posixDomain, timedOut,
                      u"Unable to boot the Simulator.\nSimulatorDevice failed to respond.\nSee %1"_s.arg(
                          session.set.folderOf(device) + u"/device.log"_s));
    }
}

void printStatus(const QString& state, const QDateTime& start) {
    const qint64 seconds = start.secsTo(QDateTime::currentDateTimeUtc());
    const bool isDone = state == u"Booted";
    print(u"[%1 +0000] Status=%2, isTerminal=%3, Elapsed=%4:%5.\n\t%6\n\n"_s
              .arg(QDateTime::currentDateTimeUtc().toString(u"yyyy-MM-dd HH:mm:ss"_s),
                   isDone ? u"4294967295"_s : u"4"_s, isDone ? u"YES"_s : u"NO"_s)
              .arg(seconds / 60, 2, 10, QChar(u'0'))
              .arg(seconds % 60, 2, 10, QChar(u'0'))
              .arg(isDone ? u"Finished"_s : u"Waiting on System App"_s));
}

/// Shuts one device down; what went wrong, if something did.
std::optional<CommandFailure> shutDownProblem(DeviceBus& bus, const QString& udid) {
    try {
        if (shutDownDevice(bus, udid)) {
            return std::nullopt;
        }
        return failure(posixDomain, timedOut, u"Unable to shutdown device.\nOperation timed out"_s);
    } catch (const DeviceBusError& error) {
        // One that left by itself just now is as shut down as can be.
        if (!bus.isNameOwned(deviceBusName(udid))) {
            return std::nullopt;
        }
        return failure(posixDomain, timedOut, u"Unable to shutdown device.\n"_s + QString::fromUtf8(error.what()));
    }
}

} // namespace

int bootCommand(const QStringList& arguments) {
    QStringList words;
    // How the Mac's processor is played, and which services are left out, means nothing here.
    std::ranges::copy_if(arguments, std::back_inserter(words), [](const QString& word) {
        return !word.startsWith(u"--arch=") && !word.startsWith(u"--disabledJob=") &&
               !word.startsWith(u"--enabledJob=");
    });
    if (words.size() != 1) {
        throw usage(u"boot"_s);
    }
    Session session;
    try {
        boot(session, session.device(words.first()));
    } catch (CommandFailure& problem) {
        // This command alone takes a pair of devices too, and says so.
        problem.text.replace(u"Invalid device:"_s, u"Invalid device or device pair:"_s);
        throw;
    }
    return 0;
}

int bootStatusCommand(const QStringList& arguments) {
    bool mayBoot = false;
    QStringList words;
    for (const QString& word : arguments) {
        // The other two letters ask for news that a device of the lab does not have.
        static const QRegularExpression letters(u"\\A-[bcd]+\\z"_s);
        if (letters.match(word).hasMatch()) {
            mayBoot = mayBoot || word.contains(u'b');
        } else {
            words.append(word);
        }
    }
    if (words.size() != 1) {
        throw usage(u"bootstatus"_s);
    }
    Session session;
    const Device device = session.device(words.first());
    print(u"Monitoring boot status for %1 (%2).\n"_s.arg(device.name, device.udid));
    const QString state = session.bus().state(device.udid);
    if (state == u"Booted") {
        print(u"Device already booted, nothing to do.\n"_s);
        return 0;
    }
    if (state == u"Shutdown") {
        requireRuntime(session, device);
    }
    const QDateTime start = QDateTime::currentDateTimeUtc();
    if (mayBoot) {
        // Somebody else may boot it between the look and the boot: then there is only the wait left.
        if (bootDevice(session.bus(), session.set, device) == BootResult::failed) {
            throw CommandFailure{timedOut, u"Device boot failed\n"_s +
                                               failure(posixDomain, timedOut, u"Unable to boot the Simulator."_s).text};
        }
    } else {
        while (!session.bus().waitForName(deviceBusName(device.udid), true, 1h)) {
        }
    }
    if (!session.bus().waitUntilBooted(device.udid, [&](const QString& state) {
            if (state != u"Shutdown") {
                printStatus(state, start);
            }
        })) {
        throw CommandFailure{invalidState & 0xff,
                             u"Device boot failed\n"_s + wrongState(u"boot device"_s, u"Shutdown"_s).text};
    }
    return 0;
}

int shutDownCommand(const QStringList& arguments) {
    if (arguments.size() != 1) {
        throw usage(u"shutdown"_s);
    }
    Session session;
    QStringList chosen;
    if (arguments.first() == u"all") {
        chosen = session.running();
    } else {
        const Device device = session.device(arguments.first());
        if (!session.running().contains(device.udid)) {
            throw wrongState(u"shutdown device"_s, u"Shutdown"_s);
        }
        chosen.append(device.udid);
    }
    std::optional<CommandFailure> firstFailure;
    for (const QString& udid : chosen) {
        if (auto problem = shutDownProblem(session.bus(), udid); problem && !firstFailure) {
            firstFailure = std::move(problem);
        }
    }
    if (firstFailure) {
        throw CommandFailure(*firstFailure);
    }
    return 0;
}

} // namespace corvanta::lab
