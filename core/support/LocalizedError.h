// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <exception>
#include <optional>

namespace corvanta {

/// An error that a person will read.
///
/// Each domain derives one class from it. The two texts are interface: they are shown as they stand.
class LocalizedError : public std::exception {
public:
    LocalizedError() = default;
    LocalizedError(const LocalizedError& other) noexcept;
    LocalizedError& operator=(const LocalizedError& other) noexcept;
    ~LocalizedError() override = default;

    /// What went wrong, one or more full sentences.
    [[nodiscard]] virtual QString errorDescription() const = 0;

    /// What to do about it, or nothing when there is nothing to suggest.
    [[nodiscard]] virtual std::optional<QString> recoverySuggestion() const;

    /// The description as UTF-8; valid until the next call on this object.
    [[nodiscard]] const char* what() const noexcept override;

private:
    mutable QByteArray m_what;
};

/// The pair of texts under which any error is shown to a person.
struct ErrorTexts {
    QString description;
    std::optional<QString> recoverySuggestion;

    bool operator==(const ErrorTexts&) const = default;
};

/// The texts of `error`: its own when it is a LocalizedError, otherwise what it says of itself and no suggestion.
[[nodiscard]] ErrorTexts errorTexts(const std::exception_ptr& error);

} // namespace corvanta
