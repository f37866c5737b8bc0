// SPDX-License-Identifier: MIT
#pragma once

#include "support/Date.h"
#include "support/LocalizedError.h"

#include <QByteArray>
#include <QJsonValue>
#include <QUuid>

namespace corvanta {

/// A value that JSON cannot hold: a number that is not finite.
class JsonEncodingError final : public LocalizedError {
public:
    [[nodiscard]] QString errorDescription() const override;
};

/// Encoded so that reading gives the same double again. Throws JsonEncodingError for NaN and the infinities.
[[nodiscard]] QJsonValue encodeJson(double value);

/// The seconds since 2001-01-01T00:00:00Z as a number. Throws JsonEncodingError when they are not finite.
[[nodiscard]] QJsonValue encodeJson(Date date);

/// The 36-character text form, upper-case.
[[nodiscard]] QJsonValue encodeJson(const QUuid& uuid);

/// The document of an object or an array, without added white space.
[[nodiscard]] QByteArray jsonDocument(const QJsonValue& value);

} // namespace corvanta
