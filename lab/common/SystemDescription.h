// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace corvanta::lab {

/// What the lab says of the system it plays: `system.json` in the home folder, which a user may edit.
struct SystemDescription {
    QString macOS;
    /// Version of the developer tools; absent when they are not installed.
    std::optional<QString> xcode;
    QString xcodeBuild;
    bool commandLineTools = true;

    [[nodiscard]] bool hasDeveloperTools() const { return xcode.has_value() && commandLineTools; }

    /// Reads one document. A missing or mistyped value leaves the shipped one; "xcode": null means none.
    [[nodiscard]] static SystemDescription fromJson(const QByteArray& json);

    /// Reads the user's file. Creates it from the file shipped beside the programs when it is not there.
    [[nodiscard]] static SystemDescription load();

    bool operator==(const SystemDescription&) const = default;
};

} // namespace corvanta::lab
