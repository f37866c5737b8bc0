// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringView>

#include <optional>

namespace corvanta {

/// A web address that keeps its case and spelling.
///
/// Parsed by RFC 3986, with the leniency that people expect of an address field: characters that RFC 3986 forbids in
/// the user, path, query and fragment are percent-encoded as UTF-8 (a stray `%` among them), a non-ASCII host becomes
/// its IDNA form, and everything legal stays as typed. Nothing else is rewritten: no case is changed, no slash is
/// added, no port is dropped.
class URL {
public:
    /// The parts of `text`, or nothing when it cannot be parsed: a space or another forbidden character in the host,
    /// unbalanced brackets, a port that is not decimal digits.
    [[nodiscard]] static std::optional<URL> parse(QStringView text);

    /// The whole address, as it is handed to tools and stored.
    [[nodiscard]] QString absoluteString() const;

    /// As typed, without the colon; nothing in a relative reference.
    [[nodiscard]] std::optional<QString> scheme() const;

    /// Without brackets; empty where the authority is empty, nothing where there is no authority.
    [[nodiscard]] std::optional<QString> host() const;

    /// Percent-decoded; empty where there is none. A trailing slash is kept.
    [[nodiscard]] QString path() const;

    bool operator==(const URL&) const = default;

private:
    std::optional<QString> m_scheme;
    std::optional<QString> m_host;
    QString m_path;
    QString m_absoluteString;
};

} // namespace corvanta
