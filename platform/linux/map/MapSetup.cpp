// SPDX-License-Identifier: MIT
#include "MapSetup.h"

#include "DataFolder.h"
#include "support/PreferencesStore.h"

#include <QCoreApplication>
#include <QStandardPaths>

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr auto variable = "CORVANTA_MAP_TILES_URL";

/// An address of tiles, and what goes with it and with no other.
struct TileSource {
    QString url;
    QString attributionText;
    QString attributionAddress;
};

TileSource tileSource(const PreferencesStore& preferences) {
    if (qEnvironmentVariableIsSet(variable)) {
        return {qEnvironmentVariable(variable), qEnvironmentVariable("CORVANTA_MAP_TILES_ATTRIBUTION"),
                qEnvironmentVariable("CORVANTA_MAP_TILES_ATTRIBUTION_URL")};
    }
    const auto chosen = [&preferences](const QString& key) { return preferences.data(key); };
    if (const auto url = chosen(u"mapTilesURL"_s)) {
        return {QString::fromUtf8(*url), QString::fromUtf8(chosen(u"mapTilesAttribution"_s).value_or(QByteArray())),
                QString::fromUtf8(chosen(u"mapTilesAttributionURL"_s).value_or(QByteArray()))};
    }
    return {QStringLiteral(CORVANTA_MAP_TILES_URL), QStringLiteral(CORVANTA_MAP_TILES_ATTRIBUTION),
            QStringLiteral(CORVANTA_MAP_TILES_ATTRIBUTION_URL)};
}

} // namespace

MapTileOptions MapSetup::tileOptions(const PreferencesStore& preferences) {
    MapTileOptions options;
    const TileSource source = tileSource(preferences);
    options.urlTemplate = source.url.trimmed();
    options.attributionText = source.attributionText.trimmed();
    options.attributionAddress = source.attributionAddress.trimmed();
    options.userAgent = u"%1/%2 (map of the control window)"_s.arg(QCoreApplication::applicationName(),
                                                                   QCoreApplication::applicationVersion());
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::CacheLocation);
    options.cacheFolder = caches.isEmpty() ? QString() : caches + u"/map-tiles"_s;
    return options;
}

MapData::MapData()
    : MapData(std::make_shared<SharedGazetteer>(dataFile(u"places/places.gazetteer"_s))) {}

MapData::MapData(std::shared_ptr<SharedGazetteer> gazetteer)
    : m_gazetteer(std::move(gazetteer)) {}

MapSources MapData::sources(const MapTileOptions& tiles) {
    if (!std::exchange(m_isOpen, true)) {
        m_baseMap = BaseMap::open(dataFile(u"basemap/world.basemap"_s));
        if (const Gazetteer* const gazetteer = m_gazetteer->get())
            m_labels = std::make_unique<GazetteerLabels>(*gazetteer);
    }
    return {.baseMap = m_baseMap.get(), .labels = m_labels.get(), .tiles = tiles};
}

} // namespace corvanta
