// SPDX-License-Identifier: MIT
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace corvanta::lab {

/// Names a target for the whole life of a device's inspector server: numbers are never given twice.
struct TargetIdentifier {
    std::uint64_t connection = 0;
    std::uint64_t target = 0;

    auto operator<=>(const TargetIdentifier&) const = default;
};

/// What the Develop menu tells apart.
enum class TargetKind {
    page,
    /// The background page or the pop-up of a web extension.
    extensionPage,
    serviceWorker,
    /// A JavaScript context of an app, without any page.
    javaScriptContext,
};

/// Something that can be inspected, as the device's inspector server tells it.
struct InspectableTarget {
    TargetIdentifier identifier;
    /// The document's title, or the name that an app has given its context; may be empty.
    std::string name;
    /// A service worker's is that of its scope; a context has none.
    std::string url;
    TargetKind kind = TargetKind::page;

    bool operator==(const InspectableTarget&) const = default;
};

/// In the order of opening: a server counts its targets upwards.
using InspectableTargets = std::vector<InspectableTarget>;

} // namespace corvanta::lab
