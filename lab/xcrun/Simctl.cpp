// SPDX-License-Identifier: MIT
#include "Simctl.h"

#include "DeviceBus.h"
#include "DeviceCatalogue.h"
#include "DeviceLauncher.h"
#include "DeviceSet.h"
#include "ListOptions.h"
#include "ListOutput.h"
#include "SystemDescription.h"

#include <QDir>
#include <QFile>
#include <QMap>

#include <algorithm>
#include <cmath>
#include <cstdio>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace corvanta::lab {

namespace {

constexpr auto simulatorDomain = "com.apple.CoreSimulator.SimError"_L1;
constexpr auto posixDomain = "NSPOSIXErrorDomain"_L1;
constexpr auto statusDomain = "NSOSStatusErrorDomain"_L1;
constexpr int invalidState = 405;
constexpr int invalidDevice = 404;
constexpr int incompatibleDevice = 403;
constexpr int runtimeUnavailable = 401;
constexpr int timedOut = 60;
constexpr int applicationNotFound = -10814;
constexpr int usageStatus = 64;
constexpr std::chrono::milliseconds requestLimit = 15s;

/// Ends a command with a text on standard error.
struct CommandFailure {
    int status = 1;
    QString text;
};

/// The tool's exit status is the error's code in one byte.
CommandFailure failure(QLatin1StringView domain, int code, const QString& text) {
    return {code & 0xff,
            u"An error was encountered processing the command (domain=%1, code=%2):\n%3\n"_s.arg(domain).arg(code).arg(
                text)};
}

CommandFailure wrongState(const QString& action, const QString& state) {
    return failure(simulatorDomain, invalidState, u"Unable to %1 in current state: %2"_s.arg(action, state));
}

CommandFailure usage(const QString& command) {
    return {usageStatus, simctlHelp(command)};
}

void print(const QString& text) {
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, std::size_t(bytes.size()), stdout);
    std::fflush(stdout);
}

/// The devices and the bus that one command works on.
class Session {
public:
    DeviceSet set = DeviceSet::open();
    const SystemDescription system = SystemDescription::load();

    /// The bus; connected when it is first needed. Throws DeviceBusError.
    DeviceBus& bus() {
        if (!m_bus) {
            m_bus = std::make_unique<DeviceBus>();
        }
        return *m_bus;
    }

    /// The running devices; none where there is no session bus.
    QStringList running() {
        try {
            return bus().runningDevices();
        } catch (const DeviceBusError&) {
            return {};
        }
    }

    /// The device meant by an identifier, a name or "booted". Throws CommandFailure.
    Device device(const QString& word) {
        const std::vector<Device> devices = set.devices();
        const QStringList booted = running();
        if (word == u"booted") {
            for (const Device& device : devices) {
                if (booted.contains(device.udid)) {
                    return device;
                }
            }
            throw CommandFailure{invalidState & 0xff, u"No devices are booted.\n"_s};
        }
        if (const auto device = set.deviceWithId(word)) {
            return *device;
        }
        std::optional<Device> named;
        for (const Device& device : devices) {
            // Of several with one name a running one is meant, else the one with the newest runtime.
            if (device.name == word && (!named || !booted.contains(named->udid))) {
                named = device;
            }
        }
        if (!named) {
            throw CommandFailure{invalidDevice & 0xff, u"Invalid device: %1\n"_s.arg(word)};
        }
        return *named;
    }

    /// The running device meant by the word. Throws CommandFailure.
    Device runningDevice(const QString& word) {
        Device result = device(word);
        if (!running().contains(result.udid)) {
            throw wrongState(u"lookup"_s, u"Shutdown"_s);
        }
        return result;
    }

private:
    std::unique_ptr<DeviceBus> m_bus;
};

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

int list(const QStringList& arguments) {
    const ListOptions options = ListOptions::parse(arguments);
    if (!options.problem.isEmpty()) {
        throw CommandFailure{usageStatus, options.problem + u'\n' + simctlHelp(u"list"_s)};
    }
    Session session;
    const QStringList running = session.running();
    std::vector<ListedDevice> devices;
    for (const Device& device : session.set.devices()) {
        devices.push_back({.device = device,
                           .state = running.contains(device.udid) ? session.bus().state(device.udid) : u"Shutdown"_s,
                           .folder = session.set.folderOf(device),
                           .lastBooted = session.set.lastBooted(device)});
    }
    print(QString::fromUtf8(listOutput(options, devices, session.system)));
    return 0;
}

