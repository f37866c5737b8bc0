// SPDX-License-Identifier: MIT
#pragma once

#include "support/PreferencesStore.h"

#include <QSettings>

namespace corvanta {

/// Data values in the user's settings file, which is replaced as a whole, locked against a second writer, and for the
/// user alone to read.
class SettingsPreferencesStore final : public PreferencesStore {
public:
    /// The file of the organisation and application that the process has named.
    SettingsPreferencesStore() = default;

    /// A file of the caller's choice.
    explicit SettingsPreferencesStore(const QString& path);

    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const override;
    void setData(const QString& key, const QByteArray& value) override;

private:
    QSettings m_settings;
};

} // namespace corvanta
