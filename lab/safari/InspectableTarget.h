// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace corvanta::lab {

/// Names a page for the whole life of a device's inspector server: numbers are never given twice.
struct TargetIdentifier {
    std::uint64_t connection = 0;
    std::uint64_t target = 0;

    auto operator<=>(const TargetIdentifier&) const = default;
};

/// One page that can be inspected, as the device's inspector server tells it.
struct InspectableTarget {
    TargetIdentifier identifier;
    /// The document's title; may be empty.
    std::string name;
    std::string url;

    bool operator==(const InspectableTarget&) const = default;
};

/// In the order of opening: a server counts its targets upwards.
using InspectableTargets = std::vector<InspectableTarget>;

} // namespace corvanta::lab
