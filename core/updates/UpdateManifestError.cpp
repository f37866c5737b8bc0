// SPDX-License-Identifier: MIT
#include "updates/UpdateManifestError.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

QString UpdateManifestError::errorDescription() const {
    switch (m_case) {
    case Case::invalidVersion:
        return u"The update server returned an invalid version."_s;
    case Case::invalidBuild:
        return u"The update server returned an invalid build number."_s;
    case Case::insecureDownloadURL:
        return u"The update download must use HTTPS."_s;
    case Case::invalidChecksum:
        return u"The update server returned an invalid SHA-256 checksum."_s;
    }
    Q_UNREACHABLE();
}

} // namespace corvanta
