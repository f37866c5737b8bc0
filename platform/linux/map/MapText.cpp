// SPDX-License-Identifier: MIT
#include "MapText.h"

#include <QLocale>

#include <cmath>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

QString number(double degrees) {
    // Adding 0 makes a plain zero of a negative one.
    return QString::number(std::round(degrees * 1e4) / 1e4 + 0.0, 'f', QLocale::FloatingPointShortest);
}

} // namespace

QString coordinateText(const Coordinate& coordinate) {
    return u"%1, %2"_s.arg(number(coordinate.latitude), number(coordinate.longitude));
}

} // namespace corvanta
