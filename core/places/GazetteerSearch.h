// SPDX-License-Identifier: MIT
#pragma once

#include "places/GazetteerFile.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace corvanta {

/// One search in a gazetteer.
class GazetteerSearch {
public:
    GazetteerSearch(const GazetteerFile& file, std::size_t limit)
        : m_file(file)
        , m_limit(limit) {}

    /// The places for a folded text, the likeliest first.
    [[nodiscard]] std::vector<std::uint32_t> find(const std::string& text);

private:
    /// How a place matches, the best first.
    enum Match : std::uint8_t {
        wholeName,
        wholeAlternative,
        nameBegins,
        alternativeBegins,
        wordInName,
        wordInAlternative
    };

    static constexpr std::size_t matchCount = 6;

    struct Range {
        std::uint32_t begin = 0;
        std::uint32_t end = 0;

        [[nodiscard]] std::uint32_t size() const { return end - begin; }
    };

    struct Found {
        std::uint32_t place = 0;
        double weight = 0;
    };

    [[nodiscard]] std::string_view textFrom(GazetteerFile::WordStart start);
    [[nodiscard]] Range wordsBeginningWith(std::string_view text);
    [[nodiscard]] std::uint32_t endOfWhole(Range range, std::size_t length);

    /// What a search keeps of a class of matches: only the places before the one named can still be among the best.
    using Limits = std::array<std::uint32_t, matchCount>;

    void findBeginning(std::string_view text, double factor);
    void findAllWords(std::string_view text);
    void judge(std::uint32_t place, const std::vector<std::string_view>& words);
    /// Whether that is among the best so far.
    bool keep(std::uint32_t place, double weight);
    [[nodiscard]] Limits limitsFor(double factor) const;
    [[nodiscard]] static Match matchOf(std::uint8_t ordinal, bool isWhole);

    const GazetteerFile& m_file;
    const std::size_t m_limit;
    /// The best so far, at most as many as are wanted.
    std::vector<Found> m_found;
    std::string m_name;
    std::string m_folded;
    std::string m_others;
};

} // namespace corvanta
