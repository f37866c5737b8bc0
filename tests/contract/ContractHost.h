// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"
#include "Desktop.h"
#include "support/PreferencesStore.h"

#include <QString>

#include <memory>

namespace corvanta::testing {

/// One implementation of the seam, and a program beside it to read and drive: "Fixture Window", with the menus "File"
/// and "Develop". The latter holds a device's submenu with the disabled entry "iPhone 16 Pro Simulator" and the pages
/// "localhost — first" and "localhost — second".
class ContractHost {
public:
    ContractHost() = default;
    ContractHost(const ContractHost&) = delete;
    ContractHost& operator=(const ContractHost&) = delete;
    virtual ~ContractHost() = default;

    [[nodiscard]] virtual AccessibilityClient& accessibility() = 0;
    [[nodiscard]] virtual Desktop& desktop() = 0;
    [[nodiscard]] virtual PreferencesStore& preferences() = 0;

    /// Of the program.
    [[nodiscard]] virtual QString bundleIdentifier() const = 0;

    /// Whether the program has reported that its menu's entry of that title was chosen.
    [[nodiscard]] virtual bool wasPressed(const QString& title) = 0;
};

/// The one that the test program is linked with.
[[nodiscard]] std::unique_ptr<ContractHost> makeContractHost();

} // namespace corvanta::testing
