// SPDX-License-Identifier: MIT
// What an earlier or a later version, or anybody, left in the preferences as the profile.
#include "Input.h"
#include "MemoryPreferencesStore.h"
#include "VirtualClock.h"
#include "workspace/ProfileRepository.h"

using namespace corvanta;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    testing::MemoryPreferencesStore store;
    testing::VirtualClock clock;
    const QString key = QStringLiteral("profile");
    store.setData(key, fuzz::inputBytes(data, size));
    ProfileRepository repository(store, key, clock);
    repository.save(repository.load());
    const WorkspaceProfile stored = repository.load();
    repository.save(stored);
    fuzz::require(repository.load() == stored, "what was written is what is read");
    return 0;
}
