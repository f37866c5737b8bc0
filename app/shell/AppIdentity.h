// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Who this program is. The values come from the build system.
namespace corvanta::AppIdentity {

/// "Development" when the build names no version.
[[nodiscard]] QString version();

/// "Local" when the build names no number.
[[nodiscard]] QString buildNumber();

/// "Corvanta 1.4 (27)": the one form in which the version is shown everywhere.
[[nodiscard]] QString versionLine();

} // namespace corvanta::AppIdentity
