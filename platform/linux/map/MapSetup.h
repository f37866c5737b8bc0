// SPDX-License-Identifier: MIT
#pragma once

#include "MapTileOptions.h"

#include <QString>

namespace corvanta {

class PreferencesStore;

/// Where this build and this installation find what the map needs.
namespace MapSetup {

/// The base map beside the program, in the build tree as well as installed. It need not be there.
[[nodiscard]] QString baseMapFile();

/// The tiles that the environment names in CORVANTA_MAP_TILES_URL, or else the preference "mapTilesURL", or else the
/// build; an empty text in any of them stands for no tiles.
[[nodiscard]] MapTileOptions tileOptions(const PreferencesStore& preferences);

} // namespace MapSetup

} // namespace corvanta
