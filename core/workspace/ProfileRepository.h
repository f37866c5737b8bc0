// SPDX-License-Identifier: MIT
#pragma once

#include "support/Clock.h"
#include "support/PreferencesStore.h"
#include "workspace/WorkspaceProfile.h"

namespace corvanta {

/// Keeps the workspace profile as one JSON document in the preferences.
class ProfileRepository {
public:
    /// The store and the clock must outlive the repository.
    ProfileRepository(PreferencesStore& defaults, QString key, const Clock& clock);

    /// The stored profile, or a fresh one when there is none that can be read.
    [[nodiscard]] WorkspaceProfile load() const;

    /// Replaces the stored profile; writes nothing when a number in it is not finite.
    void save(const WorkspaceProfile& profile);

private:
    PreferencesStore& m_defaults;
    QString m_key;
    const Clock& m_clock;
};

} // namespace corvanta
