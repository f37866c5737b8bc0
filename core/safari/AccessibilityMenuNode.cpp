// SPDX-License-Identifier: MIT
#include "safari/AccessibilityMenuNode.h"

#include <QStringList>

namespace corvanta {

QString accessibilityMenuNodeID(const std::vector<int>& path, const QString& title) {
    QStringList indexes;
    for (const int index : path)
        indexes.append(QString::number(index));
    return indexes.join(u'.') + u'|' + title;
}

} // namespace corvanta
