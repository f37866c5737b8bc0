// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace corvanta {

/// Absolute path of a file of data that belongs to this program, such as "places/places.gazetteer", whether it exists
/// or not: in the folder that CORVANTA_DATA_DIR names, else in that of the installation or of the build tree.
[[nodiscard]] QString dataFile(const QString& name);

} // namespace corvanta
