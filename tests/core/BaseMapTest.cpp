// SPDX-License-Identifier: MIT
#include "map/BaseMap.h"

#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <random>
#include <set>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype headerSize = 32;

QByteArray wholeFile() {
    QFile file(QStringLiteral(CORVANTA_BASE_MAP));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    return file.readAll();
}

/// Writes down the checksum that the bytes have now, as somebody who means harm does.
void sign(QByteArray& bytes) {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (qsizetype at = headerSize; at < bytes.size(); at += 8) {
        std::uint8_t word[8] = {};
        std::memcpy(word, bytes.constData() + at, static_cast<std::size_t>(std::min<qsizetype>(8, bytes.size() - at)));
        hash = (hash ^ qFromLittleEndian<std::uint64_t>(word)) * 0x100000001b3U;
    }
    qToLittleEndian(hash, bytes.data() + 24);
    qToLittleEndian(static_cast<std::uint32_t>(bytes.size()), bytes.data() + 12);
}

/// Reads all that there is; how many features that were.
int readAll(const BaseMap& map) {
    int features = 0;
    for (const BaseMapLevel& level : map.levels()) {
        for (int row = 0; row < level.tilesAcross; ++row) {
            for (int column = 0; column < level.tilesAcross; ++column)
                map.visit(level, column, row, [&](BaseMapKind, std::span<const BaseMapPoint>) { ++features; });
        }
    }
    return features;
}

/// The tile of the finest level in which a place lies.
std::pair<int, int> tileOf(const BaseMapLevel& level, const Coordinate& coordinate) {
    const WorldPoint place = Mercator::project(coordinate);
    return {static_cast<int>(place.x * level.tilesAcross), static_cast<int>(place.y * level.tilesAcross)};
}

/// Whether a place is on land, by counting the outlines to the west of it in its tile.
bool isLand(const BaseMap& map, const Coordinate& coordinate) {
    const BaseMapLevel& level = map.levels().back();
    const auto [column, row] = tileOf(level, coordinate);
    const WorldPoint place = Mercator::project(coordinate);
    const double x = (place.x * level.tilesAcross - column) * level.extent;
    const double y = (place.y * level.tilesAcross - row) * level.extent;
    bool isInside = false;
    map.visit(level, column, row, [&](BaseMapKind kind, std::span<const BaseMapPoint> points) {
        if (kind != BaseMapKind::land)
            return;
        for (std::size_t index = 0; index < points.size(); ++index) {
            const BaseMapPoint& from = points[index];
            const BaseMapPoint& to = points[(index + 1) % points.size()];
            const bool crosses = (from.y > y) != (to.y > y);
            if (crosses && x < (to.x - from.x) * (y - from.y) / (to.y - from.y) + from.x)
                isInside = !isInside;
        }
    });
    return isInside;
}

TEST(BaseMap, KnowsLandFromWater) {
    const auto map = BaseMap::open(QStringLiteral(CORVANTA_BASE_MAP));
    ASSERT_TRUE(map);
    for (const Coordinate& land : {Coordinate{41.5, 1.5}, Coordinate{0, 25}, Coordinate{66, 179}, Coordinate{68, -179},
                                   Coordinate{-80, 100}, Coordinate{-85, 0}, Coordinate{39, -100}})
        EXPECT_TRUE(isLand(*map, land)) << land.latitude << ", " << land.longitude;
    for (const Coordinate& water : {Coordinate{40, 5}, Coordinate{0, -30}, Coordinate{0, 179.99},
                                    Coordinate{0, -179.99}, Coordinate{84, 0}, Coordinate{70, 179.5}})
        EXPECT_FALSE(isLand(*map, water)) << water.latitude << ", " << water.longitude;
}

TEST(BaseMap, HasAllKindsOfFeaturesAndNothingDamaged) {
    const auto map = BaseMap::open(QStringLiteral(CORVANTA_BASE_MAP));
    ASSERT_TRUE(map);
    for (const BaseMapLevel& level : map->levels()) {
        std::set<BaseMapKind> kinds;
        for (int row = 0; row < level.tilesAcross; ++row) {
            for (int column = 0; column < level.tilesAcross; ++column)
                ASSERT_TRUE(map->visit(level, column, row, [&](BaseMapKind kind, auto) { kinds.insert(kind); }));
        }
        EXPECT_TRUE(kinds.contains(BaseMapKind::land));
        EXPECT_TRUE(kinds.contains(BaseMapKind::countryBorder));
    }
    EXPECT_GT(map->labels().size(), 200U);
    EXPECT_TRUE(std::ranges::any_of(map->labels(), [](const BaseMapLabel& label) { return label.name == u"Spain"_s; }));
}

TEST(BaseMap, TakesTheLevelThatIsMeantForAZoom) {
    const auto map = BaseMap::open(QStringLiteral(CORVANTA_BASE_MAP));
    ASSERT_TRUE(map);
    EXPECT_EQ(&map->levelFor(-3), &map->levels().front());
    EXPECT_EQ(&map->levelFor(0), &map->levels().front());
    EXPECT_EQ(&map->levelFor(20), &map->levels().back());
    for (const BaseMapLevel& level : map->levels())
        EXPECT_EQ(&map->levelFor(level.minimumZoom), &level);
}

