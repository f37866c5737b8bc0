// SPDX-License-Identifier: MIT
#include "MapSetup.h"

#include "support/PreferencesStore.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

namespace corvanta::MapSetup {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto variable = "CORVANTA_MAP_TILES_URL";

QString tilesURL(const PreferencesStore& preferences) {
    if (qEnvironmentVariableIsSet(variable))
        return qEnvironmentVariable(variable);
    if (const auto chosen = preferences.data(u"mapTilesURL"_s))
        return QString::fromUtf8(*chosen);
    return QStringLiteral(CORVANTA_MAP_TILES_URL);
}

} // namespace

QString baseMapFile() {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + u"/../share/corvanta/basemap/world.basemap"_s);
}

MapTileOptions tileOptions(const PreferencesStore& preferences) {
    MapTileOptions options;
    options.urlTemplate = tilesURL(preferences).trimmed();
    options.userAgent = u"%1/%2 (map of the control window)"_s.arg(QCoreApplication::applicationName(),
                                                                   QCoreApplication::applicationVersion());
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    options.cacheFolder = caches.isEmpty() ? QString() : caches + u"/map-tiles"_s;
    return options;
}

} // namespace corvanta::MapSetup
