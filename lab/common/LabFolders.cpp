// SPDX-License-Identifier: MIT
#include "LabFolders.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

QString environmentPath(const char* name) {
    const QByteArray value = qgetenv(name);
    return value.isEmpty() ? QString() : QDir::cleanPath(QFile::decodeName(value));
}

} // namespace

QString programFolder() {
    return QFileInfo(QFile::symLinkTarget(u"/proc/self/exe"_s)).path();
}

QString homeFolder() {
    if (const QString path = environmentPath("CORVANTA_LAB_HOME"); !path.isEmpty()) {
        return path;
    }
    const QString data = environmentPath("XDG_DATA_HOME");
    return (data.isEmpty() ? QDir::homePath() + u"/.local/share"_s : data) + u"/corvanta-lab"_s;
}

QString deviceSetFolder() {
    const QString path = environmentPath("CORVANTA_DEVICE_SET");
    return path.isEmpty() ? homeFolder() + u"/Devices"_s : path;
}

void createPrivateFolder(const QString& path) {
    if (QDir(path).exists()) {
        return;
    }
    if (!QDir().mkpath(path)) {
        throw std::runtime_error("cannot create the folder " + QFile::encodeName(path).toStdString());
    }
    QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

} // namespace corvanta::lab
