// SPDX-License-Identifier: MIT
// A base map from anybody, signed as whoever means harm would do it.
#include "Input.h"
#include "map/BaseMap.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>

using namespace corvanta;

namespace {

constexpr qsizetype headerSize = 32;

/// Size and checksum as they must be, so that the rest is looked at.
QByteArray signedFile(QByteArray file) {
    file.resize(std::max(file.size(), headerSize));
    qToLittleEndian(static_cast<std::uint32_t>(file.size()), file.data() + 12);
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (qsizetype at = headerSize; at < file.size(); at += 8) {
        std::uint8_t word[8] = {};
        std::memcpy(word, file.constData() + at, static_cast<std::size_t>(std::min<qsizetype>(8, file.size() - at)));
        hash = (hash ^ qFromLittleEndian<std::uint64_t>(word)) * 0x100000001b3U;
    }
    qToLittleEndian(hash, file.data() + 24);
    return file;
}

void read(const BaseMap& map) {
    fuzz::require(!map.levels().empty(), "there is a level");
    for (const double zoom : {0.0, 7.5, 30.0}) {
        const BaseMapLevel& level = map.levelFor(zoom);
        // Each tile may lead to the whole file, so that all of them would take minutes.
        constexpr int most = 4;
        for (int row = -1; row <= std::min(level.tilesAcross, most); ++row)
            for (int column = -1; column <= std::min(level.tilesAcross, most); ++column)
                map.visit(level, column, row, [&](BaseMapKind, std::span<const BaseMapPoint> points) {
                    for (const BaseMapPoint& point : points)
                        fuzz::require(std::max(std::abs(point.x), std::abs(point.y)) <= 2 * level.extent,
                                      "a point is near its tile");
                });
    }
    for (const BaseMapLabel& label : map.labels())
        fuzz::require(label.place.x >= 0 && label.place.y >= 0, "a label is somewhere");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    QString error;
    const auto map = BaseMap::read(signedFile(fuzz::inputBytes(data, size)), &error);
    fuzz::require(error.isEmpty() == (map != nullptr), "an error says what is wrong");
    if (map)
        read(*map);
    return 0;
}
