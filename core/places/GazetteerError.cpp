// SPDX-License-Identifier: MIT
#include "places/GazetteerError.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

QString GazetteerError::errorDescription() const {
    switch (m_kind) {
    case Kind::unreadable:
        return u"The list of places could not be read: %1"_s.arg(m_detail);
    case Kind::damaged:
        return u"The list of places is damaged: %1"_s.arg(m_detail);
    }
    Q_UNREACHABLE();
}

} // namespace corvanta
