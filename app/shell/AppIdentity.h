// SPDX-License-Identifier: MIT
#pragma once

#include "support/URL.h"

#include <QString>

#include <optional>

/// Who this program is. The values come from the build system.
namespace corvanta::AppIdentity {

/// "Development" when the build names no version.
[[nodiscard]] QString version();

/// "Local" when the build names no number.
[[nodiscard]] QString buildNumber();

/// "Corvanta 1.4 (27)": the one form in which the version is shown everywhere.
[[nodiscard]] QString versionLine();

/// The same for another version and build; an empty text counts as one that the build does not name.
[[nodiscard]] QString versionLine(const QString& version, const QString& buildNumber);

/// The product website's home page.
[[nodiscard]] URL websiteURL();

/// Where the update manifest is found.
[[nodiscard]] URL updateManifestURL();

/// A message to the support with its subject filled in; nothing when the build names no address.
[[nodiscard]] std::optional<URL> supportEmailURL();

/// The same for another address; nothing when it is empty or makes no URL.
[[nodiscard]] std::optional<URL> supportEmailURL(const QString& address);

} // namespace corvanta::AppIdentity
