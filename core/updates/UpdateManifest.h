// SPDX-License-Identifier: MIT
#pragma once

#include "support/JsonDecoder.h"
#include "support/URL.h"

#include <QJsonObject>
#include <QString>

#include <cstdint>

namespace corvanta {

/// What the maker's server says about the newest release. Nothing of it is to be trusted before
/// `UpdateEvaluator::validate` has passed it.
struct UpdateManifest {
    /// Three numbers with dots between; shown, never compared.
    QString version;
    /// The only value that is compared.
    std::int64_t build = 0;
    URL downloadURL;
    /// Free text, to be shown as it stands.
    QString releaseNotes;
    /// The digest of the download, 64 hexadecimal digits.
    QString sha256;

    bool operator==(const UpdateManifest&) const = default;
};

/// Reads the object whose keys are the field names, all of them required. Throws JsonDecodingError, also for a
/// `downloadURL` that is no URL and for a `build` with a fraction or of more than 64 bits.
[[nodiscard]] UpdateManifest decodeUpdateManifest(const JsonDecoder& decoder);

[[nodiscard]] QJsonObject encodeJson(const UpdateManifest& manifest);

} // namespace corvanta
