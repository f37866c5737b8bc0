// SPDX-License-Identifier: MIT
#include "map/BaseMap.h"

#include "support/MappedPages.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char magic[] = "CORVMAP";
constexpr std::uint16_t version = 1;
constexpr std::size_t headerSize = 32;
constexpr std::size_t levelSize = 16;
constexpr int mostLevels = 8;
constexpr int mostGridBits = 8;
constexpr int mostCoordinateBits = 24;
constexpr qint64 mostBytes = 64 << 20;
constexpr std::uint32_t mostLabels = 10000;
/// As far outside of its tile as a point may be, in extents.
constexpr std::int64_t overhang = 2;

using Bytes = std::span<const std::uint8_t>;

template<typename Number>
Number numberAt(Bytes bytes, std::size_t offset) {
    return qFromLittleEndian<Number>(bytes.data() + offset);
}

/// FNV-1a over the little-endian 64-bit words of the bytes, the last one filled up with zeros.
std::uint64_t checksum(Bytes bytes) {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (std::size_t at = 0; at < bytes.size(); at += 8) {
        std::uint8_t word[8] = {};
        std::memcpy(word, bytes.data() + at, std::min<std::size_t>(8, bytes.size() - at));
        hash = (hash ^ qFromLittleEndian<std::uint64_t>(word)) * 0x100000001b3U;
    }
    return hash;
}

/// Reads forwards and never beyond the end.
class Reader {
public:
    explicit Reader(Bytes bytes)
        : m_bytes(bytes) {}

    [[nodiscard]] bool isAtEnd() const { return m_at == m_bytes.size(); }

    [[nodiscard]] std::size_t left() const { return m_bytes.size() - m_at; }

    [[nodiscard]] std::optional<std::uint32_t> varint() {
        std::uint32_t value = 0;
        for (unsigned shift = 0; shift < 32 && m_at < m_bytes.size(); shift += 7) {
            const std::uint8_t byte = m_bytes[m_at++];
            value |= static_cast<std::uint32_t>(byte & 0x7FU) << shift;
            if ((byte & 0x80U) == 0)
                return value;
        }
        return std::nullopt;
    }

    [[nodiscard]] std::optional<std::int32_t> difference() {
        const auto value = varint();
        if (!value)
            return std::nullopt;
        return static_cast<std::int32_t>(*value >> 1U) ^ -static_cast<std::int32_t>(*value & 1U);
    }

    [[nodiscard]] std::optional<Bytes> take(std::size_t count) {
        if (count > left())
            return std::nullopt;
        const Bytes taken = m_bytes.subspan(m_at, count);
        m_at += count;
        return taken;
    }

private:
    Bytes m_bytes;
    std::size_t m_at = 0;
};

bool readPoints(Reader& reader, std::int64_t extent, std::vector<BaseMapPoint>& points) {
    points.clear();
    const auto count = reader.varint();
    // A point takes two bytes at least.
    if (!count || *count > reader.left() / 2)
        return false;
    points.reserve(*count);
    std::int64_t x = 0;
    std::int64_t y = 0;
    for (std::uint32_t number = 0; number < *count; ++number) {
        const auto right = reader.difference();
        const auto down = reader.difference();
        if (!right || !down)
            return false;
        x += *right;
        y += *down;
        if (std::min(x, y) < -overhang * extent || std::max(x, y) > overhang * extent)
            return false;
        points.push_back({static_cast<std::int32_t>(x), static_cast<std::int32_t>(y)});
    }
    return true;
}

bool isKind(std::uint32_t number) {
    return number >= std::to_underlying(BaseMapKind::land) && number <= std::to_underlying(BaseMapKind::river);
}

} // namespace

std::unique_ptr<BaseMap> BaseMap::open(const QString& path, QString* error) {
    std::unique_ptr<BaseMap> map(new BaseMap);
    map->m_file.setFileName(path);
    QString problem;
    if (!map->m_file.open(QIODevice::ReadOnly)) {
        problem = map->m_file.errorString();
    } else if (map->m_file.size() > mostBytes) {
        problem = u"the file is too large"_s;
    } else {
        const qint64 size = map->m_file.size();
        const uchar* const data = size > 0 ? map->m_file.map(0, size) : nullptr;
        if (data != nullptr)
            map->m_data = Bytes(data, static_cast<std::size_t>(size));
        problem = map->parse();
        if (data != nullptr)
            letMappedPagesGo(data, map->m_data.size());
    }
    if (error != nullptr)
        *error = problem;
    return problem.isEmpty() ? std::move(map) : nullptr;
}

