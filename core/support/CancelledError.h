// SPDX-License-Identifier: MIT
#pragma once

#include <exception>

namespace corvanta {

/// Ends an operation whose task was cancelled. Not meant for a person's eyes.
class CancelledError final : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "The operation was cancelled."; }
};

} // namespace corvanta
