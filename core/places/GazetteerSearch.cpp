// SPDX-License-Identifier: MIT
#include "places/GazetteerSearch.h"

#include <algorithm>

namespace corvanta {

namespace {

constexpr std::array<double, 6> weights{100, 20, 1, 1.0 / 20, 1.0 / 20, 1.0 / 400};
/// How many of the most populous places are looked at for words in any order, for each word.
constexpr std::size_t mostCandidates = 400;
constexpr std::size_t mostWords = 6;
/// With fewer answers than these, "ue" is also tried as the "ü" that somebody could not type.
constexpr std::size_t fewAnswers = 5;

/// The text from the `ordinal`-th word on; empty when there are fewer.
std::string_view fromWord(std::string_view text, std::size_t ordinal) {
    for (; ordinal > 0; --ordinal) {
        const std::size_t space = text.find(' ');
        if (space == std::string_view::npos)
            return {};
        text.remove_prefix(space + 1);
    }
    return text;
}

std::vector<std::string_view> parts(std::string_view text, char separator) {
    std::vector<std::string_view> found;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(separator), text.size());
        if (end > 0)
            found.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return found;
}

/// Whether a word of the text begins with `beginning`.
bool hasWord(std::string_view text, std::string_view beginning) {
    for (std::size_t at = 0; at <= text.size();) {
        if (text.substr(at).starts_with(beginning))
            return true;
        const std::size_t next = text.find_first_of(" \n", at);
        if (next == std::string_view::npos)
            return false;
        at = next + 1;
    }
    return false;
}

/// Whether every word of the text is one of `words`.
bool consistsOf(std::string_view text, const std::vector<std::string_view>& words) {
    return std::ranges::all_of(
        parts(text, ' '), [&words](std::string_view word) { return std::ranges::find(words, word) != words.end(); });
}

/// The text with "ä", "ö", "ü" and "å" for what people write who cannot type them.
std::string withoutDigraphs(std::string_view text) {
    std::string plain;
    for (std::size_t at = 0; at < text.size(); ++at) {
        plain += text[at];
        const std::string_view pair = text.substr(at, 2);
        if (pair == "ae" || pair == "oe" || pair == "ue" || pair == "aa")
            ++at;
    }
    return plain;
}

/// The lowest of many numbers, each once, in order.
class Lowest {
public:
    explicit Lowest(std::size_t limit)
        : m_limit(limit) {}

    void add(std::uint32_t value) {
        if (m_values.size() == m_limit && (m_limit == 0 || value >= m_values.back()))
            return;
        const auto place = std::ranges::lower_bound(m_values, value);
        if (place != m_values.end() && *place == value)
            return;
        m_values.insert(place, value);
        if (m_values.size() > m_limit)
            m_values.pop_back();
    }

    [[nodiscard]] const std::vector<std::uint32_t>& values() const { return m_values; }

private:
    std::size_t m_limit;
    std::vector<std::uint32_t> m_values;
};

} // namespace

std::string_view GazetteerSearch::textFrom(GazetteerFile::WordStart start) {
    if (start.place >= m_file.placeCount())
        return {};
    if (start.ordinal < GazetteerFile::firstAlternative) {
        m_file.readName(start.place, m_name);
        m_file.folding().fold(m_name, m_folded);
        return fromWord(m_folded, start.ordinal);
    }
    m_file.readAlternatives(start.place, m_others);
    std::size_t inner = start.ordinal;
    inner -= inner < GazetteerFile::firstAlternativeWord ? GazetteerFile::firstAlternative
                                                         : GazetteerFile::firstAlternativeWord;
    for (const std::string_view alternative : parts(m_others, '\n')) {
        if (start.ordinal < GazetteerFile::firstAlternativeWord) {
            if (inner-- == 0)
                return alternative;
            continue;
        }
        const auto spaces = static_cast<std::size_t>(std::ranges::count(alternative, ' '));
        if (inner < spaces)
            return fromWord(alternative, inner + 1);
        inner -= spaces;
    }
    return {};
}

GazetteerSearch::Range GazetteerSearch::wordsBeginningWith(std::string_view text) {
    const auto boundary = [&](std::uint32_t low, auto&& isBefore) {
        std::uint32_t high = m_file.wordStartCount();
        while (low < high) {
            const std::uint32_t middle = low + (high - low) / 2;
            if (isBefore(textFrom(m_file.wordStart(middle)).substr(0, text.size())))
                low = middle + 1;
            else
                high = middle;
        }
        return low;
    };
    const std::uint32_t begin = boundary(0, [text](std::string_view head) { return head < text; });
    return {begin, boundary(begin, [text](std::string_view head) { return head <= text; })};
}

