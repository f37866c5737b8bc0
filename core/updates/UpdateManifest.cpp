// SPDX-License-Identifier: MIT
#include "updates/UpdateManifest.h"

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

URL decodeURL(const JsonDecoder& decoder) {
    const QString text = decoder.string();
    const auto url = URL::parse(text);
    // The parser takes an empty text for a relative reference that refers to nothing.
    if (!url || text.isEmpty())
        throw decoder.mismatch(u"a URL"_s);
    return *url;
}

} // namespace

UpdateManifest decodeUpdateManifest(const JsonDecoder& decoder) {
    return {
        .version = decoder.member(u"version"_s).string(),
        .build = decoder.member(u"build"_s).integer(),
        .downloadURL = decodeURL(decoder.member(u"downloadURL"_s)),
        .releaseNotes = decoder.member(u"releaseNotes"_s).string(),
        .sha256 = decoder.member(u"sha256"_s).string(),
    };
}

QJsonObject encodeJson(const UpdateManifest& manifest) {
    return {
        {u"version"_s, manifest.version},
        {u"build"_s, static_cast<qint64>(manifest.build)},
        {u"downloadURL"_s, manifest.downloadURL.absoluteString()},
        {u"releaseNotes"_s, manifest.releaseNotes},
        {u"sha256"_s, manifest.sha256},
    };
}

} // namespace corvanta
