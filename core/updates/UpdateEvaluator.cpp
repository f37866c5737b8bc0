// SPDX-License-Identifier: MIT
#include "updates/UpdateEvaluator.h"

#include "updates/DecimalInteger.h"

#include <algorithm>

namespace corvanta::UpdateEvaluator {

namespace {

constexpr qsizetype versionPieces = 3;
constexpr qsizetype checksumDigits = 64;

bool isVersion(QStringView text) {
    const auto pieces = text.split(u'.', Qt::KeepEmptyParts);
    return pieces.size() == versionPieces &&
           std::ranges::all_of(pieces, [](QStringView piece) { return decimalInteger(piece).has_value(); });
}

bool isChecksum(const QString& text) {
    // Only ASCII passes, so that counting code units is counting characters.
    return text.size() == checksumDigits && std::ranges::all_of(text.toLower(), [](QChar character) {
               return QStringView(u"0123456789abcdef").contains(character);
           });
}

} // namespace

void validate(const UpdateManifest& manifest) {
    using Case = UpdateManifestError::Case;
    if (!isVersion(manifest.version))
        throw UpdateManifestError(Case::invalidVersion);
    if (manifest.build < 1)
        throw UpdateManifestError(Case::invalidBuild);
    if (manifest.downloadURL.scheme().value_or(QString()).toLower() != u"https")
        throw UpdateManifestError(Case::insecureDownloadURL);
    if (!isChecksum(manifest.sha256))
        throw UpdateManifestError(Case::invalidChecksum);
}

UpdateDecision decision(const UpdateManifest& manifest, std::int64_t installedBuild) {
    validate(manifest);
    return manifest.build > installedBuild ? UpdateDecision::updateAvailable(manifest) : UpdateDecision::upToDate();
}

} // namespace corvanta::UpdateEvaluator
