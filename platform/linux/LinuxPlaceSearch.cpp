// SPDX-License-Identifier: MIT
#include "LinuxPlaceSearch.h"

#include "CoordinateText.h"
#include "FoundPlace.h"
#include "LinuxPlaceCompleter.h"

#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

LinuxPlaceSearch::LinuxPlaceSearch(std::shared_ptr<SharedGazetteer> gazetteer, const QUrl& service, Clock& clock)
    : m_gazetteer(std::move(gazetteer))
    , m_clock(clock) {
    if (PhotonService::isUsable(service))
        m_service = std::make_shared<PhotonService>(service, clock);
}

QCoro::Task<std::vector<MapItem>> LinuxPlaceSearch::search(PlaceCompletion completion) {
    std::vector<MapItem> found;
    if (const auto place = std::static_pointer_cast<const FoundPlace>(completion.source))
        found.push_back({.name = place->title, .coordinate = place->coordinate});
    else if (const auto coordinate = coordinateFromText(completion.title))
        found.push_back({.name = std::nullopt, .coordinate = *coordinate});
    co_return found;
}

std::unique_ptr<PlaceCompleter> LinuxPlaceSearch::makeCompleter() {
    return std::make_unique<LinuxPlaceCompleter>(
        LinuxPlaceCompleter::Sources{.gazetteer = m_gazetteer, .service = m_service, .clock = m_clock});
}

QUrl placeSearchAddress(const PreferencesStore& preferences) {
    QString address = QStringLiteral(CORVANTA_PLACE_SEARCH_URL);
    if (qEnvironmentVariableIsSet("CORVANTA_PLACE_SEARCH_URL"))
        address = qEnvironmentVariable("CORVANTA_PLACE_SEARCH_URL");
    else if (const auto chosen = preferences.data(u"placeSearchURL"_s))
        address = QString::fromUtf8(*chosen);
    return QUrl(address.trimmed(), QUrl::StrictMode);
}

} // namespace corvanta
