// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"

namespace corvanta {

/// Why there is no update manifest to judge although a server answered, or could have.
class UpdateCheckError final : public LocalizedError {
public:
    enum class Case { serverUnavailable };

    /// Something else than an HTTP answer with status 200.
    [[nodiscard]] static UpdateCheckError serverUnavailable() { return UpdateCheckError(Case::serverUnavailable); }

    [[nodiscard]] Case value() const { return m_case; }

    [[nodiscard]] QString errorDescription() const override;

    bool operator==(const UpdateCheckError& other) const { return m_case == other.m_case; }

private:
    explicit UpdateCheckError(Case value)
        : m_case(value) {}

    Case m_case;
};

} // namespace corvanta
