// SPDX-License-Identifier: MIT
#include "SystemDescription.h"

#include "LabFolders.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

std::optional<QByteArray> fileContent(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return std::nullopt;
    }
    return file.readAll();
}

} // namespace

SystemDescription SystemDescription::fromJson(const QByteArray& json) {
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    SystemDescription description;
    description.macOS = object["macOS"_L1].toString(u"15.5"_s);
    if (!object["xcode"_L1].isNull()) {
        description.xcode = object["xcode"_L1].toString(u"16.4"_s);
    }
    description.xcodeBuild = object["xcodeBuild"_L1].toString(u"16F6"_s);
    description.commandLineTools = object["commandLineTools"_L1].toBool(true);
    return description;
}

SystemDescription SystemDescription::load() {
    const QString own = homeFolder() + u"/system.json"_s;
    if (const auto content = fileContent(own)) {
        return fromJson(*content);
    }
    const QByteArray shipped = fileContent(programFolder() + u"/share/system.json"_s).value_or("{}\n");
    try {
        createPrivateFolder(homeFolder());
        QSaveFile file(own);
        if (file.open(QIODevice::WriteOnly)) {
            file.write(shipped);
            file.commit();
        }
    } catch (const std::runtime_error&) {
        // A home that cannot be written still has a system: the shipped one.
    }
    return fromJson(shipped);
}

} // namespace corvanta::lab
