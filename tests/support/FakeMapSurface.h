// SPDX-License-Identifier: MIT
#pragma once

#include "MapSurface.h"

#include <QFrame>
#include <QPointer>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

namespace corvanta::testing {

/// A map that records what it is told. Its middle is at the point (0, 0), and a pixel is a hundredth of its span.
class FakeMapSurface final : public MapSurface {
public:
    struct RegionChange {
        MapRegion region;
        MapMotion motion;

        bool operator==(const RegionChange&) const = default;
    };

    explicit FakeMapSurface(QWidget* parent = nullptr)
        : m_widget(new QFrame(parent)) {
        m_widget->setFocusPolicy(Qt::StrongFocus);
        m_widget->setAccessibleName(QStringLiteral("Map"));
    }

    ~FakeMapSurface() override { delete m_widget.data(); }

    [[nodiscard]] QWidget& widget() override { return *m_widget; }

    void setDelegate(MapSurfaceDelegate* newDelegate) override { delegate = newDelegate; }

    void setFeatures(const MapFeatures& newFeatures) override { features = newFeatures; }

    [[nodiscard]] MapRegion region() const override { return shown; }

    void setRegion(const MapRegion& region, MapMotion motion) override {
        shown = region;
        regionChanges.push_back({region, motion});
    }

    void addAnnotation(std::shared_ptr<MapAnnotation> annotation) override {
        ++additions;
        styles.push_back(delegate != nullptr ? delegate->viewFor(*annotation) : std::nullopt);
        annotations.push_back(std::move(annotation));
    }

    void removeAnnotation(const std::shared_ptr<MapAnnotation>& annotation) override {
        std::erase(annotations, annotation);
    }

    void annotationMoved(const std::shared_ptr<MapAnnotation>& annotation) override {
        if (std::ranges::find(annotations, annotation) != annotations.end())
            ++moves;
    }

    [[nodiscard]] Coordinate coordinateAt(QPointF point) const override {
        return {shown.center.latitude - point.y() / 100 * shown.span.latitudeDelta,
                shown.center.longitude + point.x() / 100 * shown.span.longitudeDelta};
    }

    void click(QPointF point, MapGestureState state = MapGestureState::ended) {
        if (delegate != nullptr)
            delegate->handleClick(state, point);
    }

    MapSurfaceDelegate* delegate = nullptr;
    MapFeatures features;
    MapRegion shown;
    std::vector<RegionChange> regionChanges;
    std::vector<std::shared_ptr<MapAnnotation>> annotations;
    /// What the delegate wanted each annotation that was added to look like.
    std::vector<std::optional<MapMarkerStyle>> styles;
    int additions = 0;
    int moves = 0;

private:
    /// Its parent may be gone already.
    QPointer<QWidget> m_widget;
};

} // namespace corvanta::testing
