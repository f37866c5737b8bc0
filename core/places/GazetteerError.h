// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"

#include <QString>

#include <utility>

namespace corvanta {

/// A list of places that cannot be used.
class GazetteerError final : public LocalizedError {
public:
    enum class Kind {
        /// The file is absent or cannot be read.
        unreadable,
        /// The file is there, but it is not a list of places, or not a whole one.
        damaged,
    };

    GazetteerError(Kind kind, QString detail)
        : m_kind(kind)
        , m_detail(std::move(detail)) {}

    [[nodiscard]] Kind kind() const { return m_kind; }

    /// What exactly is the matter with the file.
    [[nodiscard]] const QString& detail() const { return m_detail; }

    [[nodiscard]] QString errorDescription() const override;

    bool operator==(const GazetteerError& other) const { return m_kind == other.m_kind && m_detail == other.m_detail; }

private:
    Kind m_kind;
    QString m_detail;
};

} // namespace corvanta
