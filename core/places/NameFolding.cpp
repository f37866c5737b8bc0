// SPDX-License-Identifier: MIT
#include "places/NameFolding.h"

#include <QList>
#include <QtEndian>

#include <algorithm>
#include <cstdint>

namespace corvanta {

namespace {

constexpr std::size_t longestReplacement = 11;

/// Writes words with single spaces between them and none at the ends.
class Words {
public:
    explicit Words(std::string& text)
        : m_text(text) {
        m_text.clear();
    }

    void append(char character) {
        if (character == ' ') {
            m_isBetween = !m_text.empty();
            return;
        }
        if (m_isBetween)
            m_text += ' ';
        m_isBetween = false;
        m_text += character;
    }

    void append(std::string_view characters) {
        for (const char character : characters)
            append(character);
    }

    void appendASCII(char character) {
        if (character >= 'A' && character <= 'Z')
            append(static_cast<char>(character - 'A' + 'a'));
        else if ((character >= 'a' && character <= 'z') || (character >= '0' && character <= '9'))
            append(character);
        else if (character != '\'' && character != '`')
            append(' ');
    }

private:
    std::string& m_text;
    bool m_isBetween = false;
};

/// The length of the character that a byte begins; 1 for one that begins none.
std::size_t sequenceLength(unsigned char first) {
    if (first >= 0xF0)
        return 4;
    if (first >= 0xE0)
        return 3;
    return first >= 0xC0 ? 2 : 1;
}

char32_t decoded(std::string_view sequence) {
    constexpr unsigned char leading[] = {0x7F, 0x7F, 0x1F, 0x0F, 0x07};
    char32_t character = static_cast<unsigned char>(sequence.front()) & leading[sequence.size()];
    for (const char byte : sequence.substr(1))
        character = character << 6U | (static_cast<unsigned char>(byte) & 0x3FU);
    return character;
}

std::u32string codePoints(const QString& text) {
    const QList<uint> values = text.toUcs4();
    return {values.begin(), values.end()};
}

/// A character beyond ASCII that no table knows.
std::string foldUnknown(char32_t character) {
    QString folded;
    for (const char32_t part :
         codePoints(QString::fromUcs4(&character, 1).toLower().normalized(QString::NormalizationForm_KD))) {
        const bool isKept = QChar::isLetterOrNumber(part) || QChar::category(part) == QChar::Mark_SpacingCombining;
        if (isKept)
            folded += QString::fromUcs4(&part, 1);
        else if (!QChar::isMark(part))
            folded += u' ';
    }
    return folded.normalized(QString::NormalizationForm_KC).toStdString();
}

} // namespace

const std::byte* NameFolding::find(char32_t character) const {
    std::size_t low = 0;
    std::size_t high = m_table.size() / entrySize;
    while (low < high) {
        const std::size_t middle = low + (high - low) / 2;
        const std::byte* const entry = m_table.data() + middle * entrySize;
        const auto found = qFromLittleEndian<std::uint32_t>(entry);
        if (found == character)
            return entry;
        if (found < character)
            low = middle + 1;
        else
            high = middle;
    }
    return nullptr;
}

namespace {

std::string_view replacement(const std::byte* entry) {
    const auto length = std::min(std::to_integer<std::size_t>(entry[4]), longestReplacement);
    return {reinterpret_cast<const char*>(entry + 5), length};
}

} // namespace

void NameFolding::fold(std::string_view name, std::string& folded) const {
    Words words(folded);
    for (std::size_t at = 0; at < name.size();) {
        const auto first = static_cast<unsigned char>(name[at]);
        if (first < 0x80) {
            words.appendASCII(name[at++]);
            continue;
        }
        const std::string_view sequence = name.substr(at, sequenceLength(first));
        at += sequence.size();
        if (const std::byte* const entry = find(decoded(sequence)))
            words.append(replacement(entry));
        else
            words.append(sequence);
    }
}

std::string NameFolding::foldTyped(const QString& text) const {
    std::string folded;
    Words words(folded);
    for (const char32_t character : codePoints(text.normalized(QString::NormalizationForm_C))) {
        if (character < 0x80)
            words.appendASCII(static_cast<char>(character));
        else if (const std::byte* const entry = find(character))
            words.append(replacement(entry));
        else if (const std::byte* const lower = find(QChar::toLower(character)))
            words.append(replacement(lower));
        else
            words.append(foldUnknown(character));
    }
    return folded;
}

} // namespace corvanta
