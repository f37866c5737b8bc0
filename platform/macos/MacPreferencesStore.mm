// SPDX-License-Identifier: MIT
#include "MacPreferencesStore.h"

#include "NativeValues.h"

#import <Foundation/Foundation.h>

namespace corvanta {

namespace {

class MacPreferencesStore final : public PreferencesStore {
public:
    [[nodiscard]] std::optional<QByteArray> data(const QString& key) const override {
        NSData* const data = [m_defaults dataForKey:nativeText(key)];
        if (data == nil)
            return std::nullopt;
        return bytesOf(data);
    }

    void setData(const QString& key, const QByteArray& value) override {
        [m_defaults setObject:nativeData(value) forKey:nativeText(key)];
    }

private:
    NSUserDefaults* const m_defaults = NSUserDefaults.standardUserDefaults;
};

} // namespace

std::unique_ptr<PreferencesStore> makeMacPreferencesStore() {
    return std::make_unique<MacPreferencesStore>();
}

} // namespace corvanta
