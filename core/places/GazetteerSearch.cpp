// SPDX-License-Identifier: MIT
#include "places/GazetteerSearch.h"

#include <algorithm>
#include <utility>

namespace corvanta {

namespace {

constexpr std::array<double, 6> weights{100, 20, 1, 1.0 / 20, 1.0 / 20, 1.0 / 400};
/// How many of the most populous places are looked at for words in any order, for each word.
constexpr std::size_t mostCandidates = 200;
constexpr std::size_t mostWords = 6;
/// How many blocks of the index are looked at before all others where there are many.
constexpr std::uint32_t promisingBlocks = 16;
/// With fewer answers than these, the words are also looked for one by one, and "ue" as the "ü" that somebody could
/// not type.
constexpr std::size_t fewAnswers = 3;
/// From here on hardly any name begins by chance as another one with its "ue" taken for an "ü".
constexpr std::size_t tellingLength = 5;

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
        if (leavesOut(value))
            return;
        const auto place = std::ranges::lower_bound(m_values, value);
        if (place != m_values.end() && *place == value)
            return;
        m_values.insert(place, value);
        if (m_values.size() > m_limit)
            m_values.pop_back();
    }

    /// Whether a number that is not lower than `value` would be left out.
    [[nodiscard]] bool leavesOut(std::uint32_t value) const {
        return m_values.size() == m_limit && (m_limit == 0 || value >= m_values.back());
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
        // The heads of the blocks tell where it can be. One that is the same as the text's beginning tells nothing.
        std::uint32_t first = 0;
        std::uint32_t last = (high + GazetteerFile::wordBlock - 1) / GazetteerFile::wordBlock;
        while (first < last) {
            const std::uint32_t middle = first + (last - first) / 2;
            const std::string_view head = m_file.headOfBlock(middle).substr(0, text.size());
            const std::string_view beginning = text.substr(0, head.size());
            const bool isEqual = head == beginning;
            if (isEqual && head.size() < text.size())
                break;
            if (isEqual ? isBefore(text) : head < beginning)
                first = middle + 1;
            else
                last = middle;
        }
        if (first > 0)
            low = std::max(low, (first - 1) * GazetteerFile::wordBlock);
        high = std::min(high, last * GazetteerFile::wordBlock);
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
    const auto isWhole = [&](std::uint32_t index) { return textFrom(m_file.wordStart(index)).size() <= length; };
    // Mostly there is none, and hardly ever are there many.
    for (std::uint32_t step = 1; range.size() > step; step *= 2) {
        if (!isWhole(range.begin + step - 1)) {
            range.end = range.begin + step - 1;
            break;
        }
        range.begin += step;
    }
    while (range.begin < range.end) {
        const std::uint32_t middle = range.begin + range.size() / 2;
        if (isWhole(middle))
            range.begin = middle + 1;
        else
            range.end = middle;
    }
    return range.begin;
}

GazetteerSearch::Match GazetteerSearch::matchOf(std::uint8_t ordinal, bool isWhole) {
    if (ordinal == 0)
        return isWhole ? wholeName : nameBegins;
    if (ordinal < GazetteerFile::firstAlternative)
        return wordInName;
    if (ordinal < GazetteerFile::firstAlternativeWord)
        return isWhole ? wholeAlternative : alternativeBegins;
    return wordInAlternative;
}

std::vector<std::uint32_t> GazetteerSearch::find(const std::string& text) {
    if (text.empty() || m_limit == 0)
        return {};
    m_found.clear();
    findBeginning(text, 1);
    const std::size_t few = std::min(fewAnswers, m_limit);
    if (m_found.size() < few && text.contains(' '))
        findAllWords(text);
    if (m_found.size() < few || text.size() >= tellingLength) {
        if (const std::string plain = withoutDigraphs(text); plain != text)
            findBeginning(plain, weights[alternativeBegins]);
    }
    std::vector<std::uint32_t> places;
    for (const Found& found : m_found)
        places.push_back(found.place);
    return places;
}

bool GazetteerSearch::keep(std::uint32_t place, double weight) {
    const auto isBetter = [](const Found& a, const Found& b) {
        return a.weight != b.weight ? a.weight > b.weight : a.place < b.place;
    };
    const Found found{place, weight};
    const auto known = std::ranges::find(m_found, place, &Found::place);
    if (known != m_found.end()) {
        if (!isBetter(found, *known))
            return false;
        m_found.erase(known);
    } else if (m_found.size() == m_limit) {
        if (!isBetter(found, m_found.back()))
            return false;
        m_found.pop_back();
    }
    m_found.insert(std::ranges::upper_bound(m_found, found, isBetter), found);
    return true;
}

GazetteerSearch::Limits GazetteerSearch::limitsFor(double factor) const {
    Limits limits{};
    limits.fill(m_file.placeCount());
    if (m_found.size() < m_limit)
        return limits;
    for (std::size_t match = 0; match < matchCount; ++match) {
        // One more person than there are stands in every weight, so that places without any can be told apart.
        const double people = m_found.back().weight / (weights[match] * factor) - 1;
        limits[match] = std::min(limits[match], m_file.endOfMorePopulous(people));
    }
    return limits;
}

void GazetteerSearch::findBeginning(std::string_view text, double factor) {
    const Range range = wordsBeginningWith(text);
    const std::uint32_t endOfExact = endOfWhole(range, text.size());
    Limits limits = limitsFor(factor);
    const auto look = [&](std::uint32_t block) {
        const std::uint32_t begin = std::max(block * GazetteerFile::wordBlock, range.begin);
        const std::uint32_t end = std::min((block + 1) * GazetteerFile::wordBlock, range.end);
        // Behind the whole names none is worth more than the beginning of a name.
        if (begin >= endOfExact && m_file.bestOfBlock(block) >= limits[nameBegins])
            return;
        bool isNews = false;
        for (std::uint32_t index = begin; index < end; ++index) {
            const auto start = m_file.wordStart(index);
            const Match match = matchOf(start.ordinal, index < endOfExact);
            if (start.place >= limits[match])
                continue;
            isNews |= keep(start.place, (m_file.population(start.place) + 1.0) * weights[match] * factor);
        }
        if (isNews)
            limits = limitsFor(factor);
    };
    if (range.size() == 0)
        return;
    const std::uint32_t first = range.begin / GazetteerFile::wordBlock;
    const std::uint32_t last = (range.end - 1) / GazetteerFile::wordBlock;
    // With the most populous places found first, hardly anything of the rest has to be looked at.
    if (last - first > promisingBlocks) {
        Lowest promising(promisingBlocks);
        for (std::uint32_t block = first; block <= last; ++block)
            promising.add(m_file.bestOfBlock(block));
        const std::uint32_t bound = promising.values().back();
        for (std::uint32_t block = first; block <= last; ++block) {
            if (m_file.bestOfBlock(block) <= bound)
                look(block);
        }
    }
    for (std::uint32_t block = first; block <= last; ++block)
        look(block);
}

void GazetteerSearch::findAllWords(std::string_view text) {
    const auto words = parts(text, ' ');
    if (words.size() < 2 || words.size() > mostWords)
        return;

    struct Word {
        std::string_view text;
        Range range;
    };

    std::vector<Word> rarest;
    for (const std::string_view word : words)
        rarest.push_back({word, wordsBeginningWith(word)});
    std::ranges::sort(rarest, {}, [](const Word& word) { return word.range.size(); });
    // A place that has a rarer word, too, was found by that, unless its region or its country has it.
    std::vector<std::string> rarer;
    for (const Word& word : rarest) {
        Lowest places(mostCandidates);
        for (std::uint32_t index = word.range.begin; index < word.range.end;) {
            const std::uint32_t block = index / GazetteerFile::wordBlock;
            const std::uint32_t end = std::min((block + 1) * GazetteerFile::wordBlock, word.range.end);
            for (; index < end && !places.leavesOut(m_file.bestOfBlock(block)); ++index)
                places.add(m_file.wordStart(index).place);
            index = end;
        }
        for (const std::uint32_t place : places.values()) {
            if (place >= m_file.placeCount())
                continue;
            const std::string_view around = m_file.regionWords(place);
            if (std::ranges::all_of(rarer, [around](const std::string& other) { return around.contains(other); }))
                judge(place, words);
        }
        rarer.push_back(' ' + std::string(word.text));
        if (!m_file.allRegionWords().contains(rarer.back()))
            return;
    }
}

void GazetteerSearch::judge(std::uint32_t place, const std::vector<std::string_view>& words) {
    m_file.readName(place, m_name);
    m_file.folding().fold(m_name, m_folded);
    std::size_t inName = 0;
    bool areOthersRead = false;
    for (const std::string_view word : words) {
        if (hasWord(m_folded, word)) {
            ++inName;
            continue;
        }
        if (hasWord(m_file.regionWords(place), word))
            continue;
        if (!std::exchange(areOthersRead, true))
            m_file.readAlternatives(place, m_others);
        if (!hasWord(m_others, word))
            return;
    }
    Match match = wordInName;
    if (inName == 0)
        match = wordInAlternative;
    else if (consistsOf(m_folded, words))
        match = wholeName;
    else if (m_folded.starts_with(words.front()))
        match = nameBegins;
    keep(place, (m_file.population(place) + 1.0) * weights[match]);
}

} // namespace corvanta
