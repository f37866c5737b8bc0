// SPDX-License-Identifier: MIT
#include "updates/UpdateCheckError.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

QString UpdateCheckError::errorDescription() const {
    switch (m_case) {
    case Case::serverUnavailable:
        return u"The update information is not available yet. Please try again later."_s;
    }
    Q_UNREACHABLE();
}

} // namespace corvanta
