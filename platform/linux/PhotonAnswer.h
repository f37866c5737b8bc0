// SPDX-License-Identifier: MIT
#pragma once

#include "FoundPlace.h"
#include "PlaceCompleter.h"

#include <QByteArray>

#include <vector>

namespace corvanta {

/// A place that the network knows.
struct PhotonPlace {
    FoundPlace found;
    PlaceResultTypes kind = PlaceResultTypes::address;
    /// A town, a region or the like, as opposed to a street or a house.
    bool isSettlement = false;

    bool operator==(const PhotonPlace&) const = default;
};

/// The places in what a Photon server answers: GeoJSON, as https://github.com/komoot/photon describes it. A place that
/// makes no sense is left out; texts are plain, of one line and not long. Throws JsonDecodingError when the whole is
/// something else.
[[nodiscard]] std::vector<PhotonPlace> photonPlaces(const QByteArray& answer);

} // namespace corvanta
