// SPDX-License-Identifier: MIT
// What an earlier or a later version, or anybody, left in the preferences as lists of locations.
#include "Input.h"
#include "MemoryPreferencesStore.h"
#include "VirtualClock.h"
#include "locations/LocationRepository.h"

using namespace corvanta;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    testing::MemoryPreferencesStore store;
    testing::VirtualClock clock;
    const QString favorites = QStringLiteral("favorites");
    const QString recents = QStringLiteral("recents");
    store.setData(favorites, fuzz::inputBytes(data, size));
    store.setData(recents, fuzz::inputBytes(data, size));
    LocationRepository repository(store, favorites, recents, 10, clock);
    const auto count = repository.loadFavorites().size();
    fuzz::require(repository.addFavorite(QStringLiteral("here"), {1, 2}).size() == count + 1,
                  "a favourite is added to whatever could be read");
    fuzz::require(repository.loadFavorites().size() == count + 1, "what was written can be read");
    fuzz::require(repository.recordRecent(QStringLiteral("here"), {1, 2}).size() <= 10, "recents are bounded");
    return 0;
}
