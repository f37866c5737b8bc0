// SPDX-License-Identifier: MIT
//
// Gives every reader of outside bytes its seeds, whole, cut off and changed in many ways, without a fuzzer's engine:
// the same changes at each run, so that what fails once fails again. "./dev fuzz" looks further and longer.
#include <gtest/gtest.h>

#include <QByteArray>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include <cstdint>
#include <random>

#define CORVANTA_FUZZ_TARGET(name) extern "C" int name##Input(const std::uint8_t* data, std::size_t size);
#include "SmokeTargets.inc"
#undef CORVANTA_FUZZ_TARGET

namespace {

constexpr unsigned seed = 2'026;
constexpr int mostChanged = 20'000;
/// A reader with large inputs gets fewer of them; the whole has to stay a matter of seconds.
constexpr qint64 changingTime = 1'500;
/// Far more than the slowest reader needs for the largest seed, and far less than one that never ends.
constexpr qint64 longestReading = 5'000;

using Target = int (*)(const std::uint8_t*, std::size_t);

struct Case {
    const char* name;
    Target target;
};

void PrintTo(const Case& value, std::ostream* stream) {
    *stream << value.name;
}

void give(Target target, const QByteArray& input) {
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(target(reinterpret_cast<const std::uint8_t*>(input.constData()), static_cast<std::size_t>(input.size())),
              0);
    EXPECT_LT(timer.elapsed(), longestReading) << input.size() << " bytes";
}

/// One to four changes of the kinds that break readers: other bytes, less, more, and parts in another place.
QByteArray changed(QByteArray input, std::mt19937& random) {
    static const QByteArrayList pieces{"\"",
                                       "{",
                                       "}",
                                       "[",
                                       "]",
                                       ",",
                                       ":",
                                       "\\",
                                       "\\u0000",
                                       "-1",
                                       "1e999",
                                       "0",
                                       "\xFF",
                                       "\xC3",
                                       "null",
                                       "\xE2\x80\xAE",
                                       "99999999999999999999",
                                       "\n",
                                       "%",
                                       "/"};
    const auto below = [&random](qsizetype end) {
        return static_cast<qsizetype>(random() % static_cast<std::uint64_t>(end));
    };
    for (auto changes = 1 + random() % 4; changes > 0; --changes) {
        if (input.isEmpty()) {
            input = pieces.at(below(pieces.size()));
            continue;
        }
        const qsizetype at = below(input.size());
        const qsizetype length = 1 + below(std::min<qsizetype>(input.size() - at, 64));
        switch (random() % 6) {
        case 0:
            input[at] = static_cast<char>(random() % 256);
            break;
        case 1:
            input[at] = static_cast<char>(input.at(at) ^ (1 << random() % 8));
            break;
        case 2:
            input.remove(at, length);
            break;
        case 3:
            input.insert(at, pieces.at(below(pieces.size())));
            break;
        case 4:
            input.insert(below(input.size()), input.mid(at, length));
            break;
        default:
            input.truncate(at);
            break;
        }
    }
    return input;
}

QByteArrayList seedsOf(const QString& name) {
    QByteArrayList seeds;
    const QDir folder(QStringLiteral(CORVANTA_FUZZ_SEEDS) + u'/' + name);
    for (const QString& entry : folder.entryList(QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(entry));
        if (file.open(QIODevice::ReadOnly))
            seeds.append(file.readAll());
    }
    return seeds;
}

class FuzzSmoke : public ::testing::TestWithParam<Case> {};

TEST_P(FuzzSmoke, BearsItsSeedsAndWhatBecomesOfThem) {
    const Target target = GetParam().target;
    const QByteArrayList seeds = seedsOf(QString::fromLatin1(GetParam().name));
    ASSERT_FALSE(seeds.isEmpty());
    give(target, {});
    for (const QByteArray& input : seeds)
        give(target, input);
    std::mt19937 random(seed);
    QElapsedTimer timer;
    timer.start();
    int given = 0;
    while (given < mostChanged && !timer.hasExpired(changingTime) && !HasFailure()) {
        give(target, changed(seeds.at(given % seeds.size()), random));
        ++given;
    }
    EXPECT_GT(given, 0);
}

const std::vector<Case> targets{
#define CORVANTA_FUZZ_TARGET(name) {#name, &name##Input},
#include "SmokeTargets.inc"
#undef CORVANTA_FUZZ_TARGET
};

INSTANTIATE_TEST_SUITE_P(All, FuzzSmoke, ::testing::ValuesIn(targets),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
