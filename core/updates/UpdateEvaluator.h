// SPDX-License-Identifier: MIT
#pragma once

#include "updates/UpdateDecision.h"
#include "updates/UpdateManifest.h"
#include "updates/UpdateManifestError.h"

#include <cstdint>

namespace corvanta::UpdateEvaluator {

/// Throws the UpdateManifestError of the first rule that `manifest` breaks; the rules are in the order of its cases.
///
/// The version is three numbers (see `decimalInteger`) with dots between, the build is at least 1, the download address
/// has the scheme https in either letter case, and the checksum is 64 hexadecimal digits in either letter case.
void validate(const UpdateManifest& manifest);

/// Whether `manifest` offers something newer than `installedBuild`. Only the build numbers count, so a lower one is
/// never offered. Throws UpdateManifestError.
[[nodiscard]] UpdateDecision decision(const UpdateManifest& manifest, std::int64_t installedBuild);

} // namespace corvanta::UpdateEvaluator
