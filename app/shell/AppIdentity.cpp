// SPDX-License-Identifier: MIT
#include "shell/AppIdentity.h"

#include <QUrl>
#include <QUrlQuery>

namespace corvanta::AppIdentity {

using namespace Qt::Literals::StringLiterals;

namespace {

QString named(const QString& value, const QString& substitute) {
    return value.isEmpty() ? substitute : value;
}

QString namedVersion(const QString& value) {
    return named(value, u"Development"_s);
}

QString namedBuildNumber(const QString& value) {
    return named(value, u"Local"_s);
}

} // namespace

QString version() {
    return namedVersion(QStringLiteral(CORVANTA_VERSION));
}

QString buildNumber() {
    return namedBuildNumber(QStringLiteral(CORVANTA_BUILD_NUMBER));
}

QString versionLine() {
    return versionLine(version(), buildNumber());
}

QString versionLine(const QString& version, const QString& buildNumber) {
    return u"Corvanta "_s + namedVersion(version) + u" ("_s + namedBuildNumber(buildNumber) + u')';
}

// The build refuses addresses that do not begin with https:// and a host.

URL websiteURL() {
    return URL::parse(QStringLiteral(CORVANTA_WEBSITE_URL)).value_or(URL());
}

URL updateManifestURL() {
    return URL::parse(QStringLiteral(CORVANTA_UPDATE_MANIFEST_URL)).value_or(URL());
}

std::optional<URL> supportEmailURL() {
    return supportEmailURL(QStringLiteral(CORVANTA_SUPPORT_ADDRESS));
}

std::optional<URL> supportEmailURL(const QString& address) {
    if (address.isEmpty())
        return std::nullopt;
    QUrlQuery query;
    query.addQueryItem(u"subject"_s, u"Corvanta Support"_s);
    QUrl url;
    url.setScheme(u"mailto"_s);
    url.setPath(address, QUrl::DecodedMode);
    url.setQuery(query);
    if (!url.isValid())
        return std::nullopt;
    return URL::parse(url.toString(QUrl::FullyEncoded));
}

} // namespace corvanta::AppIdentity