int bootCommand(const QStringList& arguments) {
    if (arguments.size() != 1) {
        throw usage(u"boot"_s);
    }
    Session session;
    boot(session, session.device(arguments.first()));
    return 0;
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

int bootStatus(QStringList arguments) {
    const bool mayBoot = arguments.removeAll(u"-b"_s) > 0;
    if (arguments.size() != 1) {
        throw usage(u"bootstatus"_s);
    }
    Session session;
    const Device device = session.device(arguments.first());
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

int shutDown(const QStringList& arguments) {
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

int openURL(const QStringList& arguments) {
    if (arguments.size() != 2) {
        throw usage(u"openurl"_s);
    }
    Session session;
    const Device device = session.runningDevice(arguments[0]);
    try {
        session.bus().openURL(device.udid, arguments[1], requestLimit);
    } catch (const DeviceBusError& error) {
        if (error.name() == u"dev.corvanta.Lab.Error.NoApplication") {
            throw failure(statusDomain, applicationNotFound,
                          u"The operation couldn’t be completed. (OSStatus error -10814.)"_s);
        }
        throw failure(posixDomain, timedOut, u"Simulator device failed to open URL.\nOperation timed out"_s);
    }
    return 0;
}

int location(const QStringList& arguments) {
    const bool isClear = arguments.size() == 2 && arguments[1] == u"clear";
    const bool isSet = arguments.size() == 3 && arguments[1] == u"set";
    if (!isClear && !isSet) {
        throw usage(u"location"_s);
    }
    const auto position = isSet ? LocationArgument::parse(arguments[2]) : std::nullopt;
    if (isSet && !position) {
        throw CommandFailure{usageStatus, u"Invalid location: %1\n"_s.arg(arguments[2]) + simctlHelp(u"location"_s)};
    }
    Session session;
    const Device device = session.runningDevice(arguments[0]);
    if (position) {
        session.bus().setLocation(device.udid, position->latitude, position->longitude, requestLimit);
    } else {
        session.bus().call(device.udid, "ClearLocation", requestLimit);
    }
    return 0;
}

int create(const QStringList& arguments) {
    if (arguments.size() < 2 || arguments.size() > 3 || arguments[0].isEmpty()) {
        throw usage(u"create"_s);
    }
    const DeviceType* type = findDeviceType(arguments[1]);
    if (type == nullptr) {
        throw CommandFailure{invalidDevice & 0xff, u"Invalid device type: %1\n"_s.arg(arguments[1])};
    }
    Session session;
    const Runtime* runtime = nullptr;
    if (arguments.size() == 3) {
        runtime = session.system.findRuntime(arguments[2]);
        if (runtime == nullptr) {
            throw CommandFailure{invalidDevice & 0xff, u"Invalid runtime: %1\n"_s.arg(arguments[2])};
        }
    } else {
        for (const Runtime& installed : session.system.runtimes) {
            runtime = isSupported(*type, installed) ? &installed : runtime;
        }
        if (runtime == nullptr) {
            throw failure(simulatorDomain, incompatibleDevice,
                          u"No installed runtime supports device type: %1"_s.arg(type->name));
        }
    }
    if (!isSupported(*type, *runtime)) {
        CommandFailure incompatible = failure(simulatorDomain, incompatibleDevice, u"Incompatible device"_s);
        incompatible.text.prepend(
            u"Unable to create a device for device type: %1 (%2), runtime: %3 (%4 - %5) - %6\n"_s.arg(
                type->name, type->identifier, runtime->name, runtime->version.toString(), runtime->build,
                runtime->identifier));
        throw incompatible;
    }
    print(session.set.create(arguments[0], type->identifier, runtime->identifier).udid + u'\n');
    return 0;
}

int remove(const QStringList& arguments) {
    if (arguments.isEmpty()) {
        throw usage(u"delete"_s);
    }
    Session session;
    std::vector<Device> chosen;
    if (arguments.first() == u"all") {
        chosen = session.set.devices();
    } else if (arguments.first() == u"unavailable") {
        chosen = session.set.devices();
        std::erase_if(chosen, [&](const Device& device) {
            return session.system.findRuntime(device.runtime) != nullptr &&
                   findDeviceType(device.deviceType) != nullptr;
        });
    } else {
        std::ranges::transform(arguments, std::back_inserter(chosen),
                               [&](const QString& word) { return session.device(word); });
    }
    for (const Device& device : chosen) {
        if (session.running().contains(device.udid) && !shutDownDevice(session.bus(), device.udid)) {
            throw wrongState(u"delete device"_s, u"Booted"_s);
        }
        session.set.remove(device);
    }
    return 0;
}

int help(const QStringList& arguments) {
    const QString text = simctlHelp(arguments.value(0));
    if (text.isEmpty()) {
        throw CommandFailure{usageStatus, u"Unrecognized subcommand: %1\n"_s.arg(arguments.first()) + simctlHelp()};
    }
    print(text);
    return 0;
}

int dispatch(const QStringList& words) {
    static const QMap<QString, int (*)(const QStringList&)> commands = {
        {u"list"_s, list},
        {u"boot"_s, bootCommand},
        {u"bootstatus"_s, [](const QStringList& arguments) { return bootStatus(arguments); }},
        {u"shutdown"_s, shutDown},
        {u"openurl"_s, openURL},
        {u"location"_s, location},
        {u"create"_s, create},
        {u"delete"_s, remove},
        {u"help"_s, help},
    };
    const auto command = commands.find(words.first());
    if (command == commands.end()) {
        throw CommandFailure{usageStatus, u"Unrecognized subcommand: %1\n"_s.arg(words.first()) + simctlHelp()};
    }
    return (*command)(words.sliced(1));
}

int fail(int status, const QString& text) {
    std::fputs(text.toUtf8().constData(), stderr);
    return status;
}

} // namespace

std::optional<LocationArgument> LocationArgument::parse(const QString& text) {
    const QStringList parts = text.split(u',');
    if (parts.size() != 2) {
        return std::nullopt;
    }
    bool isLatitude = false;
    bool isLongitude = false;
    const LocationArgument result{parts[0].trimmed().toDouble(&isLatitude), parts[1].trimmed().toDouble(&isLongitude)};
    const bool isGood = isLatitude && isLongitude && std::isfinite(result.latitude) && std::isfinite(result.longitude);
    return isGood ? std::optional(result) : std::nullopt;
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
    } catch (const std::exception& problem) {
        return fail(1, u"simctl: %1\n"_s.arg(QString::fromUtf8(problem.what())));
    }
}

} // namespace corvanta::lab
