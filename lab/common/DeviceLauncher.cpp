// SPDX-License-Identifier: MIT
#include "DeviceLauncher.h"

#include "LabFolders.h"

#include <QFile>

#include <glib.h>

#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace corvanta::lab {

namespace {

/// Where a program finds the open file that it inherits: behind the standard streams.
constexpr int handedDescriptor = STDERR_FILENO + 1;
constexpr std::chrono::milliseconds bootLimit = 60s;
constexpr std::chrono::milliseconds shutDownLimit = 15s;

class SpawnSettings {
public:
    SpawnSettings() {
        posix_spawn_file_actions_init(&files);
        posix_spawnattr_init(&attributes);
    }

    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;

    ~SpawnSettings() {
        posix_spawn_file_actions_destroy(&files);
        posix_spawnattr_destroy(&attributes);
    }

    posix_spawn_file_actions_t files{};
    posix_spawnattr_t attributes{};
};

void noteChildEnd(GPid, int, gpointer hasEnded) {
    *static_cast<bool*>(hasEnded) = true;
}

} // namespace

pid_t startDetached(const QString& program, const QStringList& arguments, const QString& logFile, int inheritedFile) {
    const QByteArray log = QFile::encodeName(logFile);
    QByteArrayList words{QFile::encodeName(program)};
    for (const QString& argument : arguments) {
        words.append(argument.toUtf8());
    }
    std::vector<char*> vector;
    for (QByteArray& word : words) {
        vector.push_back(word.data());
    }
    vector.push_back(nullptr);

    SpawnSettings settings;
    posix_spawn_file_actions_addopen(&settings.files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&settings.files, STDOUT_FILENO, log.constData(), O_WRONLY | O_CREAT | O_TRUNC,
                                     0600);
    posix_spawn_file_actions_adddup2(&settings.files, STDOUT_FILENO, STDERR_FILENO);
    if (inheritedFile >= 0) {
        posix_spawn_file_actions_adddup2(&settings.files, inheritedFile, handedDescriptor);
    }
    posix_spawn_file_actions_addclosefrom_np(&settings.files,
                                             inheritedFile >= 0 ? handedDescriptor + 1 : handedDescriptor);
    sigset_t none;
    sigemptyset(&none);
    posix_spawnattr_setsigmask(&settings.attributes, &none);
    posix_spawnattr_setflags(&settings.attributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK);
    pid_t process = 0;
    const int status =
        posix_spawn(&process, words.first().constData(), &settings.files, &settings.attributes, vector.data(), environ);
    if (status != 0) {
        throw DeviceSetError(words.first().toStdString() + ": " + std::strerror(status));
    }
    return process;
}

BootResult bootDevice(DeviceBus& bus, DeviceSet& set, const Device& device) {
    const QString name = deviceBusName(device.udid);
    const FileLock turn = set.takeTurn(device);
    if (bus.isNameOwned(name)) {
        return BootResult::alreadyRunning;
    }
    set.noteBoot(device);
    set.changeSettings(device, &DeviceSettings::endSession);
    const pid_t process = startDetached(programFolder() + u"/SimulatorDevice"_s, {device.udid},
                                        set.folderOf(device) + u"/device.log"_s, turn.descriptor());
    bool hasEnded = false;
    const guint watch = g_child_watch_add(process, noteChildEnd, &hasEnded);
    const bool isOwned = bus.waitForName(name, true, bootLimit, [&] { return hasEnded; });
    if (!hasEnded) {
        g_source_remove(watch);
        if (!isOwned) {
            // It would hold its turn for ever.
            kill(process, SIGKILL);
        }
    }
    return isOwned ? BootResult::accepted : BootResult::failed;
}

HandedTurn::HandedTurn(const DeviceSet& set, const Device& device) {
    struct stat inherited{};
    struct stat lock{};
    const QByteArray path = QFile::encodeName(set.folderOf(device) + u"/.boot-lock"_s);
    if (fstat(handedDescriptor, &inherited) == 0 && stat(path.constData(), &lock) == 0 &&
        inherited.st_dev == lock.st_dev && inherited.st_ino == lock.st_ino &&
        fcntl(handedDescriptor, F_SETFD, FD_CLOEXEC) == 0) {
        m_descriptor = handedDescriptor;
    }
}

void HandedTurn::keepForNextProgram() const {
    if (m_descriptor >= 0) {
        fcntl(m_descriptor, F_SETFD, 0);
    }
}

void HandedTurn::end() {
    if (m_descriptor >= 0) {
        close(m_descriptor);
        m_descriptor = -1;
    }
}

bool shutDownDevice(DeviceBus& bus, const QString& udid) {
    bus.call(udid, "Shutdown", shutDownLimit);
    return bus.waitForName(deviceBusName(udid), false, shutDownLimit);
}

} // namespace corvanta::lab
