// SPDX-License-Identifier: MIT
#pragma once

#include "support/Date.h"
#include "support/LocalizedError.h"

#include <QByteArray>
#include <QJsonValue>
#include <QString>
#include <QUuid>

#include <cstdint>
#include <limits>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

namespace corvanta {

/// Bytes that are not the JSON document that was expected.
class JsonDecodingError final : public LocalizedError {
public:
    /// Not JSON at all.
    struct Malformed {
        QString detail;

        bool operator==(const Malformed&) const = default;
    };

    /// A required key is absent.
    struct KeyNotFound {
        QString keyPath;

        bool operator==(const KeyNotFound&) const = default;
    };

    /// A value of another type, null among them, or one that does not denote what it should.
    struct TypeMismatch {
        QString keyPath;
        QString expected;

        bool operator==(const TypeMismatch&) const = default;
    };

    using Case = std::variant<Malformed, KeyNotFound, TypeMismatch>;

    [[nodiscard]] static JsonDecodingError malformed(QString detail);
    [[nodiscard]] static JsonDecodingError keyNotFound(QString keyPath);
    [[nodiscard]] static JsonDecodingError typeMismatch(QString keyPath, QString expected);

    [[nodiscard]] const Case& value() const { return m_case; }

    [[nodiscard]] QString errorDescription() const override;

    bool operator==(const JsonDecodingError& other) const { return m_case == other.m_case; }

private:
    explicit JsonDecodingError(Case value)
        : m_case(std::move(value)) {}

    Case m_case;
};

/// One value of a JSON document, with the path at which it stands ("devices[0].udid"; empty for the document itself).
///
/// Every reader is exact about the type and throws JsonDecodingError otherwise. Keys that nobody asks for are ignored.
class JsonDecoder {
public:
    /// The document in `bytes` (UTF-8), an object or an array. Throws JsonDecodingError when it is not JSON.
    [[nodiscard]] static JsonDecoder parse(const QByteArray& bytes);

    /// A decoder of a value that was read already.
    explicit JsonDecoder(QJsonValue value, QString keyPath = {});

    [[nodiscard]] const QString& keyPath() const { return m_keyPath; }

    /// The member under `key`, null included. Throws when this is no object or the key is absent.
    [[nodiscard]] JsonDecoder member(const QString& key) const;

    /// The member under `key`, or nothing when it is absent or null. Throws when this is no object.
    [[nodiscard]] std::optional<JsonDecoder> optionalMember(const QString& key) const;

    /// All members of an object in the order of their keys.
    [[nodiscard]] std::vector<std::pair<QString, JsonDecoder>> members() const;

    /// The elements of an array in order: all, or only the first ones where there are more than `most`.
    [[nodiscard]] std::vector<JsonDecoder> elements(qsizetype most = std::numeric_limits<qsizetype>::max()) const;

    [[nodiscard]] QString string() const;
    [[nodiscard]] bool boolean() const;
    [[nodiscard]] double number() const;

    /// A number without a fraction that 64 bits hold.
    [[nodiscard]] std::int64_t integer() const;

    /// A number of seconds since 2001-01-01T00:00:00Z.
    [[nodiscard]] Date date() const;

    /// The 36-character text form, in either letter case.
    [[nodiscard]] QUuid uuid() const;

    /// The error for a value that has the right type but does not denote an `expected`.
    [[nodiscard]] JsonDecodingError mismatch(const QString& expected) const;

private:
    QJsonValue m_value;
    QString m_keyPath;
};

} // namespace corvanta
