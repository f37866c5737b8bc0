// SPDX-License-Identifier: MIT
#pragma once

#include "InspectableTarget.h"

#include <string>

namespace corvanta::lab {

/// How the Develop menu names the page at `url`: "host — last path part", the host alone when the path has no parts,
/// the file name or the whole address when there is no host, "about:blank" for an empty page. Always one line of valid
/// UTF-8, never empty; escapes in the path part are resolved where that gives readable text.
[[nodiscard]] std::string pageTitle(const std::string& url);

/// What the Develop menu calls the target, and its inspector's window too.
[[nodiscard]] std::string targetTitle(const InspectableTarget& target);

} // namespace corvanta::lab
