// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <vector>

namespace corvanta {

/// An inspectable page of a device, as Safari's Develop menu lists it.
struct SafariTarget {
    /// The identity of the menu node that it was taken from.
    QString id;
    /// The node's title without surrounding white space, its case kept.
    QString title;
    /// Child indexes from the device's node down to the page's item.
    std::vector<int> menuPath;

    bool operator==(const SafariTarget&) const = default;
};

} // namespace corvanta
