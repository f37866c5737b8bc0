// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"

#include <utility>
#include <variant>

namespace corvanta {

/// Why the answer of the update server did not arrive.
class UpdateTransferError final : public LocalizedError {
public:
    /// The network's own reason.
    struct Failed {
        QString description;

        bool operator==(const Failed&) const = default;
    };

    /// No data came for as long as one waits.
    struct TimedOut {
        bool operator==(const TimedOut&) const = default;
    };

    /// More than a manifest can be.
    struct TooLarge {
        bool operator==(const TooLarge&) const = default;
    };

    using Case = std::variant<Failed, TimedOut, TooLarge>;

    [[nodiscard]] static UpdateTransferError failed(QString description) {
        return UpdateTransferError(Failed{std::move(description)});
    }

    [[nodiscard]] static UpdateTransferError timedOut() { return UpdateTransferError(TimedOut{}); }

    [[nodiscard]] static UpdateTransferError tooLarge() { return UpdateTransferError(TooLarge{}); }

    [[nodiscard]] const Case& value() const { return m_case; }

    [[nodiscard]] QString errorDescription() const override;

    bool operator==(const UpdateTransferError& other) const { return m_case == other.m_case; }

private:
    explicit UpdateTransferError(Case value)
        : m_case(std::move(value)) {}

    Case m_case;
};

} // namespace corvanta
