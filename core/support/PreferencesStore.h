// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace corvanta {

/// Per-user data values under text keys. Neither operation reports a failure.
class PreferencesStore {
public:
    PreferencesStore() = default;
    PreferencesStore(const PreferencesStore&) = delete;
    PreferencesStore& operator=(const PreferencesStore&) = delete;
    virtual ~PreferencesStore() = default;

    /// The data value under `key`; nothing when the key is absent or holds a value of another type.
    [[nodiscard]] virtual std::optional<QByteArray> data(const QString& key) const = 0;

    /// Stores `value` under `key`, replacing what was there.
    virtual void setData(const QString& key, const QByteArray& value) = 0;
};

} // namespace corvanta
