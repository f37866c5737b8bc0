// SPDX-License-Identifier: MIT
#include "places/GazetteerFile.h"

#include "places/GazetteerError.h"
#include "support/MappedPages.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <optional>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

using Bytes = std::span<const std::byte>;

constexpr std::size_t headerSize = 32;
constexpr std::size_t sectionCount = 15;
constexpr std::uint32_t version = 1;
constexpr qint64 shortestFile = headerSize + sectionCount * 8;
constexpr qint64 largestFile = 64'000'000;
constexpr std::uint32_t populationBlock = 64;
constexpr std::uint32_t textBlock = 16;
constexpr std::size_t symbolSize = 9;
constexpr std::size_t symbolCount = 255;
constexpr std::size_t regionSize = 12;
constexpr std::size_t countrySize = 8;
constexpr std::uint32_t mostPlaces = 1U << 18U;

[[noreturn]] void refuse(const QString& detail) {
    throw GazetteerError(GazetteerError::Kind::damaged, detail);
}

void require(bool isSo, const QString& detail) {
    if (!isSo)
        refuse(detail);
}

template<typename Number>
Number number(const std::byte* at) {
    return qFromLittleEndian<Number>(at);
}

/// Four interleaved FNV-1a sums of the 64-bit words, joined by a fifth: about as fast as the memory.
std::uint64_t checksum(Bytes bytes) {
    constexpr std::uint64_t basis = 0xcbf29ce484222325;
    constexpr std::uint64_t prime = 0x100000001b3;
    std::array<std::uint64_t, 4> lanes{basis, basis + 1, basis + 2, basis + 3};
    const auto mix = [](std::uint64_t& sum, std::uint64_t word) { sum = (sum ^ word) * prime; };
    std::size_t at = 0;
    for (; at + 32 <= bytes.size(); at += 32)
        for (std::size_t lane = 0; lane < lanes.size(); ++lane)
            mix(lanes[lane], number<std::uint64_t>(bytes.data() + at + lane * 8));
    for (std::size_t lane = 0; at < bytes.size(); at += 8, ++lane)
        mix(lanes[lane], number<std::uint64_t>(bytes.data() + at));
    std::uint64_t sum = basis;
    for (const std::uint64_t lane : lanes)
        mix(sum, lane);
    return sum;
}

/// Reads forward and never past the end.
class Cursor {
public:
    explicit Cursor(Bytes bytes)
        : m_bytes(bytes) {}

    /// A number of seven bits a byte, the lowest first; nothing when the bytes end before it does.
    std::optional<std::uint32_t> varint() {
        std::uint32_t value = 0;
        for (unsigned shift = 0; shift < 32 && !m_bytes.empty(); shift += 7) {
            const auto byte = std::to_integer<std::uint32_t>(m_bytes.front());
            m_bytes = m_bytes.subspan(1);
            value |= (byte & 0x7FU) << shift;
            if (byte < 0x80)
                return value;
        }
        return std::nullopt;
    }

    Bytes take(std::size_t count) {
        const Bytes taken = m_bytes.first(std::min(count, m_bytes.size()));
        m_bytes = m_bytes.subspan(taken.size());
        return taken;
    }

private:
    Bytes m_bytes;
};

Bytes from(Bytes section, std::size_t offset) {
    return section.subspan(std::min(offset, section.size()));
}

void unpack(Bytes packed, Bytes symbols, std::string& text) {
    // A symbol is copied with all of its eight bytes, whatever its length.
    std::array<char, GazetteerFile::longestText + 8> buffer; // NOLINT(*-member-init): filled as far as it is read
    std::size_t size = 0;
    for (std::size_t at = 0; at < packed.size() && size < GazetteerFile::longestText; ++at) {
        const auto code = std::to_integer<std::size_t>(packed[at]);
        if (code < symbolCount) {
            const std::byte* const symbol = symbols.data() + code * symbolSize;
            std::memcpy(buffer.data() + size, symbol + 1, symbolSize - 1);
            size += std::to_integer<std::size_t>(symbol[0]);
        } else if (++at < packed.size()) {
            buffer[size++] = static_cast<char>(packed[at]);
        }
    }
    text.assign(buffer.data(), size);
}

