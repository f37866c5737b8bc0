// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "DeviceCatalogue.h"
#include "DeviceLauncher.h"
#include "Session.h"

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

/// Does something that only a device that is off allows, while nobody boots it. The words are those of the Mac's tool
/// for a device that is on. Throws CommandFailure.
template<typename Change>
void changeWhileOff(Session& session, const Device& device, const QString& action, const Change& change) {
    const FileLock turn = session.set.takeTurn(device);
    if (const QString state = session.state(device); state != u"Shutdown") {
        throw wrongState(action, state);
    }
    change();
}

/// Runs the step for each of the devices, also when it fails for one of them; the first failure counts.
template<typename Step>
void forEach(const std::vector<Device>& devices, const Step& step) {
    std::optional<CommandFailure> first;
    for (const Device& device : devices) {
        try {
            step(device);
        } catch (const CommandFailure& problem) {
            first = first ? first : std::optional(problem);
        } catch (const DeviceGoneError&) {
            // Somebody else removed it in this moment, which is as good.
            continue;
        }
    }
    if (first) {
        throw *first;
    }
}

std::vector<Device> named(Session& session, const QStringList& words) {
    std::vector<Device> result;
    std::ranges::transform(words, std::back_inserter(result),
                           [&](const QString& word) { return session.device(word); });
    return result;
}

} // namespace

int createCommand(const QStringList& arguments) {
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

int cloneCommand(const QStringList& arguments) {
    if (arguments.size() < 2 || arguments.size() > 3 || arguments[1].isEmpty()) {
        throw usage(u"clone"_s);
    }
    Session session;
    const Device device = session.device(arguments[0]);
    if (arguments.size() == 3) {
        throw usage(u"clone"_s, u"The device lab clones within one device set only."_s);
    }
    changeWhileOff(session, device, u"clone device"_s,
                   [&] { print(session.set.clone(device, arguments[1]).udid + u'\n'); });
    return 0;
}

int deleteCommand(const QStringList& arguments) {
    if (arguments.isEmpty()) {
        throw usage(u"delete"_s);
    }
    Session session;
    std::vector<Device> chosen;
    if (arguments.first() == u"all") {
        chosen = session.set.devices();
    } else if (arguments.first() == u"unavailable") {
        chosen = session.set.devices();
        std::erase_if(chosen, [&](const Device& device) { return session.isAvailable(device); });
    } else {
        chosen = named(session, arguments);
    }
    forEach(chosen, [&](const Device& device) {
        const FileLock turn = session.set.takeTurn(device);
        if (session.isRunning(device) && !shutDownDevice(session.bus(), device.udid)) {
            throw wrongState(u"delete device"_s, u"Booted"_s);
        }
        session.set.remove(device);
    });
    return 0;
}

int eraseCommand(const QStringList& arguments) {
    if (arguments.isEmpty()) {
        throw usage(u"erase"_s);
    }
    Session session;
    const bool isAll = arguments == QStringList{u"all"_s};
    forEach(isAll ? session.set.devices() : named(session, arguments), [&](const Device& device) {
        changeWhileOff(session, device, u"erase contents and settings"_s, [&] { session.set.erase(device); });
    });
    return 0;
}

int renameCommand(const QStringList& arguments) {
    if (arguments.size() != 2 || arguments[1].isEmpty()) {
        throw usage(u"rename"_s);
    }
    Session session;
    const Device device = session.device(arguments[0]);
    session.set.rename(device, arguments[1]);
    if (session.isRunning(device)) {
        try {
            session.bus().call(device.udid, "ReloadSettings", requestLimit);
        } catch (const DeviceBusError&) {
            // One that just left needs no telling.
            return 0;
        }
    }
    return 0;
}

} // namespace corvanta::lab
