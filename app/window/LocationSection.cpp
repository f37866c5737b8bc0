// SPDX-License-Identifier: MIT
#include "window/LocationSection.h"

#include "locations/CoordinateFormatter.h"
#include "window/PlaceSearchBox.h"
#include "window/widgets/ButtonRows.h"
#include "window/widgets/Buttons.h"
#include "window/widgets/Card.h"
#include "window/widgets/IconButton.h"
#include "window/widgets/MapBox.h"
#include "window/widgets/TextLabel.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

LocationSection::LocationSection(const SectionContext& context, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(context.coordinator)
    , m_tasks(context.tasks)
    , m_map(new MapBox(context.makeMap))
    , m_name(new TextLabel(TextStyle::body))
    , m_coordinate(new TextLabel(TextStyle::secondary))
    , m_set(makeButton(u"Set Location"_s, Symbol::location, Emphasis::prominent))
    , m_clear(makeButton(u"Clear"_s, Symbol::locationOff)) {
    Card& card = addCard(*this, u"Location"_s);
    card.rows().addWidget(new PlaceSearchBox(context));
    card.rows().addWidget(m_map);
    card.rows().addWidget(makeSelectionLine());
    auto* const buttons = new QWidget;
    auto* const row = new QHBoxLayout(buttons);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    row->addWidget(m_set, 1);
    row->addWidget(m_clear, 1);
    m_set->setShortcut(QKeySequence(Qt::ALT | Qt::Key_L));
    card.rows().addWidget(buttons);

    connect(m_set, &QPushButton::clicked, this, [this] { m_tasks.start(m_coordinator.setLocationOnSimulator()); });
    connect(m_clear, &QPushButton::clicked, this, [this] { m_tasks.start(m_coordinator.clearLocationOnSimulator()); });
    for (const auto changed :
         {&WorkspaceCoordinator::selectedCoordinateChanged, &WorkspaceCoordinator::selectedLocationNameChanged})
        connect(&m_coordinator, changed, this, &LocationSection::showSelection);
    for (const auto changed :
         {&WorkspaceCoordinator::selectedCoordinateChanged, &WorkspaceCoordinator::isLocationWorkingChanged,
          &WorkspaceCoordinator::selectedDeviceIDChanged, &WorkspaceCoordinator::devicesChanged})
        connect(&m_coordinator, changed, this, &LocationSection::updateButtons);
    // The last that it tells of a selection: by then all of it has changed.
    connect(&m_coordinator, &WorkspaceCoordinator::mapSelectionIDChanged, this, &LocationSection::updateMap);
    showSelection();
    updateButtons();
    updateMap();
}

QWidget* LocationSection::makeSelectionLine() {
    auto* const line = new QWidget;
    auto* const row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(8);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(2);
    m_coordinate->setSelectable();
    texts->addWidget(m_name);
    texts->addWidget(m_coordinate);
    row->addLayout(texts, 1);
    auto* const star = new IconButton(Symbol::star, u"Save favorite"_s, IconButton::Frame::bare);
    star->setToolTip(u"Save favorite"_s);
    connect(star, &QPushButton::clicked, &m_coordinator, &WorkspaceCoordinator::saveFavorite);
    row->addWidget(star);
    return line;
}

void LocationSection::showSelection() {
    m_name->showText(m_coordinator.selectedLocationName());
    const auto& coordinate = m_coordinator.selectedCoordinate();
    m_coordinate->showText(coordinate ? CoordinateFormatter::coordinatePair(*coordinate)
                                      : u"No location will be restored"_s);
}

void LocationSection::updateMap() {
    m_map->show({.selectedCoordinate = [this] { return m_coordinator.selectedCoordinate(); },
                 .selectionID = m_coordinator.mapSelectionID(),
                 .recenterOnSelection = m_coordinator.recenterMapOnSelection(),
                 .onCoordinateSelected =
                     [this](Coordinate point) { m_coordinator.selectLocation(point, u"Dropped Pin"_s, false); }});
}

void LocationSection::updateButtons() {
    const bool isFree = m_coordinator.selectedDevice() && !m_coordinator.isLocationWorking();
    setEnabledKeepingFocus(*m_set, isFree && m_coordinator.selectedCoordinate());
    setEnabledKeepingFocus(*m_clear, isFree);
}

} // namespace corvanta
