// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"

#include <utility>
#include <variant>

namespace corvanta {

/// Why a typed page address was refused.
class URLNormalizationError final : public LocalizedError {
public:
    struct UnsupportedScheme {
        /// In lower case.
        QString scheme;

        bool operator==(const UnsupportedScheme&) const = default;
    };

    struct Invalid {
        /// The typed text without surrounding white space.
        QString input;

        bool operator==(const Invalid&) const = default;
    };

    struct Empty {
        bool operator==(const Empty&) const = default;
    };

    using Case = std::variant<UnsupportedScheme, Invalid, Empty>;

    [[nodiscard]] static URLNormalizationError unsupportedScheme(QString scheme);
    [[nodiscard]] static URLNormalizationError invalid(QString input);
    [[nodiscard]] static URLNormalizationError empty();

    [[nodiscard]] const Case& value() const { return m_case; }

    [[nodiscard]] QString errorDescription() const override;
    [[nodiscard]] std::optional<QString> recoverySuggestion() const override;

    bool operator==(const URLNormalizationError& other) const { return m_case == other.m_case; }

private:
    explicit URLNormalizationError(Case value)
        : m_case(std::move(value)) {}

    Case m_case;
};

} // namespace corvanta
