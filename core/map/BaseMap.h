// SPDX-License-Identifier: MIT
#pragma once

#include "map/Mercator.h"

#include <QByteArray>
#include <QFile>
#include <QString>

#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace corvanta {

/// What the base map draws. The numbers are those of the file.
enum class BaseMapKind : std::uint8_t { land = 1, lake = 2, countryBorder = 3, provinceBorder = 4, river = 5 };

/// A point in units of a level, from the corner of its tile.
struct BaseMapPoint {
    std::int32_t x = 0;
    std::int32_t y = 0;

    bool operator==(const BaseMapPoint&) const = default;
};

/// One detail of the base map, cut up into square tiles.
struct BaseMapLevel {
    /// The zoom from which it is meant to be shown.
    double minimumZoom = 0;
    /// Tiles beside each other around the world.
    int tilesAcross = 1;
    /// The width of a tile in units.
    int extent = 1;
    /// Where the offsets of the tiles stand in the file.
    std::uint32_t directory = 0;
};

enum class BaseMapLabelKind : std::uint8_t { country = 1, ocean = 2, sea = 3 };

/// The name of something large.
struct BaseMapLabel {
    BaseMapLabelKind kind = BaseMapLabelKind::country;
    /// The zoom from which there is room for it.
    double minimumZoom = 0;
    QString name;
    WorldPoint place;
};

/// The map that is there without a network: coasts, waters and borders of the whole world in a file of the format that
/// docs/map.md describes. What the file says is never trusted: whatever is wrong with it leads to an error or to a tile
/// that ends early, never further.
class BaseMap {
public:
    /// Gets the outline or the line of one feature; the points are good until it returns.
    using Visitor = std::function<void(BaseMapKind, std::span<const BaseMapPoint>)>;

    /// Maps the file into memory and checks it. Nothing when that fails, with the reason in `error` if asked for.
    [[nodiscard]] static std::unique_ptr<BaseMap> open(const QString& path, QString* error = nullptr);
    /// The same for bytes, which are kept.
    [[nodiscard]] static std::unique_ptr<BaseMap> read(const QByteArray& bytes, QString* error = nullptr);

    BaseMap(const BaseMap&) = delete;
    BaseMap& operator=(const BaseMap&) = delete;
    ~BaseMap() = default;

    /// From the coarsest to the finest; never empty.
    [[nodiscard]] const std::vector<BaseMapLevel>& levels() const { return m_levels; }

    /// The finest level that is meant for that zoom.
    [[nodiscard]] const BaseMapLevel& levelFor(double zoom) const;

    /// Calls `visitor` for each feature of a tile, kind by kind; for none when there is no such tile. False when the
    /// tile is damaged; what could be read of it has been visited then.
    bool visit(const BaseMapLevel& level, int column, int row, const Visitor& visitor) const;

    /// The most important ones first.
    [[nodiscard]] const std::vector<BaseMapLabel>& labels() const { return m_labels; }

private:
    BaseMap() = default;

    [[nodiscard]] QString parse();
    [[nodiscard]] QString parseLevels(int count);
    [[nodiscard]] bool parseLabels(std::uint32_t offset, std::uint32_t count);

    QFile m_file;
    QByteArray m_bytes;
    std::span<const std::uint8_t> m_data;
    std::vector<BaseMapLevel> m_levels;
    std::vector<BaseMapLabel> m_labels;
};

} // namespace corvanta
