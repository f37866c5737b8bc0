// SPDX-License-Identifier: MIT
#pragma once

#include "MapSurface.h"
#include "MapView.h"

#include <QPointer>

#include <vector>

namespace corvanta {

/// A MapSurface that is drawn by this program.
class WidgetMapSurface final : public MapSurface {
public:
    WidgetMapSurface(const MapSources& sources, QWidget& parent);
    ~WidgetMapSurface() override;

    [[nodiscard]] QWidget& widget() override { return *m_view; }

    void setDelegate(MapSurfaceDelegate* delegate) override { m_delegate = delegate; }

    void setFeatures(const MapFeatures& features) override { m_view->setFeatures(features); }

    [[nodiscard]] MapRegion region() const override { return m_view->region(); }

    void setRegion(const MapRegion& region, MapMotion motion) override { m_view->setRegion(region, motion); }

    void addAnnotation(std::shared_ptr<MapAnnotation> annotation) override;

    void removeAnnotation(const std::shared_ptr<MapAnnotation>& annotation) override {
        m_view->removePin(annotation.get());
    }

    void annotationMoved(const std::shared_ptr<MapAnnotation>& annotation) override {
        m_view->movePin(annotation.get());
    }

    [[nodiscard]] Coordinate coordinateAt(QPointF point) const override {
        return m_view->projection().coordinateAt(point);
    }

private:
    /// The parent may delete it first.
    QPointer<MapView> m_view;
    MapSurfaceDelegate* m_delegate = nullptr;
};

} // namespace corvanta
