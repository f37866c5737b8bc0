// SPDX-License-Identifier: MIT
#include "DeviceBus.h"
#include "DeviceCatalogue.h"
#include "DeviceLauncher.h"
#include "DeviceSet.h"
#include "LabFolders.h"
#include "OpenOptions.h"
#include "SystemDescription.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <QUrl>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using namespace corvanta::lab;

namespace {

constexpr std::chrono::milliseconds windowLimit = 30s;
constexpr std::chrono::milliseconds launchLimit = 20s;
constexpr auto safariName = "com.apple.Safari"_L1;

constexpr auto usageText = "Usage: open [-g] [-a <application>] [-b <bundle identifier>] [filenames or URLs] "
                           "[--args arguments]\n"
                           "Help: open opens addresses in Safari, and Safari or Simulator by name.\n"
                           "      -a    Opens with the specified application.\n"
                           "      -b    Opens with the specified application bundle identifier.\n"
                           "      -g    Does not bring the application to the foreground.\n"
                           "  --args    All remaining arguments are passed to the opened application.\n";

int fail(const QString& text) {
    std::fputs(text.toUtf8().constData(), stderr);
    return 1;
}

/// The devices whose windows are to be shown. Throws DeviceBusError and DeviceSetError.
std::vector<Device> devicesToShow(const DeviceSet& set, const DeviceBus& bus, const SystemDescription& system) {
    const std::vector<Device> all = set.devices();
    const QStringList running = bus.runningDevices();
    std::vector<Device> chosen;
    const Device* latest = nullptr;
    for (const Device& device : all) {
        if (running.contains(device.udid)) {
            chosen.push_back(device);
        }
        if (system.findRuntime(device.runtime) != nullptr &&
            (latest == nullptr || set.lastBooted(device) > set.lastBooted(*latest))) {
            latest = &device;
        }
    }
    if (chosen.empty() && latest != nullptr) {
        chosen.push_back(*latest);
    }
    return chosen;
}

int openSimulator(const OpenOptions& options) {
    DeviceSet set = DeviceSet::open();
    const SystemDescription system = SystemDescription::load();
    DeviceBus bus;
    std::vector<Device> devices;
    if (const QString udid = options.applicationOption(u"-CurrentDeviceUDID"_s); !udid.isEmpty()) {
        const auto device = set.deviceWithId(udid);
        if (!device) {
            return fail(u"Invalid device: %1\n"_s.arg(udid));
        }
        devices.push_back(*device);
    } else {
        devices = devicesToShow(set, bus, system);
    }
    for (const Device& device : devices) {
        const bool isRunning = bus.isNameOwned(deviceBusName(device.udid));
        if (!isRunning && system.findRuntime(device.runtime) == nullptr) {
            return fail(u"Unable to boot %1: its runtime %2 is not installed.\n"_s.arg(device.name, device.runtime));
        }
        if (!isRunning && bootDevice(bus, set, device) == BootResult::failed) {
            return fail(u"Unable to boot the Simulator. See %1/device.log\n"_s.arg(set.folderOf(device)));
        }
        bus.call(device.udid, options.inBackground ? "ShowWindowInBackground" : "ShowWindow", windowLimit);
    }
    return devices.empty() ? fail(u"Unable to open Simulator: no device can be booted.\n"_s) : 0;
}

/// The words as addresses, files made absolute; absent with a text on standard error for a file that is not there and
/// for an address that is no browser's.
std::optional<QStringList> addresses(const QStringList& items) {
    static const QStringList schemes{u"http"_s, u"https"_s, u"file"_s, u"data"_s, u"about"_s};
    static const QRegularExpression scheme(u"^[A-Za-z][A-Za-z0-9+.-]*:"_s);
    QStringList result;
    for (const QString& item : items) {
        if (scheme.match(item).hasMatch()) {
            if (!schemes.contains(item.section(u':', 0, 0).toLower())) {
                fail(
                    u"No application knows how to open URL %1 (Error Domain=NSOSStatusErrorDomain Code=-10814)\n"_s.arg(
                        item));
                return std::nullopt;
            }
            result.append(item);
            continue;
        }
        const QFileInfo file(item);
        if (!file.exists()) {
            fail(u"The file %1 does not exist.\n"_s.arg(file.absoluteFilePath()));
            return std::nullopt;
        }
        result.append(QUrl::fromLocalFile(file.absoluteFilePath()).toString(QUrl::FullyEncoded));
    }
    return result;
}

int openSafari(const OpenOptions& options) {
    const auto items = addresses(options.items);
    if (!items) {
        return 1;
    }
    const QString program = programFolder() + u"/Safari"_s;
    if (!QFileInfo(program).isExecutable()) {
        return fail(u"Unable to find application named 'Safari'\n"_s);
    }
    DeviceBus bus;
    QStringList words = options.applicationArguments;
    if (options.inBackground) {
        words.append(u"--background"_s);
    }
    createPrivateFolder(homeFolder());
    startDetached(program, words + *items, homeFolder() + u"/safari.log"_s);
    if (!bus.waitForName(safariName, true, launchLimit)) {
        return fail(u"The application cannot be opened for an unexpected reason: Safari did not start.\n"_s);
    }
    return 0;
}

/// The application's name, or its path without a closing slash; of an application within an Xcode wherever that is, the
/// name alone.
QString applicationName(QString text) {
    while (text.size() > 1 && text.endsWith(u'/')) {
        text.chop(1);
    }
    constexpr auto ownFolder = "/Xcode.app/Contents/Developer/Applications/"_L1;
    const qsizetype place = text.indexOf(ownFolder);
    return place < 0 ? text : text.sliced(place + ownFolder.size());
}

int run(const OpenOptions& options) {
    static const QStringList simulatorNames{u"Simulator"_s, u"Simulator.app"_s, u"com.apple.iphonesimulator"_s};
    static const QStringList safariNames{u"Safari"_s, u"Safari.app"_s, QString(safariName),
                                         u"/Applications/Safari.app"_s};
    if (!options.problem.isEmpty()) {
        return fail(options.problem + QLatin1StringView(usageText));
    }
    // Addresses may end so too.
    const bool isItem = options.application.isEmpty() && options.items.size() == 1 &&
                        !options.items.first().contains(u"://") &&
                        applicationName(options.items.first()).endsWith(u".app");
    const QString application = applicationName(isItem ? options.items.first() : options.application);
    if (application.isEmpty() && options.items.isEmpty()) {
        return fail(QLatin1StringView(usageText));
    }
    if (simulatorNames.contains(application, Qt::CaseInsensitive)) {
        return openSimulator(options);
    }
    if (application.isEmpty() || safariNames.contains(application, Qt::CaseInsensitive)) {
        OpenOptions safari = options;
        if (isItem) {
            safari.items.clear();
        }
        return openSafari(safari);
    }
    return fail(
        options.isBundleIdentifier
            ? u"LSCopyApplicationURLsForBundleIdentifier() failed while trying to determine the application with "
              "bundle identifier %1.\n"_s.arg(application)
            : u"Unable to find application named '%1'\n"_s.arg(application));
}

} // namespace

int main(int argc, char** argv) {
    QStringList words;
    for (int index = 1; index < argc; ++index) {
        words.append(QString::fromUtf8(argv[index]));
    }
    try {
        return run(OpenOptions::parse(words));
    } catch (const std::exception& problem) {
        return fail(u"open: %1\n"_s.arg(QString::fromUtf8(problem.what())));
    }
}
