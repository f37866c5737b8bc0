// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

namespace corvanta::lab {

/// The folder that holds the lab's programs: that of the running program itself.
[[nodiscard]] QString programFolder();

/// The folder with the lab's data, absolute; `labHome()` says which. Not created here.
[[nodiscard]] QString homeFolder();

/// The folder of the device set, absolute: `CORVANTA_DEVICE_SET`, else `Devices` in the home folder. Not created here.
[[nodiscard]] QString deviceSetFolder();

/// Creates a folder with its parents, the last one readable by this user only. Throws std::runtime_error.
void createPrivateFolder(const QString& path);

} // namespace corvanta::lab
