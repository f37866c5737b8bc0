// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"

#include <utility>

namespace corvanta {

/// A program that could not be started at all: absent, not executable, or refused by the system.
class ProcessLaunchError final : public LocalizedError {
public:
    /// The path that was to be started and the platform's own text for what went wrong.
    ProcessLaunchError(QString executablePath, QString platformText)
        : m_executablePath(std::move(executablePath))
        , m_platformText(std::move(platformText)) {}

    [[nodiscard]] const QString& executablePath() const { return m_executablePath; }

    /// The platform's text, unchanged.
    [[nodiscard]] QString errorDescription() const override { return m_platformText; }

    bool operator==(const ProcessLaunchError& other) const {
        return m_executablePath == other.m_executablePath && m_platformText == other.m_platformText;
    }

private:
    QString m_executablePath;
    QString m_platformText;
};

} // namespace corvanta
