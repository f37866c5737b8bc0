// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

#include <array>
#include <optional>

namespace corvanta {

/// What the workspace needs of its host, in the order in which it is shown.
enum class SetupRequirementID {
    appleSilicon,
    macOS,
    xcode,
    simctl,
    iosRuntime,
    accessibility,
    safariDeveloperFeatures,
};

inline constexpr std::array allSetupRequirementIDs{
    SetupRequirementID::appleSilicon,
    SetupRequirementID::macOS,
    SetupRequirementID::xcode,
    SetupRequirementID::simctl,
    SetupRequirementID::iosRuntime,
    SetupRequirementID::accessibility,
    SetupRequirementID::safariDeveloperFeatures,
};

/// The enumerator's own name, which is also its identity.
[[nodiscard]] QString rawValue(SetupRequirementID id);

/// The requirement with exactly this raw value, or nothing.
[[nodiscard]] std::optional<SetupRequirementID> setupRequirementIDFromRawValue(QStringView rawValue);

enum class SetupCheckState {
    passed,
    failed,
    /// It cannot be judged yet because an earlier requirement failed.
    blocked,
};

/// What the user may do about a row.
enum class SetupRecoveryAction {
    none,
    openSoftwareUpdate,
    openXcodeDownload,
    openXcode,
    requestAccessibility,
    openSafari,
};

/// One row of the setup list.
struct SetupCheck {
    SetupRequirementID id;
    QString title;
    QString detail;
    SetupCheckState state;
    SetupRecoveryAction recoveryAction;

    bool operator==(const SetupCheck&) const = default;
};

} // namespace corvanta
