// SPDX-License-Identifier: MIT
#include "PhotonAnswer.h"

#include "support/JsonDecoder.h"

#include <QStringList>

#include <cmath>
#include <optional>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype longestText = 120;
/// Good and bad ones, of which each bad one takes an exception.
constexpr qsizetype mostFeatures = 50;

/// One line without anything that is not to be seen.
QString plainLine(const QString& text) {
    QString line;
    for (const char32_t character : text.left(longestText).toUcs4()) {
        // Marks that turn the direction of what follows would let a place rewrite its neighbours.
        const auto category = QChar::category(character);
        if (category == QChar::Other_Format || category == QChar::Other_Surrogate)
            continue;
        line += QChar::isPrint(character) ? QString::fromUcs4(&character, 1) : u" "_s;
    }
    return line.simplified();
}

QString text(const JsonDecoder& properties, const QString& key) {
    const auto member = properties.optionalMember(key);
    return member ? plainLine(member->string()) : QString();
}

std::optional<Coordinate> coordinate(const JsonDecoder& feature) {
    const auto pair = feature.member(u"geometry"_s).member(u"coordinates"_s).elements(2);
    if (pair.size() < 2)
        return std::nullopt;
    const Coordinate found{.latitude = pair[1].number(), .longitude = pair[0].number()};
    if (std::abs(found.latitude) > 90 || std::abs(found.longitude) > 180)
        return std::nullopt;
    return found;
}

PlaceResultTypes kindOf(const QString& key) {
    static const QStringList addresses{u"place"_s, u"boundary"_s, u"highway"_s, u"building"_s, u"landuse"_s};
    return addresses.contains(key) ? PlaceResultTypes::address : PlaceResultTypes::pointOfInterest;
}

std::optional<PhotonPlace> placeOf(const JsonDecoder& feature) {
    const auto point = coordinate(feature);
    const JsonDecoder properties = feature.member(u"properties"_s);
    const QString street = text(properties, u"street"_s);
    const QString number = text(properties, u"housenumber"_s);
    const QString address = number.isEmpty() ? street : street + u' ' + number;
    QString title = text(properties, u"name"_s);
    QStringList around;
    const auto add = [&](const QString& part) {
        if (!part.isEmpty() && part != title && !around.contains(part))
            around.append(part);
    };
    if (title.isEmpty())
        title = address;
    if (title.isEmpty() || !point)
        return std::nullopt;
    const QString key = text(properties, u"osm_key"_s);
    const PlaceResultTypes kind = kindOf(key);
    const bool isHouse = text(properties, u"osm_value"_s) == u"house";
    add(address);
    for (const QString& part : {u"district"_s, u"city"_s, u"state"_s, u"country"_s})
        add(text(properties, part));
    return PhotonPlace{.found = {.title = title, .subtitle = around.join(u", "_s), .coordinate = *point},
                       .kind = kind,
                       .isSettlement = (key == u"place" && !isHouse) || key == u"boundary"};
}

} // namespace

std::vector<PhotonPlace> photonPlaces(const QByteArray& answer) {
    std::vector<PhotonPlace> places;
    for (const JsonDecoder& feature : JsonDecoder::parse(answer).member(u"features"_s).elements(mostFeatures)) {
        try {
            if (auto place = placeOf(feature))
                places.push_back(*std::move(place));
        } catch (const JsonDecodingError&) {
            // One place that makes no sense says nothing about the others.
            continue;
        }
    }
    return places;
}

} // namespace corvanta
