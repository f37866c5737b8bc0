// SPDX-License-Identifier: MIT
#include "ListOutput.h"

#include "DeviceCatalogue.h"

#include <QDirIterator>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

constexpr auto profileFolder = "/Library/Developer/CoreSimulator/Profiles"_L1;

QString typeBundle(const DeviceType& type) {
    return profileFolder + u"/DeviceTypes/"_s + type.name + u".simdevicetype"_s;
}

QString runtimeBundle(const Runtime& runtime) {
    return profileFolder + u"/Runtimes/"_s + runtime.name + u".simruntime"_s;
}

/// What a verbose line ends with.
QString folderNote(const ListOptions& options, const QString& folder) {
    return options.isVerbose ? u" ["_s + folder + u']' : QString();
}

qint64 sizeOf(const QString& path) {
    qint64 sum = QFileInfo(path).isFile() ? QFileInfo(path).size() : 0;
    QDirIterator files(path, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        sum += files.fileInfo().size();
    }
    return sum;
}

QJsonObject deviceTypeObject(const DeviceType& type) {
    return {{u"bundlePath"_s, typeBundle(type)},
            {u"identifier"_s, type.identifier},
            {u"maxRuntimeVersion"_s, 4294967295.0},
            {u"maxRuntimeVersionString"_s, u"65535.255.255"_s},
            {u"minRuntimeVersion"_s,
             (type.minimumVersion.majorVersion() << 16) | (qMax(type.minimumVersion.minorVersion(), 0) << 8)},
            {u"minRuntimeVersionString"_s,
             u"%1.%2.0"_s.arg(type.minimumVersion.majorVersion()).arg(type.minimumVersion.minorVersion())},
            {u"modelIdentifier"_s, type.modelIdentifier},
            {u"name"_s, type.name},
            {u"productFamily"_s, type.productFamily}};
}

QJsonObject runtimeObject(const Runtime& runtime) {
    QJsonArray supported;
    for (const DeviceType& type : deviceTypes()) {
        if (isSupported(type, runtime)) {
            supported.append(QJsonObject{{u"bundlePath"_s, deviceTypeObject(type)[u"bundlePath"]},
                                         {u"identifier"_s, type.identifier},
                                         {u"name"_s, type.name},
                                         {u"productFamily"_s, type.productFamily}});
        }
    }
    return {{u"bundlePath"_s, runtimeBundle(runtime)},
            {u"buildversion"_s, runtime.build},
            {u"identifier"_s, runtime.identifier},
            {u"isAvailable"_s, true},
            {u"isInternal"_s, false},
            {u"name"_s, runtime.name},
            {u"platform"_s, u"iOS"_s},
            {u"runtimeRoot"_s, runtimeBundle(runtime) + u"/Contents/Resources/RuntimeRoot"_s},
            {u"supportedArchitectures"_s, QJsonArray{u"arm64"_s}},
            {u"supportedDeviceTypes"_s, supported},
            {u"version"_s, runtime.version.toString()}};
}

/// Why the device cannot be used; empty when it can.
QString availabilityError(const Device& device, const SystemDescription& system) {
    if (system.findRuntime(device.runtime) == nullptr) {
        return u"runtime profile not found using \"System\" match policy"_s;
    }
    return findDeviceType(device.deviceType) == nullptr ? u"device type profile not found"_s : QString();
}

QJsonObject deviceObject(const ListedDevice& listed, const SystemDescription& system) {
    const QString problem = availabilityError(listed.device, system);
    QJsonObject object{{u"dataPath"_s, listed.folder + u"/data"_s},
                       {u"dataPathSize"_s, sizeOf(listed.folder + u"/data"_s)},
                       {u"deviceTypeIdentifier"_s, listed.device.deviceType},
                       {u"isAvailable"_s, problem.isEmpty()},
                       {u"logPath"_s, listed.folder + u"/device.log"_s},
                       {u"logPathSize"_s, sizeOf(listed.folder + u"/device.log"_s)},
                       {u"name"_s, listed.device.name},
                       {u"state"_s, listed.state},
                       {u"udid"_s, listed.device.udid}};
    if (!problem.isEmpty()) {
        object[u"availabilityError"] = problem;
    }
    if (listed.lastBooted) {
        object[u"lastBootedAt"] = listed.lastBooted->toString(Qt::ISODate);
    }
    return object;
}

bool isListed(const ListOptions& options, const ListedDevice& listed, const SystemDescription& system) {
    if (options.onlyAvailable && !availabilityError(listed.device, system).isEmpty()) {
        return false;
    }
    const Runtime* runtime = findRuntime(listed.device.runtime);
    return options.matches({listed.device.name, listed.device.udid, listed.state, listed.device.deviceType,
                            runtime != nullptr ? runtime->name : listed.device.runtime});
}

/// Runtime identifiers in the order of the list: the installed ones, then those that only devices name.
QStringList runtimeOrder(const std::vector<ListedDevice>& devices, const SystemDescription& system) {
    QStringList order;
    for (const Runtime& runtime : system.runtimes) {
        order.append(runtime.identifier);
    }
    for (const ListedDevice& listed : devices) {
        if (!order.contains(listed.device.runtime)) {
            order.append(listed.device.runtime);
        }
    }
    return order;
}

