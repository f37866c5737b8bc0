// SPDX-License-Identifier: MIT
#include "support/JsonDecoder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QJsonParseError>

#include <algorithm>
#include <cmath>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype uuidLength = 36;

QString named(const QString& keyPath) {
    return keyPath.isEmpty() ? u"The document"_s : u"“%1”"_s.arg(keyPath);
}

struct Description {
    QString operator()(const JsonDecodingError::Malformed& error) const {
        return u"The data is not valid JSON: %1."_s.arg(error.detail);
    }

    QString operator()(const JsonDecodingError::KeyNotFound& error) const {
        return u"The key “%1” is missing from the data."_s.arg(error.keyPath);
    }

    QString operator()(const JsonDecodingError::TypeMismatch& error) const {
        return u"%1 is not %2."_s.arg(named(error.keyPath), error.expected);
    }
};

bool isUUIDCharacter(QChar character, qsizetype index) {
    const bool isDash = index == 8 || index == 13 || index == 18 || index == 23;
    const char16_t unit = character.unicode();
    const bool isHexDigit =
        (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'f') || (unit >= u'A' && unit <= u'F');
    return isDash ? unit == u'-' : isHexDigit;
}

} // namespace

JsonDecodingError JsonDecodingError::malformed(QString detail) {
    return JsonDecodingError(Malformed{std::move(detail)});
}

JsonDecodingError JsonDecodingError::keyNotFound(QString keyPath) {
    return JsonDecodingError(KeyNotFound{std::move(keyPath)});
}

JsonDecodingError JsonDecodingError::typeMismatch(QString keyPath, QString expected) {
    return JsonDecodingError(TypeMismatch{std::move(keyPath), std::move(expected)});
}

QString JsonDecodingError::errorDescription() const {
    return std::visit(Description{}, m_case);
}

JsonDecoder JsonDecoder::parse(const QByteArray& bytes) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        throw JsonDecodingError::malformed(u"%1 at byte %2"_s.arg(error.errorString()).arg(error.offset));
    if (document.isArray())
        return JsonDecoder(document.array());
    return JsonDecoder(document.object());
}

JsonDecoder::JsonDecoder(QJsonValue value, QString keyPath)
    : m_value(std::move(value))
    , m_keyPath(std::move(keyPath)) {}

JsonDecoder JsonDecoder::member(const QString& key) const {
    if (!m_value.isObject())
        throw mismatch(u"an object"_s);
    const QString path = m_keyPath.isEmpty() ? key : m_keyPath + u'.' + key;
    QJsonValue value = m_value[key];
    if (value.isUndefined())
        throw JsonDecodingError::keyNotFound(path);
    return JsonDecoder(std::move(value), path);
}

std::optional<JsonDecoder> JsonDecoder::optionalMember(const QString& key) const {
    if (!m_value.isObject())
        throw mismatch(u"an object"_s);
    const QJsonValue value = m_value[key];
    if (value.isUndefined() || value.isNull())
        return std::nullopt;
    return member(key);
}

std::vector<std::pair<QString, JsonDecoder>> JsonDecoder::members() const {
    if (!m_value.isObject())
        throw mismatch(u"an object"_s);
    const QStringList keys = m_value.toObject().keys();
    std::vector<std::pair<QString, JsonDecoder>> result;
    result.reserve(static_cast<std::size_t>(keys.size()));
    for (const QString& key : keys)
        result.emplace_back(key, member(key));
    return result;
}

std::vector<JsonDecoder> JsonDecoder::elements(qsizetype most) const {
    if (!m_value.isArray())
        throw mismatch(u"an array"_s);
    const QJsonArray array = m_value.toArray();
    std::vector<JsonDecoder> result;
    const qsizetype count = std::min(array.size(), most);
    result.reserve(static_cast<std::size_t>(count));
    for (qsizetype index = 0; index < count; ++index)
        result.emplace_back(array.at(index), u"%1[%2]"_s.arg(m_keyPath).arg(index));
    return result;
}

QString JsonDecoder::string() const {
    if (!m_value.isString())
        throw mismatch(u"a string"_s);
    return m_value.toString();
}

bool JsonDecoder::boolean() const {
    if (!m_value.isBool())
        throw mismatch(u"a Boolean"_s);
    return m_value.toBool();
}

double JsonDecoder::number() const {
    if (!m_value.isDouble() || !std::isfinite(m_value.toDouble()))
        throw mismatch(u"a number"_s);
    return m_value.toDouble();
}

std::int64_t JsonDecoder::integer() const {
    // The two fallbacks differ, so agreement means that the value itself is an integer.
    if (!m_value.isDouble() || m_value.toInteger(0) != m_value.toInteger(1))
        throw mismatch(u"an integer"_s);
    return m_value.toInteger();
}

Date JsonDecoder::date() const {
    return {number()};
}

QUuid JsonDecoder::uuid() const {
    const QString text = m_value.isString() ? m_value.toString() : QString();
    bool isUUID = text.size() == uuidLength;
    for (qsizetype index = 0; isUUID && index < uuidLength; ++index)
        isUUID = isUUIDCharacter(text[index], index);
    if (!isUUID)
        throw mismatch(u"a UUID"_s);
    return QUuid::fromString(text);
}

JsonDecodingError JsonDecoder::mismatch(const QString& expected) const {
    return JsonDecodingError::typeMismatch(m_keyPath, expected);
}

} // namespace corvanta
