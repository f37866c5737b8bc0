// SPDX-License-Identifier: MIT
#include "Commands.h"
#include "LocationRoute.h"
#include "Session.h"

#include <QFile>

#include <cmath>

using namespace Qt::Literals::StringLiterals;

namespace corvanta::lab {

namespace {

Coordinate coordinate(const QString& text) {
    const auto place = Coordinate::parse(text);
    if (!place) {
        throw usage(u"location"_s, u"Invalid location: "_s + text);
    }
    return *place;
}

double positiveNumber(const QString& option, const QString& text) {
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    if (!isNumber || !std::isfinite(value) || value <= 0) {
        throw usage(u"location"_s, u"Invalid value for %1: %2"_s.arg(option, text));
    }
    return value;
}

/// The words of standard input, which "-" stands for.
QStringList standardInput() {
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(input.readAll()).simplified().split(u' ', Qt::SkipEmptyParts);
}

LocationRoute routeFrom(QStringList words) {
    LocationRoute route;
    const auto speed = takeOption(words, u"--speed"_s, u"location"_s);
    const auto distance = takeOption(words, u"--distance"_s, u"location"_s);
    const auto interval = takeOption(words, u"--interval"_s, u"location"_s);
    if (distance && interval) {
        throw usage(u"location"_s, u"Only one of --distance and --interval may be given."_s);
    }
    if (speed) {
        route.speed = positiveNumber(u"--speed"_s, *speed);
    }
    const double seconds = interval   ? positiveNumber(u"--interval"_s, *interval)
                           : distance ? positiveNumber(u"--distance"_s, *distance) / route.speed
                                      : 1;
    route.interval = std::chrono::milliseconds(std::llround(std::min(seconds, 3600.0) * 1000));
    for (const QString& word : words == QStringList{u"-"_s} ? standardInput() : words) {
        if (word.startsWith(u"--")) {
            throw usage(u"location"_s, u"Unknown option: "_s + word);
        }
        route.waypoints.push_back(coordinate(word));
    }
    if (route.waypoints.size() < 2) {
        throw usage(u"location"_s, u"At least two waypoints are needed."_s);
    }
    return route;
}

} // namespace

int locationCommand(const QStringList& arguments) {
    if (arguments.size() < 2) {
        throw usage(u"location"_s);
    }
    const QString& action = arguments[1];
    const QStringList rest = arguments.sliced(2);
    std::optional<Coordinate> place;
    std::optional<LocationRoute> route;
    if (action == u"set" && rest.size() == 1) {
        place = coordinate(rest.first());
    } else if (action == u"start") {
        route = routeFrom(rest);
    } else if (action == u"run" && rest.size() == 1) {
        route = locationScenario(rest.first());
        if (!route) {
            throw CommandFailure{usageStatus, u"Invalid scenario: %1\n"_s.arg(rest.first())};
        }
    } else if (!((action == u"clear" || action == u"list") && rest.isEmpty())) {
        throw usage(u"location"_s);
    }
    Session session;
    const Device device = session.runningDevice(arguments[0]);
    if (action == u"list") {
        print(locationScenarios().join(u'\n') + u'\n');
    } else if (place) {
        session.bus().setLocation(device.udid, place->latitude, place->longitude, requestLimit);
    } else if (route) {
        session.bus().followRoute(device.udid, *route, requestLimit);
    } else {
        session.bus().call(device.udid, "ClearLocation", requestLimit);
    }
    return 0;
}

} // namespace corvanta::lab
