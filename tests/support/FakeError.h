// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"

#include <utility>

namespace corvanta::testing {

/// An error with texts of the test's own.
class FakeError final : public LocalizedError {
public:
    explicit FakeError(QString description, std::optional<QString> suggestion = std::nullopt)
        : m_description(std::move(description))
        , m_suggestion(std::move(suggestion)) {}

    [[nodiscard]] QString errorDescription() const override { return m_description; }

    [[nodiscard]] std::optional<QString> recoverySuggestion() const override { return m_suggestion; }

private:
    QString m_description;
    std::optional<QString> m_suggestion;
};

} // namespace corvanta::testing
