// SPDX-License-Identifier: MIT
#include "DeviceSet.h"

#include "AtomicFile.h"
#include "DeviceCatalogue.h"
#include "LabFolders.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QUuid>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <system_error>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

constexpr auto stagedPrefix = ".new-"_L1;
constexpr auto discardedPrefix = ".old-"_L1;

void writeJson(const QString& path, const QJsonObject& object) {
    try {
        writeFileAtomically(path, QJsonDocument(object).toJson());
    } catch (const std::runtime_error& error) {
        throw DeviceSetError(error.what());
    }
}

/// Moves a file or folder within the set; what is at the target must not exist.
bool move(const QString& from, const QString& to) {
    return std::rename(QFile::encodeName(from).constData(), QFile::encodeName(to).constData()) == 0;
}

QString freshIdentifier() {
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

QJsonObject readJson(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QJsonDocument::fromJson(file.readAll()).object() : QJsonObject();
}

/// The identifier becomes a bus name, a path and a command's argument, so nothing else may pass for one.
bool isIdentifier(const QString& text) {
    static const QRegularExpression pattern(u"\\A[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}\\z"_s);
    return pattern.match(text).hasMatch();
}

/// Position in a catalogue; what it does not know comes last.
template<typename Entry>
std::size_t position(const std::vector<Entry>& entries, const QString& identifier) {
    const auto found = std::ranges::find(entries, identifier, &Entry::identifier);
    return static_cast<std::size_t>(found - entries.begin());
}

} // namespace

DeviceSet::DeviceSet(QString folder)
    : m_folder(std::move(folder)) {}

DeviceSet DeviceSet::open() {
    DeviceSet set(deviceSetFolder());
    set.createDefaultsOnFirstUse();
    return set;
}

