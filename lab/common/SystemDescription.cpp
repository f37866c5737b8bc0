// SPDX-License-Identifier: MIT
#include "SystemDescription.h"

#include "AtomicFile.h"
#include "FileLock.h"
#include "LabFolders.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

SystemDescriptionError problem(const QString& text) {
    return SystemDescriptionError(text.toStdString());
}

QByteArray contentOf(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw problem(file.errorString());
    }
    return file.readAll();
}

QString textValue(const QJsonObject& object, const QString& key, const QString& shipped) {
    const QJsonValue value = object[key];
    if (!value.isUndefined() && (!value.isString() || value.toString().isEmpty())) {
        throw problem(u"\"%1\" must be a text such as \"%2\""_s.arg(key, shipped));
    }
    return value.toString(shipped);
}

bool flagValue(const QJsonObject& object, const QString& key, bool shipped) {
    const QJsonValue value = object[key];
    if (!value.isUndefined() && !value.isBool()) {
        throw problem(u"\"%1\" must be true or false"_s.arg(key));
    }
    return value.toBool(shipped);
}

std::vector<Runtime> runtimesValue(const QJsonValue& value) {
    if (value.isUndefined()) {
        return runtimes();
    }
    if (!value.isArray()) {
        throw problem(u"\"runtimes\" must be a list such as [\"%1\"]"_s.arg(runtimes().back().name));
    }
    std::vector<const Runtime*> chosen;
    for (const QJsonValue entry : value.toArray()) {
        const Runtime* const runtime = entry.isString() ? findRuntime(entry.toString()) : nullptr;
        if (runtime == nullptr) {
            QStringList names;
            std::ranges::transform(runtimes(), std::back_inserter(names), &Runtime::name);
            throw problem(u"\"runtimes\" names what the lab does not have; it has %1"_s.arg(names.join(u", ")));
        }
        chosen.push_back(runtime);
    }
    std::vector<Runtime> result;
    std::ranges::copy_if(runtimes(), std::back_inserter(result),
                         [&](const Runtime& runtime) { return std::ranges::find(chosen, &runtime) != chosen.end(); });
    return result;
}

/// Puts the shipped file into the home unless there is one by now. Whether one is there.
bool offerForEditing(const QString& path, const QByteArray& content) {
    try {
        createPrivateFolder(homeFolder());
        const FileLock held(homeFolder() + u"/.lock"_s);
        if (!QFile::exists(path)) {
            writeFileAtomically(path, content);
        }
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

} // namespace

const Runtime* SystemDescription::findRuntime(const QString& identifierOrName) const {
    const Runtime* const known = lab::findRuntime(identifierOrName);
    const auto found = known != nullptr ? std::ranges::find(runtimes, *known) : runtimes.end();
    return found == runtimes.end() ? nullptr : &*found;
}

SystemDescription SystemDescription::fromJson(const QByteArray& json) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) {
        throw problem(u"line %1: %2"_s.arg(json.first(std::min<qsizetype>(error.offset, json.size())).count('\n') + 1)
                          .arg(error.errorString()));
    }
    if (!document.isObject()) {
        throw problem(u"the file must hold one object in braces"_s);
    }
    const QJsonObject object = document.object();
    SystemDescription description;
    description.macOS = textValue(object, u"macOS"_s, u"15.5"_s);
    if (!object[u"xcode"_s].isNull()) {
        description.xcode = textValue(object, u"xcode"_s, u"16.4"_s);
    }
    description.xcodeBuild = textValue(object, u"xcodeBuild"_s, u"16F6"_s);
    description.commandLineTools = flagValue(object, u"commandLineTools"_s, true);
    description.runtimes = runtimesValue(object[u"runtimes"_s]);
    return description;
}

SystemDescription SystemDescription::load() {
    const QString own = homeFolder() + u"/system.json"_s;
    const QString shipped = programFolder() + u"/share/system.json"_s;
    const bool hasOwn = QFile::exists(own);
    const QString path = hasOwn ? own : shipped;
    try {
        const QByteArray content = contentOf(path);
        SystemDescription description = fromJson(content);
        if (!hasOwn) {
            // A home that cannot be written still has a system: the shipped one.
            (void)offerForEditing(own, content);
        }
        return description;
    } catch (const SystemDescriptionError& error) {
        throw problem(path + u": "_s + QString::fromUtf8(error.what()));
    }
}

} // namespace corvanta::lab
