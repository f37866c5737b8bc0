// SPDX-License-Identifier: MIT
#include "support/LocalizedError.h"

namespace corvanta {

LocalizedError::LocalizedError(const LocalizedError& other) noexcept
    : std::exception(other) {}

LocalizedError& LocalizedError::operator=(const LocalizedError& other) noexcept {
    std::exception::operator=(other);
    return *this;
}

std::optional<QString> LocalizedError::recoverySuggestion() const {
    return std::nullopt;
}

const char* LocalizedError::what() const noexcept {
    try {
        m_what = errorDescription().toUtf8();
        return m_what.constData();
    } catch (...) {
        return "error";
    }
}

ErrorTexts errorTexts(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const LocalizedError& localized) {
        return {localized.errorDescription(), localized.recoverySuggestion()};
    } catch (const std::exception& other) {
        return {QString::fromUtf8(other.what()), std::nullopt};
    } catch (...) {
        return {QStringLiteral("The operation couldn’t be completed."), std::nullopt};
    }
}

} // namespace corvanta
