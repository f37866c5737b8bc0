// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace corvanta::lab {

/// A booted or booting device as its process describes itself on the session bus.
struct LabDevice {
    /// The device process's well-known bus name; names the device here.
    std::string busName;
    std::string name;
    std::string runtimeName;
    std::string state;
    /// "127.0.0.1:PORT".
    std::string inspectorAddress;

    /// "iPhone 16 Pro – iOS 18.2", the title of its windows and of its menu item.
    [[nodiscard]] std::string title() const;

    /// The device's identifier, as its bus name has it.
    [[nodiscard]] std::string identifier() const { return identifierOf(busName); }

    [[nodiscard]] static std::string identifierOf(const std::string& busName);
    [[nodiscard]] static std::string busNameOf(const std::string& identifier);

    [[nodiscard]] bool isBooted() const { return state == "Booted"; }

    bool operator==(const LabDevice&) const = default;
};

/// The Develop menu's order: by name as people sort names (digits by their number, letters without regard to case),
/// the newest runtime first where names are alike, then by bus name.
[[nodiscard]] bool comesBefore(const LabDevice& left, const LabDevice& right);

} // namespace corvanta::lab
