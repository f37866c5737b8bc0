// SPDX-License-Identifier: MIT
#pragma once

namespace corvanta::lab {

/// What Safari's programs set before they use the toolkit: the X11 windows that other programs may place, no inspector
/// server of their own, Safari's name, and pages drawn by the processor. Before the first thread.
void setUpProgramEnvironment();

} // namespace corvanta::lab
