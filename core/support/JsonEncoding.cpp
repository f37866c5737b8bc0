// SPDX-License-Identifier: MIT
#include "support/JsonEncoding.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace corvanta {

QString JsonEncodingError::errorDescription() const {
    return QStringLiteral("A number that is not finite cannot be stored.");
}

QJsonValue encodeJson(double value) {
    if (!std::isfinite(value))
        throw JsonEncodingError();
    return value;
}

QJsonValue encodeJson(Date date) {
    return encodeJson(date.secondsSinceReferenceDate);
}

QJsonValue encodeJson(const QUuid& uuid) {
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

QByteArray jsonDocument(const QJsonValue& value) {
    const QJsonDocument document = value.isArray() ? QJsonDocument(value.toArray()) : QJsonDocument(value.toObject());
    return document.toJson(QJsonDocument::Compact);
}

} // namespace corvanta
