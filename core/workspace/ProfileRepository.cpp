// SPDX-License-Identifier: MIT
#include "workspace/ProfileRepository.h"

#include "support/JsonEncoding.h"

#include <utility>

namespace corvanta {

ProfileRepository::ProfileRepository(PreferencesStore& defaults, QString key, const Clock& clock)
    : m_defaults(defaults)
    , m_key(std::move(key))
    , m_clock(clock) {}

WorkspaceProfile ProfileRepository::load() const {
    if (const auto data = m_defaults.data(m_key)) {
        try {
            return decodeWorkspaceProfile(JsonDecoder::parse(*data));
        } catch (const JsonDecodingError&) {
            // Unreadable data counts as none and stays until the next save replaces it.
        }
    }
    return WorkspaceProfile::fresh(m_clock.wallClockNow());
}

void ProfileRepository::save(const WorkspaceProfile& profile) {
    try {
        m_defaults.setData(m_key, jsonDocument(encodeJson(profile)));
    } catch (const JsonEncodingError&) {
        // What cannot be stored leaves the stored profile as it is.
    }
}

} // namespace corvanta
