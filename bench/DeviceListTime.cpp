// SPDX-License-Identifier: MIT
// How long the simulator tool's list of devices takes to read and to order, beside jq's parser and simdjson's on the
// same bytes, which only read it. Times are those that the thread used. Exits with 1 when a goal is missed.
#include "simulator/SimulatorDeviceParser.h"
#include "support/Measuring.h"

#include <QByteArray>
#include <QCoreApplication>

#include <cstdio>
#include <cstdlib>
#include <random>
#include <simdjson.h>

extern "C" {
#include <jv.h>
}

namespace {

using namespace corvanta;
using namespace corvanta::bench;

constexpr double goalBesideSimdjson = 8;
constexpr double goalExponent = 1.1;
constexpr int goalCount = 10'000;
constexpr unsigned seed = 2'026;

const QByteArrayList names{"iPhone 16 Pro",    "iPhone 16 Pro Max", "iPhone 16e", "iPhone SE (3rd generation)",
                           "iPad Pro 13-inch", "iPad Air 11-inch",  "iPad mini",  "iPhone X\xCA\x80"};
const QByteArrayList runtimes{"iOS-16-4", "iOS-17-5", "iOS-18-2", "iOS-26-0", "watchOS-11-2", "tvOS-18-2"};

/// A record as the tool writes it. Every second device has a name that somebody gave it and that no other has.
QByteArray record(int number, std::mt19937& random) {
    const QByteArray udid = QByteArray::number(0x10000000LL + number, 16).toUpper() + "-7A52-4C1F-9D3B-5E8F60A1B2C3";
    const QByteArray name = number % 2 == 0
                                ? names.at(static_cast<qsizetype>(random() % 8))
                                : "Build machine " + QByteArray::number(static_cast<int>(random() % 100'000));
    return R"(      {
        "lastBootedAt" : "2026-10-)" +
           QByteArray::number(10 + number % 18) + R"(T08:15:30Z",
        "dataPath" : "\/Users\/developer\/Library\/Developer\/CoreSimulator\/Devices\/)" +
           udid + R"(\/data",
        "dataPathSize" : )" +
           QByteArray::number(18'337'792LL + number) + R"(,
        "logPath" : "\/Users\/developer\/Library\/Logs\/CoreSimulator\/)" +
           udid + R"(",
        "udid" : ")" +
           udid + R"(",
        "isAvailable" : )" +
           (number % 50 == 49 ? "false" : "true") + R"(,
        "deviceTypeIdentifier" : "com.apple.CoreSimulator.SimDeviceType.iPhone-16-Pro",
        "state" : ")" +
           (number % 400 == 0 ? "Booted" : "Shutdown") + R"(",
        "name" : ")" +
           name + "\"\n      }";
}

QByteArray deviceList(int count) {
    std::mt19937 random(seed);
    QByteArrayList sections;
    int number = 0;
    for (qsizetype at = 0; at < runtimes.size(); ++at) {
        QByteArrayList records;
        for (const auto end = static_cast<int>(count * (at + 1) / runtimes.size()); number < end; ++number)
            records.append(record(number, random));
        sections.append("    \"com.apple.CoreSimulator.SimRuntime." + runtimes.at(at) + "\" : [\n" +
                        records.join(",\n") + "\n    ]");
    }
    return "{\n  \"devices\" : {\n" + sections.join(",\n") + "\n  }\n}\n";
}

[[noreturn]] void fail(const char* who) {
    std::fprintf(stderr, "%s could not read the list\n", who);
    std::exit(70);
}

double readByCorvanta(const QByteArray& list) {
    const SteadyTime start = std::chrono::steady_clock::now();
    const auto devices = SimulatorDeviceParser::availableIOSDevices(list);
    const double time = millisecondsSince(start);
    if (devices.empty())
        fail("Corvanta");
    return time;
}

double readByJq(const QByteArray& list) {
    const SteadyTime start = std::chrono::steady_clock::now();
    const jv document = jv_parse_sized(list.constData(), static_cast<int>(list.size()));
    const double time = millisecondsSince(start);
    if (jv_get_kind(document) != JV_KIND_OBJECT)
        fail("jq");
    jv_free(document);
    return time;
}

double readBySimdjson(simdjson::dom::parser& parser, const simdjson::padded_string& list) {
    const SteadyTime start = std::chrono::steady_clock::now();
    const auto document = parser.parse(list);
    const double time = millisecondsSince(start);
    if (document.error() != simdjson::SUCCESS)
        fail("simdjson");
    return time;
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    std::printf("simdjson %d.%d.%d with %s\n", simdjson::SIMDJSON_VERSION_MAJOR, simdjson::SIMDJSON_VERSION_MINOR,
                simdjson::SIMDJSON_VERSION_REVISION, simdjson::get_active_implementation()->name().c_str());
    std::printf("%8s %9s %6s | %12s | %10s %7s | %12s %7s\n", "devices", "KiB", "runs", "Corvanta ms", "jq ms", "ratio",
                "simdjson ms", "ratio");
    std::vector<Sample> growth;
    bool isGood = true;
    for (const int count : {100, 1'000, 10'000, 100'000}) {
        const QByteArray list = deviceList(count);
        const simdjson::padded_string padded(list.constData(), static_cast<std::size_t>(list.size()));
        simdjson::dom::parser parser;
        std::vector<double> ours;
        std::vector<double> jq;
        std::vector<double> simd;
        std::vector<double> besideJq;
        std::vector<double> besideSimdjson;
        const int runs = std::clamp(400'000 / count, 9, 201);
        for (int run = -1; run < runs; ++run) {
            const double mine = readByCorvanta(list);
            const double theirs = readByJq(list);
            const double fastest = readBySimdjson(parser, padded);
            // The first run finds nothing in the caches of the processor.
            if (run < 0)
                continue;
            ours.push_back(mine);
            jq.push_back(theirs);
            simd.push_back(fastest);
            besideJq.push_back(mine / theirs);
            besideSimdjson.push_back(mine / fastest);
        }
        std::printf("%8d %9.1f %6d | %12.3f | %10.3f %7.3f | %12.3f %7.2f\n", count,
                    static_cast<double>(list.size()) / 1024, runs, median(ours), median(jq), median(besideJq),
                    median(simd), median(besideSimdjson));
        growth.push_back({static_cast<double>(count), median(ours)});
        if (count == goalCount)
            isGood = median(besideJq) < 1 && median(besideSimdjson) <= goalBesideSimdjson;
    }
    const double exponent = growthExponent(growth);
    std::printf("\nat %d devices faster than jq and at most %.0f times simdjson: %s\n", goalCount, goalBesideSimdjson,
                verdict(isGood));
    std::printf("time grows with the devices to the power of %.2f, at most %.1f: %s\n", exponent, goalExponent,
                verdict(exponent <= goalExponent));
    return isGood && exponent <= goalExponent ? 0 : 1;
}
