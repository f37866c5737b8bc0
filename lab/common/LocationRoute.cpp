// SPDX-License-Identifier: MIT
#include "LocationRoute.h"

#include <algorithm>
#include <cmath>
#include <numbers>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace corvanta::lab {

namespace {

/// Mean radius of the earth in metres.
constexpr double earthRadius = 6371008.8;

double radians(double degrees) {
    return degrees * std::numbers::pi / 180;
}

double degrees(double radians) {
    return radians * 180 / std::numbers::pi;
}

/// The place at that share (0 to 1) of the great circle between two places.
Coordinate between(const Coordinate& from, const Coordinate& to, double share) {
    const double angle = distance(from, to) / earthRadius;
    if (angle < 1e-12) {
        return to;
    }
    const double a = std::sin((1 - share) * angle) / std::sin(angle);
    const double b = std::sin(share * angle) / std::sin(angle);
    const double x = a * std::cos(radians(from.latitude)) * std::cos(radians(from.longitude)) +
                     b * std::cos(radians(to.latitude)) * std::cos(radians(to.longitude));
    const double y = a * std::cos(radians(from.latitude)) * std::sin(radians(from.longitude)) +
                     b * std::cos(radians(to.latitude)) * std::sin(radians(to.longitude));
    const double z = a * std::sin(radians(from.latitude)) + b * std::sin(radians(to.latitude));
    return {degrees(std::atan2(z, std::hypot(x, y))), degrees(std::atan2(y, x))};
}

struct Scenario {
    QString name;
    LocationRoute route;
};

const std::vector<Scenario>& scenarios() {
    // Ways of our own through Cupertino and San Francisco, at the paces that their names promise.
    static const std::vector<Scenario> known = {
        {u"City Bicycle Ride"_s,
         {.waypoints = {{37.33182, -122.03118},
                        {37.32730, -122.03240},
                        {37.32290, -122.03230},
                        {37.32270, -122.02300},
                        {37.32960, -122.02310},
                        {37.33700, -122.02320},
                        {37.33740, -122.03220},
                        {37.33182, -122.03118}},
          .speed = 6,
          .interval = 1s,
          .repeats = true}},
        {u"City Run"_s,
         {.waypoints = {{37.33490, -122.00900},
                        {37.33730, -122.00890},
                        {37.33730, -122.01420},
                        {37.33180, -122.01430},
                        {37.33180, -122.00580},
                        {37.33490, -122.00900}},
          .speed = 3,
          .interval = 1s,
          .repeats = true}},
        {u"Freeway Drive"_s,
         {.waypoints = {{37.33410, -122.05800},
                        {37.35190, -122.06830},
                        {37.37260, -122.08840},
                        {37.39720, -122.14040},
                        {37.43010, -122.20880},
                        {37.46260, -122.28790},
                        {37.51290, -122.33680},
                        {37.60870, -122.42130}},
          .speed = 29,
          .interval = 1s,
          .repeats = true}},
    };
    return known;
}

} // namespace

std::optional<Coordinate> Coordinate::parse(const QString& text) {
    const QStringList parts = text.split(u',');
    if (parts.size() != 2) {
        return std::nullopt;
    }
    bool isLatitude = false;
    bool isLongitude = false;
    const Coordinate result{parts[0].trimmed().toDouble(&isLatitude), parts[1].trimmed().toDouble(&isLongitude)};
    // Written so that a value that is no number fails too.
    const bool isPlace = std::abs(result.latitude) <= 90 && std::abs(result.longitude) <= 180;
    return isLatitude && isLongitude && isPlace ? std::optional(result) : std::nullopt;
}

double distance(const Coordinate& from, const Coordinate& to) {
    const double latitude = std::sin(radians(to.latitude - from.latitude) / 2);
    const double longitude = std::sin(radians(to.longitude - from.longitude) / 2);
    const double square =
        latitude * latitude + std::cos(radians(from.latitude)) * std::cos(radians(to.latitude)) * longitude * longitude;
    return 2 * earthRadius * std::asin(std::min(1.0, std::sqrt(square)));
}

double heading(const Coordinate& from, const Coordinate& to) {
    const double across = radians(to.longitude - from.longitude);
    const double east = std::sin(across) * std::cos(radians(to.latitude));
    const double north = std::cos(radians(from.latitude)) * std::sin(radians(to.latitude)) -
                         std::sin(radians(from.latitude)) * std::cos(radians(to.latitude)) * std::cos(across);
    const double result = degrees(std::atan2(east, north));
    return result < 0 ? result + 360 : result;
}

double LocationRoute::length() const {
    double sum = 0;
    for (std::size_t index = 1; index < waypoints.size(); ++index) {
        sum += distance(waypoints[index - 1], waypoints[index]);
    }
    return sum;
}

LocationRoute::Point LocationRoute::at(std::chrono::milliseconds elapsed) const {
    double rest = speed * std::chrono::duration<double>(elapsed).count();
    const double whole = length();
    if (repeats && whole > 0) {
        rest = std::fmod(rest, whole);
    }
    for (std::size_t index = 1; index < waypoints.size(); ++index) {
        const Coordinate& from = waypoints[index - 1];
        const Coordinate& to = waypoints[index];
        const double leg = distance(from, to);
        if (rest < leg) {
            return {between(from, to, rest / leg), lab::heading(from, to), false};
        }
        rest -= leg;
    }
    const Coordinate& end = waypoints.back();
    const Coordinate& before = waypoints.size() > 1 ? waypoints[waypoints.size() - 2] : end;
    return {end, lab::heading(before, end), true};
}

const QStringList& locationScenarios() {
    static const QStringList names = [] {
        QStringList list;
        std::ranges::transform(scenarios(), std::back_inserter(list), &Scenario::name);
        return list;
    }();
    return names;
}

std::optional<LocationRoute> locationScenario(const QString& name) {
    const auto found = std::ranges::find_if(
        scenarios(), [&](const Scenario& scenario) { return scenario.name.compare(name, Qt::CaseInsensitive) == 0; });
    return found == scenarios().end() ? std::nullopt : std::optional(found->route);
}

} // namespace corvanta::lab
