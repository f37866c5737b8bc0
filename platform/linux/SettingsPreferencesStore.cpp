// SPDX-License-Identifier: MIT
#include "SettingsPreferencesStore.h"

#include <QFile>
#include <QVariant>

namespace corvanta {

SettingsPreferencesStore::SettingsPreferencesStore(const QString& path)
    : m_settings(path, QSettings::IniFormat) {}

std::optional<QByteArray> SettingsPreferencesStore::data(const QString& key) const {
    const QVariant value = m_settings.value(key);
    if (value.metaType() != QMetaType::fromType<QByteArray>())
        return std::nullopt;
    return value.toByteArray();
}

void SettingsPreferencesStore::setData(const QString& key, const QByteArray& value) {
    m_settings.setValue(key, value);
    m_settings.sync();
    // A new file is everybody's to read; what replaces it later takes its permissions.
    QFile::setPermissions(m_settings.fileName(), QFile::ReadOwner | QFile::WriteOwner);
}

} // namespace corvanta
