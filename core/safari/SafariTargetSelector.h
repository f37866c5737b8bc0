// SPDX-License-Identifier: MIT
#pragma once

#include "safari/SafariTargetDecision.h"
#include "support/URL.h"

#include <optional>
#include <vector>

namespace corvanta::SafariTargetSelector {

/// Which page's inspector to open, given the pages seen at the previous look and those just read.
///
/// At the first look (`previous` is empty) every page is a candidate; later only those with a new identity, and only
/// when there are more pages than before. One candidate is taken; among several the only one whose title mentions
/// `requestedURL`, its host or its path; otherwise all candidates are offered.
[[nodiscard]] SafariTargetDecision decide(const std::vector<SafariTarget>& previous,
                                          const std::vector<SafariTarget>& current,
                                          const std::optional<URL>& requestedURL);

} // namespace corvanta::SafariTargetSelector