std::uint32_t GazetteerSearch::endOfWhole(Range range, std::size_t length) {
    while (range.begin < range.end) {
        const std::uint32_t middle = range.begin + range.size() / 2;
        if (textFrom(m_file.wordStart(middle)).size() <= length)
            range.begin = middle + 1;
        else
            range.end = middle;
    }
    return range.begin;
}

std::vector<std::uint32_t> GazetteerSearch::find(const std::string& text) {
    if (text.empty() || m_limit == 0)
        return {};
    m_found.clear();
    findBeginning(text, 1);
    if (m_found.size() < m_limit && text.contains(' '))
        findAllWords(text);
    if (m_found.size() < fewAnswers) {
        if (const std::string plain = withoutDigraphs(text); plain != text)
            findBeginning(plain, weights[alternativeBegins]);
    }
    return best();
}

void GazetteerSearch::findBeginning(std::string_view text, double factor) {
    const Range range = wordsBeginningWith(text);
    const std::uint32_t endOfExact = endOfWhole(range, text.size());
    std::array<Lowest, matchCount> places{Lowest(m_limit), Lowest(m_limit), Lowest(m_limit),
                                          Lowest(m_limit), Lowest(m_limit), Lowest(m_limit)};
    for (std::uint32_t index = range.begin; index < range.end; ++index) {
        const auto start = m_file.wordStart(index);
        const bool isWhole = index < endOfExact;
        Match match = wordInName;
        if (start.ordinal == 0)
            match = isWhole ? wholeName : nameBegins;
        else if (start.ordinal >= GazetteerFile::firstAlternativeWord)
            match = wordInAlternative;
        else if (start.ordinal >= GazetteerFile::firstAlternative)
            match = isWhole ? wholeAlternative : alternativeBegins;
        places[match].add(start.place);
    }
    for (std::size_t match = 0; match < matchCount; ++match)
        for (const std::uint32_t place : places[match].values())
            if (place < m_file.placeCount())
                m_found.push_back({place, (m_file.population(place) + 1.0) * weights[match] * factor});
}

void GazetteerSearch::findAllWords(std::string_view text) {
    const auto words = parts(text, ' ');
    if (words.size() < 2 || words.size() > mostWords)
        return;
    Lowest candidates(mostCandidates * 2);
    for (const std::string_view word : words) {
        const Range range = wordsBeginningWith(word);
        Lowest places(mostCandidates);
        for (std::uint32_t index = range.begin; index < range.end; ++index)
            places.add(m_file.wordStart(index).place);
        for (const std::uint32_t place : places.values())
            candidates.add(place);
    }
    for (const std::uint32_t place : candidates.values())
        if (place < m_file.placeCount())
            judge(place, words);
}

void GazetteerSearch::judge(std::uint32_t place, const std::vector<std::string_view>& words) {
    m_file.readName(place, m_name);
    m_file.folding().fold(m_name, m_folded);
    std::size_t inName = 0;
    std::vector<std::string_view> elsewhere;
    for (const std::string_view word : words) {
        if (hasWord(m_folded, word))
            ++inName;
        else
            elsewhere.push_back(word);
    }
    if (!elsewhere.empty()) {
        const GazetteerFile::Region region = m_file.region(place);
        std::string around;
        std::string folded;
        for (const std::string_view part : {region.name, region.abbreviation, region.country, region.countryCode}) {
            m_file.folding().fold(part, folded);
            around += folded + '\n';
        }
        m_file.readAlternatives(place, m_others);
        for (const std::string_view word : elsewhere) {
            if (!hasWord(around, word) && !hasWord(m_others, word))
                return;
        }
    }
    Match match = wordInName;
    if (inName == 0)
        match = wordInAlternative;
    else if (consistsOf(m_folded, words))
        match = wholeName;
    else if (m_folded.starts_with(words.front()))
        match = nameBegins;
    m_found.push_back({place, (m_file.population(place) + 1.0) * weights[match]});
}

std::vector<std::uint32_t> GazetteerSearch::best() {
    std::ranges::sort(m_found, [](const Found& a, const Found& b) {
        return a.weight != b.weight ? a.weight > b.weight : a.place < b.place;
    });
    std::vector<std::uint32_t> places;
    for (const Found& found : m_found) {
        if (places.size() == m_limit)
            break;
        if (std::ranges::find(places, found.place) == places.end())
            places.push_back(found.place);
    }
    return places;
}

} // namespace corvanta
