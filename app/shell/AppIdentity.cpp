// SPDX-License-Identifier: MIT
#include "shell/AppIdentity.h"

namespace corvanta::AppIdentity {

using namespace Qt::Literals::StringLiterals;

QString version() {
    const auto text = QStringLiteral(CORVANTA_VERSION);
    return text.isEmpty() ? u"Development"_s : text;
}

QString buildNumber() {
    const auto text = QStringLiteral(CORVANTA_BUILD_NUMBER);
    return text.isEmpty() ? u"Local"_s : text;
}

QString versionLine() {
    return u"Corvanta "_s + version() + u" ("_s + buildNumber() + u")"_s;
}

} // namespace corvanta::AppIdentity
