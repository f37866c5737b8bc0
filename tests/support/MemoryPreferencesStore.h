// SPDX-License-Identifier: MIT
#pragma once

#include "support/PreferencesStore.h"

#include <map>
#include <vector>

namespace corvanta::testing {

/// Preferences in memory that remember which keys were written.
class MemoryPreferencesStore final : public PreferencesStore {
public:
    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const override {
        const auto found = m_values.find(key);
        return found == m_values.end() ? std::nullopt : std::optional(found->second);
    }

    void setData(const QString& key, const QByteArray& value) override {
        if (isReadOnly)
            return;
        m_values[key] = value;
        m_writtenKeys.push_back(key);
    }

    void forgetWrittenKeys() { m_writtenKeys.clear(); }

    /// Whether writing changes nothing, and tells nobody.
    bool isReadOnly = false;

    /// The key of each write, in order.
    [[nodiscard]] const std::vector<QString>& writtenKeys() const { return m_writtenKeys; }

private:
    std::map<QString, QByteArray> m_values;
    std::vector<QString> m_writtenKeys;
};

} // namespace corvanta::testing
