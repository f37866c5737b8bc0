// SPDX-License-Identifier: MIT
#pragma once

#include "AccessibilityClient.h"

#include <memory>

namespace corvanta {

class Clock;

/// The Accessibility API. A program that hangs holds a read for half a second and an action for two; after that it is
/// not asked for two seconds, and reads as absent meanwhile. `clock` outlives the client.
[[nodiscard]] std::unique_ptr<AccessibilityClient> makeMacAccessibilityClient(const Clock& clock);

} // namespace corvanta
