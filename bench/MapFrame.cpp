// SPDX-License-Identifier: MIT
// How long a frame of the map takes while it is panned, on one core, at 430 x 250 points with two pixels each, zoom by
// zoom and over several places of the world. Exits with 1 when a zoom's 99th percentile is above the limit.
#include "MapSetup.h"
#include "MapView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <random>
#include <vector>

namespace {

using namespace corvanta;

constexpr double ratio = 2;
constexpr QSize points(430, 250);
constexpr double limit = 8;
constexpr int framesPerPlace = 40;

/// Coasts with many islands, borders, lakes, and many towns.
const std::vector<Coordinate> places{{41.3874, 2.1686}, {62.0, 6.0},   {70.0, -95.0}, {38.0, 24.5},
                                     {-45.0, -73.5},    {51.2, 6.8},   {35.6, 139.7}, {0.0, 105.0},
                                     {46.5, -84.0},     {60.5, 179.9}, {22.9, 113.5}, {-78.0, 160.0}};

/// What all threads of this process have used, which is what a frame takes on one core that does nothing else.
double usedMilliseconds() {
    timespec used{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

double milliseconds(const QElapsedTimer& timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

/// One value below which that part of the others lies.
double quantile(std::vector<double>& values, double part) {
    const auto at = static_cast<std::ptrdiff_t>(part * static_cast<double>(values.size() - 1));
    std::ranges::nth_element(values, values.begin() + at);
    return values[static_cast<std::size_t>(at)];
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication application(argc, argv);
    MapData data;
    QElapsedTimer opening;
    opening.start();
    const MapSources sources = data.sources({});
    const double opened = milliseconds(opening);
    if (sources.baseMap == nullptr || sources.labels == nullptr) {
        std::fprintf(stderr, "the base map or the gazetteer is missing beside %s\n", argv[0]);
        return 69;
    }
    MapView map(sources);
    map.setFeatures({true, true, true, true, true, true, true});
    map.resize(points);
    QImage frame(points * ratio, QImage::Format_RGB32);
    frame.setDevicePixelRatio(ratio);

    std::printf("opening the data: %.2f ms\n", opened);
    std::printf("a frame of the base map while panning, 430 x 250 at 2x\n");
    std::printf("%6s %8s %8s %8s %8s %14s\n", "zoom", "frames", "p50 ms", "p99 ms", "most ms", "p50 by clock");
    std::mt19937 random(20251121);
    bool isFast = true;
    for (int zoom = 0; zoom <= 20; ++zoom) {
        std::vector<double> times;
        std::vector<double> wallTimes;
        for (const Coordinate& place : places) {
            MapCamera camera{Mercator::project(place), zoom + 0.3, 0, 0};
            const double angle = std::uniform_real_distribution(0.0, 6.28)(random);
            for (int number = 0; number < framesPerPlace; ++number) {
                const QPointF middle(points.width() / 2.0, points.height() / 2.0);
                const QPointF step(9 * std::cos(angle), 9 * std::sin(angle));
                camera = MapCameras::dragged(camera, {430, 250}, middle, middle + step);
                QElapsedTimer timer;
                timer.start();
                const double before = usedMilliseconds();
                map.setCamera(camera, MapMotion::immediate);
                QPainter painter(&frame);
                map.paintMap(painter);
                painter.end();
                // The first frame of a place is a jump, not a pan.
                if (number > 0) {
                    times.push_back(usedMilliseconds() - before);
                    wallTimes.push_back(milliseconds(timer));
                }
            }
        }
        const double middle = quantile(times, 0.5);
        const double high = quantile(times, 0.99);
        isFast = isFast && high < limit;
        std::printf("%6.1f %8zu %8.2f %8.2f %8.2f %14.2f\n", zoom + 0.3, times.size(), middle, high, quantile(times, 1),
                    quantile(wallTimes, 0.5));
    }
    std::printf("every p99 below %.0f ms: %s\n", limit, isFast ? "yes" : "no");
    return isFast ? 0 : 1;
}
