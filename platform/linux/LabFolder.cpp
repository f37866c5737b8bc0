// SPDX-License-Identifier: MIT
#include "LabFolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QStringList>

#include <optional>
#include <utility>

namespace corvanta {

namespace {

using namespace Qt::Literals::StringLiterals;

QString programsFolder() {
    const QString chosen = qEnvironmentVariable("CORVANTA_LAB_DIR");
    if (!chosen.isEmpty())
        return QDir(chosen).absolutePath();
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../libexec/corvanta-lab"_s);
}

QString homeFolder() {
    const QString chosen = qEnvironmentVariable("CORVANTA_LAB_HOME");
    if (!chosen.isEmpty())
        return QDir(chosen).absolutePath();
    // The lab's own rule, which takes a relative folder for none; Qt 6.4 does not.
    const QString data = qEnvironmentVariable("XDG_DATA_HOME");
    return (QDir::isAbsolutePath(data) ? QDir::cleanPath(data) : QDir::homePath() + u"/.local/share"_s) +
           u"/corvanta-lab"_s;
}

std::optional<OperatingSystemVersion> readVersion(const QString& path) {
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QString text = QJsonDocument::fromJson(file.readAll()).object().value("macOS"_L1).toString();
    const QStringList parts = text.split(u'.');
    bool isNumber = false;
    const int major = parts.constFirst().toInt(&isNumber);
    if (!isNumber)
        return std::nullopt;
    return OperatingSystemVersion{major, parts.size() > 1 ? parts.at(1).toInt() : 0};
}

} // namespace

LabFolder::LabFolder()
    : LabFolder(programsFolder(), homeFolder()) {}

LabFolder::LabFolder(QString programs, QString home)
    : m_programs(std::move(programs))
    , m_home(std::move(home)) {}

QString LabFolder::program(const QString& name) const {
    return m_programs + u'/' + name;
}

QString LabFolder::shared(const QString& name) const {
    return m_programs + u"/share/"_s + name;
}

OperatingSystemVersion LabFolder::operatingSystemVersion() const {
    if (const auto chosen = readVersion(m_home + u"/system.json"_s))
        return *chosen;
    return readVersion(shared(u"system.json"_s)).value_or(OperatingSystemVersion());
}

} // namespace corvanta
