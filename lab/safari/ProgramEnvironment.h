// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace corvanta::lab {

/// What Safari's programs set before they use the toolkit: the X11 windows that other programs may place, no inspector
/// server of their own, Safari's name, and pages drawn by the processor. Before the first thread.
void setUpProgramEnvironment();

/// Gives this program's windows Safari's icon. After the toolkit was started.
void setUpIcon();

/// What stands beside this program in the file system.
[[nodiscard]] std::string besideProgram(const char* name);

} // namespace corvanta::lab
