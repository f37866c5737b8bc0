// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace corvanta::lab {

/// The address that typed text means: with a scheme as it is, an absolute path as a file, anything else a host, which
/// is reached by http on this machine and by https elsewhere. Empty for text that is no address.
[[nodiscard]] std::string addressFromText(const std::string& text);

} // namespace corvanta::lab