std::unique_ptr<BaseMap> BaseMap::read(const QByteArray& bytes, QString* error) {
    std::unique_ptr<BaseMap> map(new BaseMap);
    map->m_bytes = bytes;
    map->m_data = Bytes(reinterpret_cast<const std::uint8_t*>(map->m_bytes.constData()),
                        static_cast<std::size_t>(map->m_bytes.size()));
    const QString problem = map->parse();
    if (error != nullptr)
        *error = problem;
    return problem.isEmpty() ? std::move(map) : nullptr;
}

QString BaseMap::parse() {
    if (m_data.size() < headerSize || std::memcmp(m_data.data(), magic, sizeof magic) != 0)
        return u"the file is not a base map"_s;
    if (numberAt<std::uint16_t>(m_data, 8) != version)
        return u"the base map is of another version"_s;
    if (numberAt<std::uint32_t>(m_data, 12) != m_data.size())
        return u"the base map is not complete"_s;
    if (numberAt<std::uint64_t>(m_data, 24) != checksum(m_data.subspan(headerSize)))
        return u"the base map's checksum is wrong"_s;
    if (const QString problem = parseLevels(numberAt<std::uint16_t>(m_data, 10)); !problem.isEmpty())
        return problem;
    if (!parseLabels(numberAt<std::uint32_t>(m_data, 16), numberAt<std::uint32_t>(m_data, 20)))
        return u"the base map's labels are damaged"_s;
    return {};
}

QString BaseMap::parseLevels(int count) {
    const QString damaged = u"the base map's levels are damaged"_s;
    if (count < 1 || count > mostLevels || m_data.size() - headerSize < static_cast<std::size_t>(count) * levelSize)
        return damaged;
    for (int index = 0; index < count; ++index) {
        const std::size_t at = headerSize + static_cast<std::size_t>(index) * levelSize;
        const int gridBits = m_data[at];
        const int coordinateBits = m_data[at + 1];
        if (gridBits > mostGridBits || coordinateBits > mostCoordinateBits || coordinateBits <= gridBits)
            return damaged;
        BaseMapLevel level;
        level.minimumZoom = numberAt<std::uint16_t>(m_data, at + 2) / 256.0;
        level.tilesAcross = 1 << gridBits;
        level.extent = 1 << (coordinateBits - gridBits);
        level.directory = numberAt<std::uint32_t>(m_data, at + 4);
        const std::size_t offsets =
            (static_cast<std::size_t>(level.tilesAcross) * static_cast<std::size_t>(level.tilesAcross) + 1) * 4;
        const bool isInOrder = m_levels.empty() || m_levels.back().minimumZoom <= level.minimumZoom;
        if (!isInOrder || level.directory > m_data.size() || m_data.size() - level.directory < offsets)
            return damaged;
        m_levels.push_back(level);
    }
    return {};
}

bool BaseMap::parseLabels(std::uint32_t offset, std::uint32_t count) {
    if (offset > m_data.size() || count > mostLabels)
        return false;
    Reader reader(m_data.subspan(offset));
    for (std::uint32_t number = 0; number < count; ++number) {
        const auto head = reader.take(11);
        const auto text = head ? reader.take((*head)[10]) : std::nullopt;
        if (!text || (*head)[0] < 1 || (*head)[0] > 3)
            return false;
        constexpr double unit = 1.0 / (1U << 31U);
        m_labels.push_back(
            {static_cast<BaseMapLabelKind>((*head)[0]),
             (*head)[1] / 16.0,
             QString::fromUtf8(reinterpret_cast<const char*>(text->data()), static_cast<qsizetype>(text->size())),
             {numberAt<std::uint32_t>(*head, 2) * unit, numberAt<std::uint32_t>(*head, 6) * unit}});
    }
    return true;
}

const BaseMapLevel& BaseMap::levelFor(double zoom) const {
    const auto after = std::ranges::find_if(m_levels, [zoom](const auto& level) { return level.minimumZoom > zoom; });
    return after == m_levels.begin() ? m_levels.front() : *std::prev(after);
}

bool BaseMap::visit(const BaseMapLevel& level, int column, int row, const Visitor& visitor) const {
    if (column < 0 || row < 0 || column >= level.tilesAcross || row >= level.tilesAcross)
        return true;
    const auto number =
        static_cast<std::size_t>(row) * static_cast<std::size_t>(level.tilesAcross) + static_cast<std::size_t>(column);
    const auto from = numberAt<std::uint32_t>(m_data, level.directory + number * 4);
    const auto to = numberAt<std::uint32_t>(m_data, level.directory + number * 4 + 4);
    if (from > to || to > m_data.size())
        return false;
    Reader reader(m_data.subspan(from, to - from));
    std::vector<BaseMapPoint> points;
    while (!reader.isAtEnd()) {
        const auto kind = reader.varint();
        if (!kind || !isKind(*kind) || !readPoints(reader, level.extent, points))
            return false;
        visitor(static_cast<BaseMapKind>(*kind), points);
    }
    return true;
}

} // namespace corvanta
