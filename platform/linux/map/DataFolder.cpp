// SPDX-License-Identifier: MIT
#include "DataFolder.h"

#include <QCoreApplication>
#include <QDir>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

QString dataFile(const QString& name) {
    const QString chosen = qEnvironmentVariable("CORVANTA_DATA_DIR");
    const QString folder = chosen.isEmpty() ? QCoreApplication::applicationDirPath() + u"/../share/corvanta"_s : chosen;
    return QDir::cleanPath(QDir(folder).absoluteFilePath(name));
}

} // namespace corvanta
