// SPDX-License-Identifier: MIT
#pragma once

#include "support/LocalizedError.h"

#include <utility>

namespace corvanta {

/// A failure that the system has described in a text of its own.
class NativeError final : public LocalizedError {
public:
    explicit NativeError(QString description)
        : m_description(std::move(description)) {}

    [[nodiscard]] QString errorDescription() const override { return m_description; }

private:
    QString m_description;
};

} // namespace corvanta
