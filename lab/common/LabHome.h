// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace corvanta::lab {

/// The absolute path of the folder with the lab's data: `CORVANTA_LAB_HOME`, else `corvanta-lab` in `XDG_DATA_HOME`,
/// else in `~/.local/share`. Every program of the lab asks here. Not created here.
///
/// A relative `CORVANTA_LAB_HOME` is below the working folder; a relative `XDG_DATA_HOME` counts as none, as everywhere
/// on a freedesktop system.
[[nodiscard]] std::string labHome();

/// A path made absolute and free of `.`, `..` and closing slashes, whether it exists or not.
[[nodiscard]] std::string absolutePath(const std::string& path);

} // namespace corvanta::lab
