// SPDX-License-Identifier: MIT
#pragma once

#include "setup/SetupCheck.h"
#include "setup/SetupFacts.h"

#include <span>
#include <vector>

namespace corvanta {

namespace SetupCheckEvaluator {

/// One row for each requirement, in their order. Each row depends on the facts alone, never on another row.
[[nodiscard]] std::vector<SetupCheck> evaluate(const SetupFacts& facts);

} // namespace SetupCheckEvaluator

/// Whether there are rows and every one of them passed.
[[nodiscard]] bool allRequirementsSatisfied(std::span<const SetupCheck> checks);

} // namespace corvanta
