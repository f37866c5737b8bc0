// SPDX-License-Identifier: MIT
#include "LabFolders.h"

#include "LabHome.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <stdexcept>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

QString programFolder() {
    return QFileInfo(QFile::symLinkTarget(u"/proc/self/exe"_s)).path();
}

QString homeFolder() {
    return QFile::decodeName(labHome().c_str());
}

QString deviceSetFolder() {
    const QByteArray chosen = qgetenv("CORVANTA_DEVICE_SET");
    return chosen.isEmpty() ? homeFolder() + u"/Devices"_s
                            : QFile::decodeName(absolutePath(chosen.toStdString()).c_str());
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