std::vector<Device> DeviceSet::devices() const {
    std::vector<Device> result;
    for (const QString& folder : QDir(m_folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        if (!isIdentifier(folder)) {
            continue;
        }
        const QJsonObject object = readJson(m_folder + u'/' + folder + u"/device.json"_s);
        Device device{.udid = object["UDID"_L1].toString(),
                      .name = object["name"_L1].toString(),
                      .deviceType = object["deviceType"_L1].toString(),
                      .runtime = object["runtime"_L1].toString()};
        // The folder's name decides where the device lives, so a copied folder is not a second device.
        if (device.udid == folder && !device.name.isEmpty()) {
            result.push_back(std::move(device));
        }
    }
    std::ranges::sort(result, {}, [](const Device& device) {
        return std::tuple(position(runtimes(), device.runtime), device.runtime,
                          position(deviceTypes(), device.deviceType), device.name, device.udid);
    });
    return result;
}

std::optional<Device> DeviceSet::deviceWithId(const QString& udid) const {
    for (const Device& device : devices()) {
        if (device.udid.compare(udid, Qt::CaseInsensitive) == 0) {
            return device;
        }
    }
    return std::nullopt;
}

FileLock DeviceSet::lock() const {
    return FileLock(m_folder + u"/.lock"_s);
}

bool DeviceSet::hasLeftovers() const {
    return !QDir(m_folder)
                .entryList({stagedPrefix + u"*"_s, discardedPrefix + u"*"_s}, QDir::Dirs | QDir::Hidden)
                .isEmpty();
}

void DeviceSet::clearLeftovers() {
    QDir folder(m_folder);
    for (const QString& name :
         folder.entryList({stagedPrefix + u"*"_s, discardedPrefix + u"*"_s}, QDir::Dirs | QDir::Hidden)) {
        QDir(folder.filePath(name)).removeRecursively();
    }
}

void DeviceSet::discard(const QString& path) {
    // Out of sight in one step; taking it apart may be ended half-way.
    const QString old = m_folder + u'/' + discardedPrefix + freshIdentifier();
    if (!move(path, old)) {
        throw DeviceSetError("cannot remove " + QFile::encodeName(path).toStdString());
    }
    QDir(old).removeRecursively();
}

QString DeviceSet::stage(const Device& device) {
    const QString staged = m_folder + u'/' + stagedPrefix + device.udid;
    try {
        createPrivateFolder(staged);
        createPrivateFolder(staged + u"/data"_s);
    } catch (const std::runtime_error& error) {
        throw DeviceSetError(error.what());
    }
    writeJson(staged + u"/device.json"_s, {{u"UDID"_s, device.udid},
                                           {u"name"_s, device.name},
                                           {u"deviceType"_s, device.deviceType},
                                           {u"runtime"_s, device.runtime}});
    return staged;
}

void DeviceSet::publish(const QString& staged, const Device& device) {
    if (!move(staged, folderOf(device))) {
        throw DeviceSetError("cannot create " + QFile::encodeName(folderOf(device)).toStdString());
    }
}

Device DeviceSet::write(const QString& name, const QString& deviceType, const QString& runtime) {
    Device device{.udid = freshIdentifier(), .name = name, .deviceType = deviceType, .runtime = runtime};
    publish(stage(device), device);
    return device;
}

Device DeviceSet::create(const QString& name, const QString& deviceType, const QString& runtime) {
    createDefaultsOnFirstUse();
    const FileLock held = lock();
    return write(name, deviceType, runtime);
}

Device DeviceSet::clone(const Device& device, const QString& name) {
    const FileLock held = lock();
    Device copy = device;
    copy.udid = freshIdentifier();
    copy.name = name;
    const QString staged = stage(copy);
    std::error_code problem;
    for (const QString& part : {u"/data"_s, u"/settings.json"_s}) {
        const std::filesystem::path from = QFile::encodeName(folderOf(device) + part).toStdString();
        if (std::filesystem::exists(from, problem) && !problem) {
            std::filesystem::copy(from, QFile::encodeName(staged + part).toStdString(),
                                  std::filesystem::copy_options::recursive |
                                      std::filesystem::copy_options::copy_symlinks |
                                      std::filesystem::copy_options::overwrite_existing,
                                  problem);
        }
        if (problem) {
            throw DeviceSetError("cannot copy " + from.string() + ": " + problem.message());
        }
    }
    publish(staged, copy);
    return copy;
}

void DeviceSet::remove(const Device& device) {
    const FileLock held = lock();
    discard(folderOf(device));
}

void DeviceSet::erase(const Device& device) {
    const FileLock held = lock();
    QFile::remove(folderOf(device) + u"/settings.json"_s);
    const QString data = folderOf(device) + u"/data"_s;
    if (QFile::exists(data)) {
        discard(data);
    }
    try {
        createPrivateFolder(data);
    } catch (const std::runtime_error& error) {
        throw DeviceSetError(error.what());
    }
}

void DeviceSet::rename(const Device& device, const QString& name) {
    const FileLock held = lock();
    const QString path = folderOf(device) + u"/device.json"_s;
    QJsonObject object = readJson(path);
    if (object.isEmpty()) {
        throw DeviceGoneError(device.udid.toStdString());
    }
    object[u"name"] = name;
    writeJson(path, object);
}

DeviceSettings DeviceSet::settings(const Device& device) const {
    return DeviceSettings::fromJson(readJson(folderOf(device) + u"/settings.json"_s));
}

void DeviceSet::changeSettings(const Device& device, const std::function<void(DeviceSettings&)>& change) {
    const FileLock held = lock();
    DeviceSettings changed = settings(device);
    const DeviceSettings before = changed;
    change(changed);
    if (!(changed == before)) {
        writeJson(folderOf(device) + u"/settings.json"_s, changed.toJson());
    }
}

FileLock DeviceSet::takeTurn(const Device& device) const {
    const QString path = folderOf(device) + u"/.boot-lock"_s;
    const auto requireDevice = [&] {
        if (!QFile::exists(folderOf(device) + u"/device.json"_s)) {
            throw DeviceGoneError(device.udid.toStdString());
        }
    };
    requireDevice();
    // The lock that was waited for may be that of a folder on its way out.
    return FileLock(path, requireDevice);
}

QString DeviceSet::folderOf(const Device& device) const {
    return m_folder + u'/' + device.udid;
}

std::optional<QDateTime> DeviceSet::lastBooted(const Device& device) const {
    const QString text = readJson(folderOf(device) + u"/status.json"_s)["lastBootedAt"_L1].toString();
    const QDateTime time = QDateTime::fromString(text, Qt::ISODate);
    return time.isValid() ? std::optional(time) : std::nullopt;
}

void DeviceSet::noteBoot(const Device& device) {
    writeJson(folderOf(device) + u"/status.json"_s,
              {{u"lastBootedAt"_s, QDateTime::currentDateTimeUtc().toString(Qt::ISODate)}});
}

void DeviceSet::createDefaultsOnFirstUse() {
    // The mark is written last: a set whose making was interrupted is completed by the next program.
    const QString mark = m_folder + u"/device_set.json"_s;
    if (QFile::exists(mark) && !hasLeftovers()) {
        return;
    }
    try {
        createPrivateFolder(m_folder);
    } catch (const std::runtime_error& error) {
        throw DeviceSetError(error.what());
    }
    const FileLock held = lock();
    clearLeftovers();
    if (QFile::exists(mark)) {
        return;
    }
    const std::vector<Device> present = devices();
    QFile unfinished(m_folder + u"/.unfinished"_s);
    if (!present.empty() && !unfinished.exists()) {
        // Somebody laid out a set by hand: it is theirs and complete.
        writeJson(mark, {{u"version"_s, 1}});
        return;
    }
    if (!unfinished.open(QIODevice::WriteOnly)) {
        throw DeviceSetError("cannot write to the device set");
    }
    for (const Runtime& runtime : runtimes()) {
        for (const DeviceType& type : deviceTypes()) {
            const bool exists = std::ranges::any_of(present, [&](const Device& device) {
                return device.deviceType == type.identifier && device.runtime == runtime.identifier;
            });
            if (isSupported(type, runtime) && !exists) {
                write(type.name, type.identifier, runtime.identifier);
            }
        }
    }
    writeJson(mark, {{u"version"_s, 1}});
    unfinished.remove();
}

} // namespace corvanta::lab
