// SPDX-License-Identifier: MIT
#pragma once

#include "GazetteerLabels.h"
#include "MapTileOptions.h"
#include "MapView.h"
#include "map/BaseMap.h"
#include "places/SharedGazetteer.h"

#include <QString>

#include <memory>

namespace corvanta {

class PreferencesStore;

/// Where this build and this installation find what the map needs.
namespace MapSetup {

/// The tiles that the environment names in CORVANTA_MAP_TILES_URL, or else the preference "mapTilesURL", or else the
/// build; an empty text in any of them stands for no tiles. Whoever names them says whose they are as well.
[[nodiscard]] MapTileOptions tileOptions(const PreferencesStore& preferences);

} // namespace MapSetup

/// The data that all maps share, opened when the first map asks for it. What cannot be read is left out: the map has
/// less to show then.
class MapData {
public:
    /// With a gazetteer of their own.
    MapData();
    explicit MapData(std::shared_ptr<SharedGazetteer> gazetteer);

    [[nodiscard]] MapSources sources(const MapTileOptions& tiles);

private:
    bool m_isOpen = false;
    std::unique_ptr<BaseMap> m_baseMap;
    std::shared_ptr<SharedGazetteer> m_gazetteer;
    std::unique_ptr<GazetteerLabels> m_labels;
};

} // namespace corvanta
