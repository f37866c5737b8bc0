// SPDX-License-Identifier: MIT
#pragma once

#include "locations/LocationMapView.h"

#include <QWidget>

#include <chrono>
#include <functional>
#include <memory>

namespace corvanta {

/// Makes a map as a child of a widget.
using MapMaking = std::function<std::unique_ptr<MapSurface>(QWidget& parent)>;

/// The room for the map in the window: as wide as it may be and 250 high, with round corners and a hairline around.
///
/// The map comes after the window has been painted for the first time, or somewhat later where it is out of sight, so
/// that nobody waits for it.
class MapBox final : public QWidget {
    Q_OBJECT

public:
    explicit MapBox(MapMaking makeMap, QWidget* parent = nullptr);
    ~MapBox() override;

    /// Shows this from now on; the map follows once it is there.
    void show(const LocationMapView& view);

    /// Null until it has been made.
    [[nodiscard]] MapSurface* map() const { return m_map.get(); }

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void loadAfter(std::chrono::milliseconds delay);
    void load();

    MapMaking m_makeMap;
    LocationMapView m_view;
    std::unique_ptr<MapSurface> m_map;
    std::unique_ptr<LocationMapView::Coordinator> m_mapCoordinator;
};

} // namespace corvanta
