// SPDX-License-Identifier: MIT
#pragma once

#include "support/PreferencesStore.h"

#include <memory>

namespace corvanta {

/// The user's defaults in the domain of this bundle's identifier: data values of a property list.
[[nodiscard]] std::unique_ptr<PreferencesStore> makeMacPreferencesStore();

} // namespace corvanta