QByteArray jsonOutput(const ListOptions& options, const std::vector<ListedDevice>& devices,
                      const SystemDescription& system) {
    QJsonObject document;
    if (options.deviceTypes) {
        QJsonArray types;
        for (const DeviceType& type : deviceTypes()) {
            if (options.matches({type.name, type.identifier})) {
                types.append(deviceTypeObject(type));
            }
        }
        document[u"devicetypes"] = types;
    }
    if (options.runtimes) {
        QJsonArray known;
        for (const Runtime& runtime : system.runtimes) {
            if (options.matches({runtime.name, runtime.identifier})) {
                known.append(runtimeObject(runtime));
            }
        }
        document[u"runtimes"] = known;
    }
    if (options.devices) {
        QJsonObject byRuntime;
        for (const QString& runtime : runtimeOrder(devices, system)) {
            QJsonArray entries;
            for (const ListedDevice& listed : devices) {
                if (listed.device.runtime == runtime && isListed(options, listed, system)) {
                    entries.append(deviceObject(listed, system));
                }
            }
            byRuntime[runtime] = entries;
        }
        document[u"devices"] = byRuntime;
    }
    if (options.pairs) {
        document[u"pairs"] = QJsonObject();
    }
    return spellJson(document, options.escapesSlashes) + '\n';
}

QString deviceLines(const ListOptions& options, const std::vector<ListedDevice>& devices,
                    const SystemDescription& system) {
    QString text;
    for (const QString& identifier : runtimeOrder(devices, system)) {
        const Runtime* runtime = system.findRuntime(identifier);
        QString lines;
        for (const ListedDevice& listed : devices) {
            if (listed.device.runtime != identifier || !isListed(options, listed, system)) {
                continue;
            }
            const QString problem = availabilityError(listed.device, system);
            lines += u"    %1 (%2) (%3) "_s.arg(listed.device.name, listed.device.udid, listed.state);
            lines += problem.isEmpty() ? QString() : u"(unavailable, %1)"_s.arg(problem);
            lines += folderNote(options, listed.folder) + u'\n';
        }
        if (runtime != nullptr) {
            text += u"-- %1 --\n"_s.arg(runtime->name) + lines;
        } else if (!lines.isEmpty()) {
            text += u"-- Unavailable: %1 --\n"_s.arg(identifier) + lines;
        }
    }
    return text;
}

QByteArray textOutput(const ListOptions& options, const std::vector<ListedDevice>& devices,
                      const SystemDescription& system) {
    QString text;
    if (options.deviceTypes) {
        text += u"== Device Types ==\n"_s;
        for (const DeviceType& type : deviceTypes()) {
            if (options.matches({type.name, type.identifier})) {
                text += u"%1 (%2)"_s.arg(type.name, type.identifier) + folderNote(options, typeBundle(type)) + u'\n';
            }
        }
    }
    if (options.runtimes) {
        text += u"== Runtimes ==\n"_s;
        for (const Runtime& runtime : system.runtimes) {
            if (options.matches({runtime.name, runtime.identifier})) {
                text += u"%1 (%2 - %3) - %4"_s.arg(runtime.name, runtime.version.toString(), runtime.build,
                                                   runtime.identifier) +
                        folderNote(options, runtimeBundle(runtime)) + u'\n';
            }
        }
    }
    if (options.devices) {
        text += u"== Devices ==\n"_s + deviceLines(options, devices, system);
    }
    if (options.pairs) {
        text += u"== Device Pairs ==\n"_s;
    }
    return text.toUtf8();
}

QByteArray spellScalar(const QJsonValue& value, bool escapesSlashes) {
    // The document needs an array or an object around a value.
    QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    text = text.sliced(1, text.size() - 2);
    return escapesSlashes ? text.replace('/', "\\/") : text;
}

QByteArray spell(const QJsonValue& value, int level, bool escapesSlashes) {
    const QByteArray outer(qsizetype{level} * 2, ' ');
    const QByteArray inner(outer.size() + 2, ' ');
    QByteArrayList parts;
    if (value.isObject()) {
        const QJsonObject object = value.toObject();
        for (auto entry = object.begin(); entry != object.end(); ++entry) {
            parts.append(inner + spellScalar(entry.key(), escapesSlashes) + " : " +
                         spell(entry.value(), level + 1, escapesSlashes));
        }
        return parts.isEmpty() ? "{\n\n" + outer + '}' : "{\n" + parts.join(",\n") + '\n' + outer + '}';
    }
    if (value.isArray()) {
        for (const QJsonValue entry : value.toArray()) {
            parts.append(inner + spell(entry, level + 1, escapesSlashes));
        }
        return parts.isEmpty() ? "[\n\n" + outer + ']' : "[\n" + parts.join(",\n") + '\n' + outer + ']';
    }
    return spellScalar(value, escapesSlashes);
}

} // namespace

QByteArray spellJson(const QJsonValue& value, bool escapesSlashes) {
    return spell(value, 0, escapesSlashes);
}

QByteArray listOutput(const ListOptions& options, const std::vector<ListedDevice>& devices,
                      const SystemDescription& system) {
    return options.isJson ? jsonOutput(options, devices, system) : textOutput(options, devices, system);
}

} // namespace corvanta::lab
