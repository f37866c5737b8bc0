// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

#include <cstddef>
#include <vector>

namespace corvanta {

/// The order in which file browsers sort names: digit runs by their number, letters without regard to case, in the
/// user's locale; in a real locale also where the environment names none. Negative, zero or positive.
[[nodiscard]] int compareNames(QStringView left, QStringView right);

/// For each name its place in that order, from zero; names between which the order sees no difference have the same.
/// Quicker than comparing them while they are sorted.
[[nodiscard]] std::vector<std::size_t> nameRanks(const std::vector<QStringView>& names);

/// Whether `text` contains `part`, without regard to case in the user's locale. An empty part is not contained.
[[nodiscard]] bool containsName(QStringView text, QStringView part);

} // namespace corvanta
