// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace corvanta::bench {

/// What a process has used and holds, read from outside. Zero where the process is gone.
struct ProcessFigures {
    /// Processor time of its living threads.
    double processorMilliseconds = 0;
    /// All that is in memory for it, whoever else uses it as well.
    long residentKilobytes = 0;
    /// What no other process shares: read from files, and made by itself.
    long privateKilobytes = 0;
    /// The part of it that it made itself, which the system cannot drop.
    long anonymousKilobytes = 0;
    /// What it shares is divided among those who share it.
    long proportionalKilobytes = 0;
    /// How often its threads went to sleep of their own will, which is how often they woke.
    long sleeps = 0;

    [[nodiscard]] static ProcessFigures of(pid_t process);
};

/// Processes that are children of that one, their children, and so on.
[[nodiscard]] std::vector<pid_t> descendants(pid_t process);

/// The name of the program that the process runs.
[[nodiscard]] std::string programOf(pid_t process);

} // namespace corvanta::bench
