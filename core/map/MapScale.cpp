// SPDX-License-Identifier: MIT
#include "map/MapScale.h"

#include <cmath>
#include <numbers>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr double feetInAMetre = 1 / 0.3048;
constexpr double feetInAMile = 5280;

double roundedDown(double value) {
    const double power = std::pow(10, std::floor(std::log10(value)));
    for (const double step : {5.0, 2.0}) {
        if (value >= step * power)
            return step * power;
    }
    return power;
}

} // namespace

double metresPerPixel(const MapCamera& camera) {
    const double latitude = Mercator::unproject(camera.center).latitude * std::numbers::pi / 180;
    return 2 * std::numbers::pi * Mercator::earthRadius * std::cos(latitude) / (256 * std::exp2(camera.zoom));
}

MapScale MapScale::forCamera(const MapCamera& camera, double longest, Units units) {
    const double metres = metresPerPixel(camera);
    const bool isMetric = units == Units::metric;
    const double smallPerPixel = isMetric ? metres : metres * feetInAMetre;
    const double smallInLarge = isMetric ? 1000 : feetInAMile;
    const bool isLarge = smallPerPixel * longest >= smallInLarge;
    const double perPixel = isLarge ? smallPerPixel / smallInLarge : smallPerPixel;
    const double distance = roundedDown(perPixel * longest);
    const QString small = isMetric ? u"m"_s : u"ft"_s;
    const QString large = isMetric ? u"km"_s : u"mi"_s;
    return {u"%1 %2"_s.arg(QString::number(distance, 'f', distance < 1 ? 1 : 0), isLarge ? large : small),
            distance / perPixel};
}

} // namespace corvanta
