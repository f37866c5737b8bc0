// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"

#include <cstddef>
#include <functional>

namespace corvanta {

/// The rule that an update manifest breaks.
class UpdateManifestError final : public LocalizedError {
public:
    enum class Case { invalidVersion, invalidBuild, insecureDownloadURL, invalidChecksum };

    explicit UpdateManifestError(Case value)
        : m_case(value) {}

    [[nodiscard]] Case value() const { return m_case; }

    [[nodiscard]] QString errorDescription() const override;

    bool operator==(const UpdateManifestError& other) const { return m_case == other.m_case; }

private:
    Case m_case;
};

} // namespace corvanta

template<>
struct std::hash<corvanta::UpdateManifestError> {
    std::size_t operator()(const corvanta::UpdateManifestError& error) const noexcept {
        return std::hash<corvanta::UpdateManifestError::Case>()(error.value());
    }
};
