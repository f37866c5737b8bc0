// SPDX-License-Identifier: MIT
#pragma once

#include "safari/SafariTarget.h"

#include <ostream>

namespace corvanta {

/// How test failures show a page.
inline void PrintTo(const SafariTarget& target, std::ostream* stream) {
    *stream << target.id.toStdString();
}

} // namespace corvanta
