// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"

#include <cstdint>
#include <utility>
#include <variant>

namespace corvanta {

/// What went wrong with a simulator tool that could be started.
class SimulatorControlError final : public LocalizedError {
public:
    struct CommandFailed {
        /// The command as one line.
        QString command;
        std::int32_t status;
        /// What the tool said, without surrounding white space; may be empty.
        QString message;

        bool operator==(const CommandFailed&) const = default;
    };

    struct ParseFailed {
        /// The raw text that was to be a device list, or why it is no text.
        QString detail;

        bool operator==(const ParseFailed&) const = default;
    };

    using Case = std::variant<CommandFailed, ParseFailed>;

    [[nodiscard]] static SimulatorControlError commandFailed(QString command, std::int32_t status, QString message);
    [[nodiscard]] static SimulatorControlError parseFailed(QString detail);

    [[nodiscard]] const Case& value() const { return m_case; }

    [[nodiscard]] QString errorDescription() const override;
    [[nodiscard]] std::optional<QString> recoverySuggestion() const override;

    bool operator==(const SimulatorControlError& other) const { return m_case == other.m_case; }

private:
    explicit SimulatorControlError(Case value)
        : m_case(std::move(value)) {}

    Case m_case;
};

} // namespace corvanta
