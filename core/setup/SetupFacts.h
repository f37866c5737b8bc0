// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

namespace corvanta {

/// What was found out about the host.
struct SetupFacts {
    /// Whether the processor is an arm64 one.
    bool isAppleSilicon = false;
    int macOSMajorVersion = 0;
    int macOSMinorVersion = 0;
    /// The first line of the developer tools' version report; absent when the tools are missing.
    std::optional<QString> xcodeVersion;
    /// Whether the simulator command tool can be located.
    bool simctlAvailable = false;
    /// The number of usable iOS runtimes; absent when unknown.
    std::optional<int> availableIOSRuntimeCount;
    bool accessibilityTrusted = false;
    /// Whether the browser's developer features are on; absent when unknown.
    std::optional<bool> safariDeveloperFeatures;

    bool operator==(const SetupFacts&) const = default;
};

} // namespace corvanta
