// SPDX-License-Identifier: MIT
#pragma once

#include <QStringView>

namespace corvanta {

/// The order in which file browsers sort names: digit runs by their number, letters without regard to case, in the
/// user's locale; in a real locale also where the environment names none. Negative, zero or positive.
[[nodiscard]] int compareNames(QStringView left, QStringView right);

/// Whether `text` contains `part`, without regard to case in the user's locale. An empty part is not contained.
[[nodiscard]] bool containsName(QStringView text, QStringView part);

} // namespace corvanta