void requireSymbols(Bytes symbols) {
    require(symbols.size() == symbolCount * symbolSize, u"a table of symbols has another size"_s);
    for (std::size_t code = 0; code < symbolCount; ++code) {
        const auto length = std::to_integer<std::size_t>(symbols[code * symbolSize]);
        require(length >= 1 && length < symbolSize, u"a symbol has no length that there is"_s);
    }
}

std::size_t blocks(std::uint32_t count, std::uint32_t size) {
    return (std::size_t{count} + size - 1) / size;
}

} // namespace

GazetteerFile::GazetteerFile(const QString& path) {
    const Bytes mapped = map(path);
    readSections(mapped);
    letMappedPagesGo(mapped.data(), mapped.size());
}

GazetteerFile::Bytes GazetteerFile::map(const QString& path) {
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::ReadOnly))
        throw GazetteerError(GazetteerError::Kind::unreadable, m_file.errorString());
    const qint64 size = m_file.size();
    require(size >= shortestFile, u"it is too short"_s);
    require(size <= largestFile, u"it is too long"_s);
    const uchar* const bytes = m_file.map(0, size);
    if (!bytes)
        throw GazetteerError(GazetteerError::Kind::unreadable, m_file.errorString());
    return {reinterpret_cast<const std::byte*>(bytes), static_cast<std::size_t>(size)};
}

void GazetteerFile::readSections(Bytes file) {
    const auto word = [file](std::size_t offset) { return number<std::uint32_t>(file.data() + offset); };
    require(std::memcmp(file.data(), "CORVPLAC", 8) == 0, u"it is a file of another kind"_s);
    require(word(8) == version, u"it has another version"_s);
    require(word(12) == sectionCount, u"it has another number of sections"_s);
    require(word(16) == file.size() && file.size() % 8 == 0, u"it is not whole"_s);
    require(checksum(file.subspan(headerSize)) == number<std::uint64_t>(file.data() + 24), u"its checksum is wrong"_s);

    std::array<Bytes, sectionCount> sections;
    for (std::size_t index = 0; index < sectionCount; ++index) {
        const std::size_t offset = word(headerSize + index * 8);
        const std::size_t length = word(headerSize + index * 8 + 4);
        require(offset % 8 == 0 && offset <= file.size() && length <= file.size() - offset,
                u"a section is outside of it"_s);
        sections.at(index) = file.subspan(offset, length);
    }
    Bytes folding;
    const std::array<Bytes*, sectionCount> members{
        &m_positions,   &m_populationIndex,    &m_populationSteps, &m_textIndex,   &m_texts,
        &m_nameSymbols, &m_alternativeSymbols, &m_wordStarts,      &m_wordBlocks,  &m_wordHeads,
        &m_regions,     &m_countries,          &m_strings,         &m_regionWords, &folding};
    for (std::size_t index = 0; index < sectionCount; ++index)
        *members.at(index) = sections.at(index);

    require(m_positions.size() % 8 == 0 && m_positions.size() / 8 <= mostPlaces, u"the positions are not whole"_s);
    m_placeCount = static_cast<std::uint32_t>(m_positions.size() / 8);
    require(m_populationIndex.size() == blocks(m_placeCount, populationBlock) * 8, u"the populations are not whole"_s);
    require(m_textIndex.size() == blocks(m_placeCount, textBlock) * 4, u"the names are not whole"_s);
    requireSymbols(m_nameSymbols);
    requireSymbols(m_alternativeSymbols);
    require(m_wordStarts.size() % 3 == 0, u"the index of words is not whole"_s);
    m_wordStartCount = static_cast<std::uint32_t>(m_wordStarts.size() / 3);
    require(m_wordBlocks.size() == blocks(m_wordStartCount, wordBlock) * 3, u"the index of words is not whole"_s);
    require(m_wordHeads.size() == blocks(m_wordStartCount, wordBlock) * 8, u"the index of words is not whole"_s);
    require(m_regions.size() % regionSize == 0, u"the regions are not whole"_s);
    require(m_countries.size() % countrySize == 0, u"the countries are not whole"_s);
    require(folding.size() % NameFolding::entrySize == 0, u"the folding is not whole"_s);
    m_folding = NameFolding(folding);
}

