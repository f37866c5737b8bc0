// SPDX-License-Identifier: MIT
#include "DeviceSet.h"

#include "DeviceCatalogue.h"
#include "FileLock.h"
#include "LabFolders.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>
#include <QSaveFile>
#include <QUuid>

#include <algorithm>
#include <tuple>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

void writeJson(const QString& path, const QJsonObject& object) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(object).toJson()) < 0 || !file.commit()) {
        throw DeviceSetError("cannot write " + QFile::encodeName(path).toStdString());
    }
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

Device DeviceSet::write(const QString& name, const QString& deviceType, const QString& runtime) {
    Device device{.udid = QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper(),
                  .name = name,
                  .deviceType = deviceType,
                  .runtime = runtime};
    try {
        createPrivateFolder(folderOf(device));
    } catch (const std::runtime_error& error) {
        throw DeviceSetError(error.what());
    }
    writeJson(folderOf(device) + u"/device.json"_s, {{u"UDID"_s, device.udid},
                                                     {u"name"_s, device.name},
                                                     {u"deviceType"_s, device.deviceType},
                                                     {u"runtime"_s, device.runtime}});
    return device;
}

Device DeviceSet::create(const QString& name, const QString& deviceType, const QString& runtime) {
    createDefaultsOnFirstUse();
    const FileLock lock(m_folder + u"/.lock"_s);
    return write(name, deviceType, runtime);
}

void DeviceSet::remove(const Device& device) {
    if (!QDir(folderOf(device)).removeRecursively()) {
        throw DeviceSetError("cannot remove " + QFile::encodeName(folderOf(device)).toStdString());
    }
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
    if (QFile::exists(mark)) {
        return;
    }
    try {
        createPrivateFolder(m_folder);
    } catch (const std::runtime_error& error) {
        throw DeviceSetError(error.what());
    }
    const FileLock lock(m_folder + u"/.lock"_s);
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
