// SPDX-License-Identifier: MIT
#pragma once

#include "locations/StoredLocation.h"
#include "support/Clock.h"
#include "support/PreferencesStore.h"

#include <vector>

namespace corvanta {

/// Keeps the favourite and the recent locations, each list as one JSON document in the preferences, newest first.
///
/// Nothing is held in memory: each operation reads the stored list and writes it back. None fails: data that cannot be
/// read is an empty list, and a list that cannot be encoded is returned but not stored.
class LocationRepository {
public:
    /// The store and the clock must outlive the repository.
    LocationRepository(PreferencesStore& defaults, QString favoritesKey, QString recentsKey, int maxRecents,
                       Clock& clock);

    [[nodiscard]] std::vector<StoredLocation> loadFavorites() const;
    [[nodiscard]] std::vector<StoredLocation> loadRecents() const;

    /// Puts a new entry in front, whatever is there already, and returns the list.
    std::vector<StoredLocation> addFavorite(const QString& name, const Coordinate& coordinate);

    /// Removes the entries with that identity and returns the list.
    std::vector<StoredLocation> deleteFavorite(const QUuid& id);

    /// Puts a new entry in front, in place of those within 1e-6 degrees of it, keeps `maxRecents` and returns the list.
    std::vector<StoredLocation> recordRecent(const QString& name, const Coordinate& coordinate);

private:
    [[nodiscard]] std::vector<StoredLocation> load(const QString& key) const;
    void save(const std::vector<StoredLocation>& list, const QString& key);
    [[nodiscard]] StoredLocation makeLocation(const QString& name, const Coordinate& coordinate);

    PreferencesStore& m_defaults;
    QString m_favoritesKey;
    QString m_recentsKey;
    int m_maxRecents;
    Clock& m_clock;
};

} // namespace corvanta
