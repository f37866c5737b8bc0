// SPDX-License-Identifier: MIT
#include "locations/LocationRepository.h"

#include "support/JsonEncoding.h"

#include <QJsonArray>

#include <algorithm>
#include <cmath>
#include <utility>

namespace corvanta {

namespace {

/// Not the same as being farther apart than the tolerance: a difference that is not a number counts as the same point.
bool isSamePoint(const Coordinate& left, const Coordinate& right) {
    constexpr double tolerance = 1e-6;
    const bool isApart =
        std::abs(left.latitude - right.latitude) > tolerance || std::abs(left.longitude - right.longitude) > tolerance;
    return !isApart;
}

} // namespace

LocationRepository::LocationRepository(PreferencesStore& defaults, QString favoritesKey, QString recentsKey,
                                       int maxRecents, Clock& clock)
    : m_defaults(defaults)
    , m_favoritesKey(std::move(favoritesKey))
    , m_recentsKey(std::move(recentsKey))
    , m_maxRecents(maxRecents)
    , m_clock(clock) {}

std::vector<StoredLocation> LocationRepository::loadFavorites() const {
    return load(m_favoritesKey);
}

std::vector<StoredLocation> LocationRepository::loadRecents() const {
    return load(m_recentsKey);
}

std::vector<StoredLocation> LocationRepository::addFavorite(const QString& name, const Coordinate& coordinate) {
    auto list = load(m_favoritesKey);
    list.insert(list.begin(), makeLocation(name, coordinate));
    save(list, m_favoritesKey);
    return list;
}

std::vector<StoredLocation> LocationRepository::deleteFavorite(const QUuid& id) {
    auto list = load(m_favoritesKey);
    std::erase_if(list, [&id](const StoredLocation& location) { return location.id == id; });
    save(list, m_favoritesKey);
    return list;
}

std::vector<StoredLocation> LocationRepository::recordRecent(const QString& name, const Coordinate& coordinate) {
    auto list = load(m_recentsKey);
    std::erase_if(
        list, [&coordinate](const StoredLocation& location) { return isSamePoint(location.coordinate, coordinate); });
    list.insert(list.begin(), makeLocation(name, coordinate));
    const auto limit = static_cast<std::size_t>(std::max(m_maxRecents, 0));
    if (list.size() > limit)
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(limit), list.end());
    save(list, m_recentsKey);
    return list;
}

std::vector<StoredLocation> LocationRepository::load(const QString& key) const {
    const auto data = m_defaults.data(key);
    if (!data)
        return {};
    try {
        std::vector<StoredLocation> list;
        for (const JsonDecoder& element : JsonDecoder::parse(*data).elements())
            list.push_back(decodeStoredLocation(element));
        return list;
    } catch (const JsonDecodingError&) {
        return {};
    }
}

void LocationRepository::save(const std::vector<StoredLocation>& list, const QString& key) {
    try {
        QJsonArray array;
        for (const StoredLocation& location : list)
            array.append(encodeJson(location));
        m_defaults.setData(key, jsonDocument(array));
    } catch (const JsonEncodingError&) {
        // What cannot be stored leaves the stored list as it is.
    }
}

StoredLocation LocationRepository::makeLocation(const QString& name, const Coordinate& coordinate) {
    return {m_clock.freshUUID(), name, coordinate, m_clock.wallClockNow()};
}

} // namespace corvanta
