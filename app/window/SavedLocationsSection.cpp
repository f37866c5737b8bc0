// SPDX-License-Identifier: MIT
#include "window/SavedLocationsSection.h"

#include "window/widgets/Card.h"
#include "window/widgets/LocationList.h"
#include "window/widgets/SegmentedTabs.h"
#include "workspace/WorkspaceCoordinator.h"

#include <QStackedWidget>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

SavedLocationsSection::SavedLocationsSection(const SectionContext& context, QWidget* parent)
    : QWidget(parent)
    , m_coordinator(context.coordinator)
    , m_tabs(new SegmentedTabs(u"Saved locations"_s))
    , m_lists(new QStackedWidget) {
    Card& card = addCard(*this, u"Saved locations"_s);
    auto* const favorites = new LocationList(u"No favorite locations"_s, LocationList::Deletion::offered);
    auto* const recents = new LocationList(u"No recent locations"_s, LocationList::Deletion::none);
    m_tabs->addSegment(Symbol::star, u"Favorites"_s);
    m_tabs->addSegment(Symbol::clock, u"Recents"_s);
    m_lists->addWidget(favorites);
    m_lists->addWidget(recents);
    card.rows().addWidget(m_tabs, 0, Qt::AlignHCenter);
    card.rows().addWidget(m_lists);
    favorites->setAccessibleName(u"Favorites"_s);
    recents->setAccessibleName(u"Recents"_s);

    connect(m_tabs, &QTabBar::currentChanged, m_lists, &QStackedWidget::setCurrentIndex);
    for (const LocationList* const list : {favorites, recents}) {
        connect(list, &LocationList::chosen, this, [this](const StoredLocation& location) {
            m_coordinator.selectLocation(location.coordinate, location.name, true);
        });
    }
    connect(favorites, &LocationList::deletionRequested, &m_coordinator, &WorkspaceCoordinator::deleteFavorite);
    const auto showFavorites = [this, favorites] { favorites->showLocations(m_coordinator.favorites()); };
    const auto showRecents = [this, recents] { recents->showLocations(m_coordinator.recents()); };
    connect(&m_coordinator, &WorkspaceCoordinator::favoritesChanged, favorites, showFavorites);
    connect(&m_coordinator, &WorkspaceCoordinator::recentsChanged, recents, showRecents);
    showFavorites();
    showRecents();
}

} // namespace corvanta
