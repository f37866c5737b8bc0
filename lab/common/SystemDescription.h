// SPDX-License-Identifier: MIT
#pragma once

#include "DeviceCatalogue.h"

#include <QByteArray>
#include <QString>

#include <optional>
#include <stdexcept>
#include <vector>

namespace corvanta::lab {

/// Says what is wrong with a description of the system, for a person to read.
class SystemDescriptionError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// What the lab says of the system it plays: `system.json` in the home folder, which a user may edit.
struct SystemDescription {
    QString macOS;
    /// Version of the developer tools; absent when they are not installed.
    std::optional<QString> xcode;
    QString xcodeBuild;
    bool commandLineTools = true;
    /// The installed runtimes, in the catalogue's order. May be none.
    std::vector<Runtime> runtimes;

    [[nodiscard]] bool hasDeveloperTools() const { return xcode.has_value() && commandLineTools; }

    /// The installed runtime with that identifier, name or version, as `lab::findRuntime()` takes them; null when there
    /// is none. Lives as long as this object.
    [[nodiscard]] const Runtime* findRuntime(const QString& identifierOrName) const;

    /// Reads one document. A missing value is the shipped one, `"xcode": null` means none.
    ///
    /// Throws SystemDescriptionError, which names the line or the value, for text that is no JSON object, a value of
    /// another type than expected, and a runtime that the catalogue does not have.
    [[nodiscard]] static SystemDescription fromJson(const QByteArray& json);

    /// Reads the user's file. Creates it from the file shipped beside the programs when it is not there.
    ///
    /// Throws SystemDescriptionError, which begins with the file's path, when it cannot be read or understood.
    [[nodiscard]] static SystemDescription load();

    bool operator==(const SystemDescription&) const = default;
};

} // namespace corvanta::lab
