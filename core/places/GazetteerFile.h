// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"
#include "places/NameFolding.h"

#include <QFile>
#include <QString>

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace corvanta {

/// The bytes of a gazetteer, as docs/places.md describes them, mapped into memory and never copied as a whole.
///
/// Opening checks the sum over the file, so that a file that was cut off or changed is refused. What a file with a good
/// sum says is still not believed: a number that leads out of the file or out of a table reads as nothing.
class GazetteerFile {
public:
    /// Where in a place's names a word begins.
    struct WordStart {
        std::uint32_t place = 0;
        std::uint8_t ordinal = 0;
    };

    static constexpr std::uint8_t firstAlternative = 8;
    static constexpr std::uint8_t firstAlternativeWord = 56;
    /// More than any name or any list of alternatives has.
    static constexpr std::size_t longestText = 8192;

    /// Throws GazetteerError. The file must not be changed in place while this lives.
    explicit GazetteerFile(const QString& path);

    [[nodiscard]] std::uint32_t placeCount() const { return m_placeCount; }

    [[nodiscard]] std::uint32_t wordStartCount() const { return m_wordStartCount; }

    /// `index` below wordStartCount().
    [[nodiscard]] WordStart wordStart(std::uint32_t index) const {
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(m_wordStarts.data()) + std::size_t{index} * 3;
        const std::uint32_t value = bytes[0] | std::uint32_t{bytes[1]} << 8U | std::uint32_t{bytes[2]} << 16U;
        return {value >> 6U, static_cast<std::uint8_t>(value & 63U)};
    }

    static constexpr std::uint32_t wordBlock = 64;

    /// The most populous place of those whose words have the indices from `block` times wordBlock on.
    [[nodiscard]] std::uint32_t bestOfBlock(std::uint32_t block) const {
        const auto* const bytes = reinterpret_cast<const std::uint8_t*>(m_wordBlocks.data()) + std::size_t{block} * 3;
        return bytes[0] | std::uint32_t{bytes[1]} << 8U | std::uint32_t{bytes[2]} << 16U;
    }

    /// The first bytes of the text from the first of those words on, with zeroes behind where it is shorter.
    [[nodiscard]] std::string_view headOfBlock(std::uint32_t block) const {
        return {reinterpret_cast<const char*>(m_wordHeads.data()) + std::size_t{block} * 8, 8};
    }

    /// The latitude from the south pole, the longitude from the date line, both in hundred-thousandths of a degree.
    struct Position {
        std::uint32_t latitude = 0;
        std::uint32_t longitude = 0;
        std::uint32_t region = 0;
    };

    /// `place` below placeCount(), here and in what follows.
    [[nodiscard]] Position position(std::uint32_t place) const;
    [[nodiscard]] Coordinate coordinate(std::uint32_t place) const;
    [[nodiscard]] std::uint32_t population(std::uint32_t place) const;

    /// Appends nothing and keeps nothing: both overwrite `name` or `alternatives`, in UTF-8. The alternatives are
    /// folded and have line feeds between them.
    void readName(std::uint32_t place, std::string& name) const;
    void readAlternatives(std::uint32_t place, std::string& alternatives) const;

    struct Region {
        std::string_view name;
        std::string_view country;
    };

    [[nodiscard]] Region region(std::uint32_t place) const;

    /// The words by which people tell of the place's region and country, folded, with a space before each.
    [[nodiscard]] std::string_view regionWords(std::uint32_t place) const;

    /// The same of all regions, one after the other.
    [[nodiscard]] std::string_view allRegionWords() const {
        return {reinterpret_cast<const char*>(m_regionWords.data()), m_regionWords.size()};
    }

    /// A place before which every place is more populous than `people`, and with it perhaps a few that are.
    [[nodiscard]] std::uint32_t endOfMorePopulous(double people) const;

    [[nodiscard]] const NameFolding& folding() const { return m_folding; }

private:
    using Bytes = std::span<const std::byte>;

    struct PackedTexts {
        Bytes name;
        Bytes alternatives;
    };

    [[nodiscard]] Bytes map(const QString& path);
    void readSections(Bytes file);
    [[nodiscard]] PackedTexts packedTexts(std::uint32_t place) const;
    [[nodiscard]] std::string_view string(const std::byte* record) const;

    QFile m_file;
    std::uint32_t m_placeCount = 0;
    std::uint32_t m_wordStartCount = 0;
    Bytes m_positions;
    Bytes m_populationIndex;
    Bytes m_populationSteps;
    Bytes m_textIndex;
    Bytes m_texts;
    Bytes m_nameSymbols;
    Bytes m_alternativeSymbols;
    Bytes m_wordStarts;
    Bytes m_wordBlocks;
    Bytes m_wordHeads;
    Bytes m_regions;
    Bytes m_countries;
    Bytes m_strings;
    Bytes m_regionWords;
    NameFolding m_folding;
};

} // namespace corvanta
