// SPDX-License-Identifier: MIT
#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <ctime>
#include <fstream>
#include <utility>
#include <vector>

namespace corvanta::bench {

using SteadyTime = std::chrono::steady_clock::time_point;

inline double millisecondsBetween(SteadyTime start, SteadyTime end) {
    return std::chrono::duration<double, std::milli>(end - start).count();
}

inline double millisecondsSince(SteadyTime start) {
    return millisecondsBetween(start, std::chrono::steady_clock::now());
}

/// What this thread has used so far, so that whatever else the machine does is not counted.
inline double usedMilliseconds() {
    timespec used{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
    return static_cast<double>(used.tv_sec) * 1e3 + static_cast<double>(used.tv_nsec) / 1e6;
}

/// How long this thread has been ready to run while others had the processors, as the system counts it.
inline double queuedMilliseconds() {
    std::ifstream file("/proc/thread-self/schedstat");
    double ran = 0;
    double queued = 0;
    file >> ran >> queued;
    return queued / 1e6;
}

/// The value below which that part of the others lies; `values` must not be empty.
inline double quantile(std::vector<double> values, double part) {
    const auto at = static_cast<std::ptrdiff_t>(std::lround(part * static_cast<double>(values.size() - 1)));
    std::ranges::nth_element(values, values.begin() + at);
    return values[static_cast<std::size_t>(at)];
}

inline double median(std::vector<double> values) {
    return quantile(std::move(values), 0.5);
}

/// One measurement at one size.
struct Sample {
    double size;
    double time;
};

/// The power of the size with which the times grow: the slope of the line of best fit between their logarithms.
inline double growthExponent(const std::vector<Sample>& samples) {
    double sizes = 0;
    double times = 0;
    for (const Sample& sample : samples) {
        sizes += std::log(sample.size);
        times += std::log(sample.time);
    }
    const auto count = static_cast<double>(samples.size());
    double together = 0;
    double spread = 0;
    for (const Sample& sample : samples) {
        const double distance = std::log(sample.size) - sizes / count;
        together += distance * (std::log(sample.time) - times / count);
        spread += distance * distance;
    }
    return together / spread;
}

/// "yes" or "no", for the last column of a table.
inline const char* verdict(bool isGood) {
    return isGood ? "yes" : "no";
}

} // namespace corvanta::bench
