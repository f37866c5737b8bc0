// SPDX-License-Identifier: MIT
#pragma once

#include "updates/UpdateManifest.h"

#include <utility>
#include <variant>

namespace corvanta {

/// What a valid manifest means for the running program.
class UpdateDecision {
public:
    /// There is a newer build.
    struct UpdateAvailable {
        UpdateManifest manifest;

        bool operator==(const UpdateAvailable&) const = default;
    };

    /// The running build is the newest, or newer still.
    struct UpToDate {
        bool operator==(const UpToDate&) const = default;
    };

    using Case = std::variant<UpdateAvailable, UpToDate>;

    [[nodiscard]] static UpdateDecision updateAvailable(UpdateManifest manifest) {
        return UpdateDecision(UpdateAvailable{std::move(manifest)});
    }

    [[nodiscard]] static UpdateDecision upToDate() { return UpdateDecision(UpToDate{}); }

    [[nodiscard]] const Case& value() const { return m_case; }

    bool operator==(const UpdateDecision&) const = default;

private:
    explicit UpdateDecision(Case value)
        : m_case(std::move(value)) {}

    Case m_case;
};

} // namespace corvanta
