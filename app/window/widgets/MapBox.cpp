// SPDX-License-Identifier: MIT
#include "window/widgets/MapBox.h"

#include "window/Appearance.h"
#include "window/widgets/RoundedFrame.h"

#include <QPainter>
#include <QTimer>

#include <utility>

namespace corvanta {

using namespace std::chrono_literals;

namespace {

constexpr int boxHeight = 250;
/// Long enough for the window to have been painted.
constexpr auto unseenDelay = 300ms;
/// Long enough for a window that has just been painted to take what was done to it meanwhile.
constexpr auto seenDelay = 30ms;

/// Lets the keyboard come to a widget and what is in it from whatever stands before `place`, as if it had been made
/// together with the rest of the window.
void takeIntoTabOrder(QWidget& widget, QWidget& place) {
    QWidget* before = place.previousInFocusChain();
    while (before != &place && before->focusPolicy() == Qt::NoFocus)
        before = before->previousInFocusChain();
    if (before == &place || widget.isAncestorOf(before))
        return;
    QList<QWidget*> moved = widget.findChildren<QWidget*>();
    moved.prepend(&widget);
    for (QWidget* const one : moved) {
        if (one->focusPolicy() == Qt::NoFocus)
            continue;
        QWidget::setTabOrder(before, one);
        before = one;
    }
}

} // namespace

MapBox::MapBox(MapMaking makeMap, QWidget* parent)
    : QWidget(parent)
    , m_makeMap(std::move(makeMap)) {
    setFixedHeight(boxHeight);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    new RoundedFrame(*this);
}

MapBox::~MapBox() {
    if (m_map)
        m_map->setDelegate(nullptr);
}

void MapBox::show(const LocationMapView& view) {
    m_view = view;
    if (m_map)
        m_view.updateMap(*m_map, *m_mapCoordinator);
}

void MapBox::loadAfter(std::chrono::milliseconds delay) {
    if (!m_map)
        QTimer::singleShot(delay, this, &MapBox::load);
}

void MapBox::load() {
    if (m_map)
        return;
    m_map = m_makeMap(*this);
    m_mapCoordinator = std::make_unique<LocationMapView::Coordinator>(*m_map, m_view);
    m_map->widget().setGeometry(rect());
    LocationMapView::makeMap(*m_map, *m_mapCoordinator);
    m_view.updateMap(*m_map, *m_mapCoordinator);
    takeIntoTabOrder(m_map->widget(), *this);
    m_map->widget().show();
}

void MapBox::showEvent(QShowEvent*) {
    loadAfter(unseenDelay);
}

void MapBox::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), Appearance::current().controlPressed);
    loadAfter(seenDelay);
}

void MapBox::resizeEvent(QResizeEvent*) {
    if (m_map)
        m_map->widget().setGeometry(rect());
}

} // namespace corvanta
