// SPDX-License-Identifier: MIT
#pragma once

#include "support/URL.h"
#include "workspace/URLNormalizationError.h"

namespace corvanta::URLNormalizer {

/// The web address that a person means by `input`.
///
/// White space around it is dropped, and "http://" is put in front of a text without "://". The result has an HTTP or
/// HTTPS scheme and a host, and is otherwise spelled as typed. Throws URLNormalizationError.
[[nodiscard]] URL normalize(QStringView input);

} // namespace corvanta::URLNormalizer