TEST(BaseMap, HasNoTilesOutsideOfTheWorld) {
    const auto map = BaseMap::open(QStringLiteral(CORVANTA_BASE_MAP));
    ASSERT_TRUE(map);
    for (const int outside : {-1, map->levels().back().tilesAcross}) {
        EXPECT_TRUE(map->visit(map->levels().back(), outside, 0, [](auto, auto) { ADD_FAILURE(); }));
        EXPECT_TRUE(map->visit(map->levels().back(), 0, outside, [](auto, auto) { ADD_FAILURE(); }));
    }
}

TEST(BaseMap, SaysWhatIsWrongWithAFile) {
    const QTemporaryDir folder;
    QString error;
    EXPECT_FALSE(BaseMap::open(folder.filePath(u"missing"_s), &error));
    EXPECT_FALSE(error.isEmpty());
    const auto problem = [&error](const QByteArray& bytes) {
        EXPECT_FALSE(BaseMap::read(bytes, &error));
        return error.toStdString();
    };
    QByteArray whole = wholeFile();
    EXPECT_EQ(problem({}), "the file is not a base map");
    EXPECT_EQ(problem("GIF89a and something more that is longer than a head"), "the file is not a base map");
    EXPECT_EQ(problem(whole.first(whole.size() / 2)), "the base map is not complete");
    EXPECT_EQ(problem(whole + "more"), "the base map is not complete");
    QByteArray newer = whole;
    newer[8] = 2;
    EXPECT_EQ(problem(newer), "the base map is of another version");
    QByteArray changed = whole;
    changed[whole.size() / 2] = static_cast<char>(~changed[whole.size() / 2]);
    EXPECT_EQ(problem(changed), "the base map's checksum is wrong");
}

TEST(BaseMap, OpensAnEmptyFileAsNone) {
    const QTemporaryDir folder;
    QFile file(folder.filePath(u"empty"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.close();
    EXPECT_FALSE(BaseMap::open(file.fileName()));
}

TEST(BaseMap, SurvivesFilesThatWereCutOffAndSigned) {
    const QByteArray whole = wholeFile();
    for (const qsizetype size : {qsizetype{33}, qsizetype{40}, qsizetype{96}, qsizetype{120}, qsizetype{5000},
                                 whole.size() / 2, whole.size() - 1}) {
        QByteArray cut = whole.first(size);
        sign(cut);
        if (const auto map = BaseMap::read(cut))
            readAll(*map);
    }
}

TEST(BaseMap, SurvivesDirectoriesThatPointAnywhere) {
    const QByteArray whole = wholeFile();
    std::mt19937 random(20090103);
    for (int round = 0; round < 60; ++round) {
        QByteArray changed = whole;
        // The head, the levels, and the directory of the first of them.
        for (int change = 0; change < 3; ++change) {
            const auto at = std::uniform_int_distribution<qsizetype>(10, 170)(random);
            if (at >= 24 && at < 32)
                continue;
            changed[at] = static_cast<char>(std::uniform_int_distribution(0, 255)(random));
        }
        sign(changed);
        if (const auto map = BaseMap::read(changed))
            readAll(*map);
    }
}

TEST(BaseMap, SurvivesTilesOfNoise) {
    const QByteArray whole = wholeFile();
    std::mt19937 random(711);
    for (int round = 0; round < 12; ++round) {
        QByteArray changed = whole;
        for (int change = 0; change < 4000; ++change) {
            const auto at = std::uniform_int_distribution<qsizetype>(96, whole.size() - 1)(random);
            changed[at] = static_cast<char>(std::uniform_int_distribution(0, 255)(random));
        }
        sign(changed);
        if (const auto map = BaseMap::read(changed))
            readAll(*map);
    }
}

TEST(BaseMap, ReportsATileThatEndsEarly) {
    // One level of one tile: a land outline that promises more points than there are bytes.
    QByteArray bytes(headerSize + 16 + 8, '\0');
    std::memcpy(bytes.data(), "CORVMAP", 8);
    qToLittleEndian<std::uint16_t>(1, bytes.data() + 8);
    qToLittleEndian<std::uint16_t>(1, bytes.data() + 10);
    bytes[headerSize + 1] = 12;
    qToLittleEndian<std::uint32_t>(headerSize + 16, bytes.data() + headerSize + 4);
    const QByteArray tile("\x01\x7f\x02\x02", 4);
    qToLittleEndian<std::uint32_t>(headerSize + 24, bytes.data() + headerSize + 16);
    qToLittleEndian<std::uint32_t>(headerSize + 28, bytes.data() + headerSize + 20);
    bytes += tile;
    qToLittleEndian(static_cast<std::uint32_t>(bytes.size()), bytes.data() + 16);
    sign(bytes);
    QString error;
    const auto map = BaseMap::read(bytes, &error);
    ASSERT_TRUE(map) << error.toStdString();
    EXPECT_FALSE(map->visit(map->levels().front(), 0, 0, [](auto, auto) { ADD_FAILURE(); }));
}

} // namespace

} // namespace corvanta
