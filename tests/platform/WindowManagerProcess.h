// SPDX-License-Identifier: MIT
#pragma once

#include <sys/types.h>

namespace corvanta::testing {

/// Stops the window manager of the test's own desktop, and lets it go on at the end.
class StoppedWindowManager {
public:
    StoppedWindowManager();
    StoppedWindowManager(const StoppedWindowManager&) = delete;
    StoppedWindowManager& operator=(const StoppedWindowManager&) = delete;
    ~StoppedWindowManager();

private:
    pid_t m_process = 0;
};

} // namespace corvanta::testing
