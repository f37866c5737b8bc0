// SPDX-License-Identifier: MIT
#pragma once

#include "PhotonService.h"
#include "PlaceSearch.h"
#include "places/SharedGazetteer.h"
#include "support/Clock.h"
#include "support/PreferencesStore.h"

#include <QUrl>

#include <memory>

namespace corvanta {

/// Finds places in a gazetteer, by their coordinate where that is what is written, and with a service on the network.
class LinuxPlaceSearch final : public PlaceSearch {
public:
    /// `gazetteer` is opened with the first text that is typed; `service` is the address of the service, unusable for
    /// none. The clock outlives this.
    LinuxPlaceSearch(std::shared_ptr<SharedGazetteer> gazetteer, const QUrl& service, Clock& clock);

    [[nodiscard]] QCoro::Task<std::vector<MapItem>> search(PlaceCompletion completion) override;
    [[nodiscard]] std::unique_ptr<PlaceCompleter> makeCompleter() override;

private:
    std::shared_ptr<SharedGazetteer> m_gazetteer;
    Clock& m_clock;
    std::shared_ptr<PhotonService> m_service;
};

/// Which service is asked: the one that the environment names with CORVANTA_PLACE_SEARCH_URL, else the one in the
/// preferences under "placeSearchURL", else the one that the build names. An empty text means none, wherever it stands.
[[nodiscard]] QUrl placeSearchAddress(const PreferencesStore& preferences);

} // namespace corvanta
