// SPDX-License-Identifier: MIT
#include "WidgetMapSurface.h"

#include <utility>

namespace corvanta {

WidgetMapSurface::WidgetMapSurface(const MapSources& sources, QWidget& parent)
    : m_view(new MapView(sources, &parent)) {
    QObject::connect(m_view.data(), &MapView::clicked, m_view.data(), [this](QPointF point) {
        if (m_delegate != nullptr)
            m_delegate->handleClick(MapGestureState::ended, point);
    });
}

WidgetMapSurface::~WidgetMapSurface() {
    delete m_view.data();
}

void WidgetMapSurface::addAnnotation(std::shared_ptr<MapAnnotation> annotation) {
    const auto style = m_delegate != nullptr ? m_delegate->viewFor(*annotation) : std::nullopt;
    m_view->addPin(std::move(annotation), style.value_or(MapMarkerStyle{}));
}

} // namespace corvanta