GazetteerFile::Position GazetteerFile::position(std::uint32_t place) const {
    const auto value = number<std::uint64_t>(m_positions.data() + std::size_t{place} * 8);
    return {static_cast<std::uint32_t>(value & 0x1FFFFFFU), static_cast<std::uint32_t>(value >> 25U & 0x3FFFFFFU),
            static_cast<std::uint32_t>(value >> 51U)};
}

Coordinate GazetteerFile::coordinate(std::uint32_t place) const {
    // A quotient of whole numbers is the nearest number to the decimal that the source has.
    const Position found = position(place);
    return {.latitude = (static_cast<double>(found.latitude) - 90e5) / 1e5,
            .longitude = (static_cast<double>(found.longitude) - 180e5) / 1e5};
}

std::uint32_t GazetteerFile::population(std::uint32_t place) const {
    const std::byte* const block = m_populationIndex.data() + std::size_t{place / populationBlock} * 8;
    auto value = number<std::uint32_t>(block);
    Cursor steps(from(m_populationSteps, number<std::uint32_t>(block + 4)));
    for (std::uint32_t count = place % populationBlock; count > 0; --count)
        value -= std::min(value, steps.varint().value_or(0));
    return value;
}

GazetteerFile::PackedTexts GazetteerFile::packedTexts(std::uint32_t place) const {
    Cursor cursor(from(m_texts, number<std::uint32_t>(m_textIndex.data() + std::size_t{place / textBlock} * 4)));
    PackedTexts texts;
    for (std::uint32_t skipped = 0; skipped <= place % textBlock; ++skipped) {
        const std::uint32_t head = cursor.varint().value_or(0);
        texts.name = cursor.take(head / 2);
        texts.alternatives = head % 2 != 0 ? cursor.take(cursor.varint().value_or(0)) : Bytes();
    }
    return texts;
}

void GazetteerFile::readName(std::uint32_t place, std::string& name) const {
    unpack(packedTexts(place).name, m_nameSymbols, name);
}

void GazetteerFile::readAlternatives(std::uint32_t place, std::string& alternatives) const {
    unpack(packedTexts(place).alternatives, m_alternativeSymbols, alternatives);
}

std::string_view GazetteerFile::string(const std::byte* record) const {
    const Bytes bytes = from(m_strings, number<std::uint32_t>(record));
    const std::size_t length = std::min<std::size_t>(number<std::uint16_t>(record + 4), bytes.size());
    return {reinterpret_cast<const char*>(bytes.data()), length};
}

GazetteerFile::Region GazetteerFile::region(std::uint32_t place) const {
    const std::size_t offset = std::size_t{position(place).region} * regionSize;
    if (offset >= m_regions.size())
        return {};
    const std::byte* const record = m_regions.data() + offset;
    Region found;
    found.name = string(record);
    const std::size_t country = std::size_t{number<std::uint16_t>(record + 6)} * countrySize;
    if (country < m_countries.size())
        found.country = string(m_countries.data() + country);
    return found;
}

std::string_view GazetteerFile::regionWords(std::uint32_t place) const {
    const std::size_t offset = std::size_t{position(place).region} * regionSize;
    if (offset >= m_regions.size())
        return {};
    const std::string_view all = allRegionWords();
    const std::size_t begin = number<std::uint32_t>(m_regions.data() + offset + 8);
    return begin < all.size() ? all.substr(begin, all.find('\n', begin) - begin) : std::string_view();
}

std::uint32_t GazetteerFile::endOfMorePopulous(double people) const {
    std::size_t low = 0;
    std::size_t high = m_populationIndex.size() / 8;
    while (low < high) {
        const std::size_t middle = low + (high - low) / 2;
        if (number<std::uint32_t>(m_populationIndex.data() + middle * 8) > people)
            low = middle + 1;
        else
            high = middle;
    }
    return static_cast<std::uint32_t>(low) * populationBlock;
}

} // namespace corvanta
