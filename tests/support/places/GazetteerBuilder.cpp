// SPDX-License-Identifier: MIT
#include "GazetteerBuilder.h"

#include "places/NameFolding.h"

#include <QFile>
#include <QtEndian>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <span>
#include <string>
#include <utility>

namespace corvanta::testing {

namespace {

constexpr int headerSize = 32;
constexpr int escapeCode = 255;

template<typename Number>
void append(QByteArray& bytes, Number value) {
    std::array<char, sizeof(Number)> buffer{};
    qToLittleEndian(value, buffer.data());
    bytes.append(buffer.data(), sizeof(Number));
}

void appendVarint(QByteArray& bytes, std::uint32_t value) {
    for (; value >= 0x80; value >>= 7U)
        bytes.append(static_cast<char>((value & 0x7FU) | 0x80U));
    bytes.append(static_cast<char>(value));
}

/// Every byte by itself.
QByteArray packed(const QByteArray& text) {
    QByteArray result;
    for (const char byte : text)
        result.append(static_cast<char>(escapeCode)).append(byte);
    return result;
}

QByteArray padded(QByteArray bytes) {
    return bytes.append((8 - bytes.size() % 8) % 8, '\0');
}

/// "ü" to "u", and the umlaut that stands by itself to nothing.
QByteArray foldingTable() {
    QByteArray table;
    for (const auto& [character, folded] :
         {std::pair<std::uint32_t, QByteArray>{0xDC, "u"}, {0xDF, "ss"}, {0xE3, "a"}, {0xFC, "u"}, {0x308, ""}}) {
        append(table, character);
        table.append(static_cast<char>(folded.size())).append(folded.leftJustified(11, '\0'));
    }
    return table;
}

} // namespace

GazetteerBuilder::GazetteerBuilder(std::vector<Place> places)
    : m_places(std::move(places)) {
    std::ranges::sort(m_places, std::ranges::greater(), &Place::population);
    addPositions();
    addPopulations();
    addTexts();
    addWordStarts();
    addRegions();
    sections.push_back(foldingTable());
}

void GazetteerBuilder::addPositions() {
    QByteArray positions;
    for (std::size_t index = 0; index < m_places.size(); ++index) {
        const auto latitude =
            static_cast<std::uint64_t>(std::llround((m_places[index].coordinate.latitude + 90) * 1e5));
        const auto longitude =
            static_cast<std::uint64_t>(std::llround((m_places[index].coordinate.longitude + 180) * 1e5));
        // Each place has a region of its own.
        append(positions, latitude | longitude << 25U | static_cast<std::uint64_t>(index) << 51U);
    }
    sections.push_back(positions);
}

void GazetteerBuilder::addPopulations() {
    QByteArray index;
    QByteArray steps;
    for (std::size_t place = 0; place < m_places.size(); ++place) {
        if (place % 64 != 0) {
            appendVarint(steps, m_places[place - 1].population - m_places[place].population);
            continue;
        }
        append(index, m_places[place].population);
        append(index, static_cast<std::uint32_t>(steps.size()));
    }
    sections.push_back(index);
    sections.push_back(steps);
}

void GazetteerBuilder::addTexts() {
    QByteArray index;
    QByteArray texts;
    for (std::size_t place = 0; place < m_places.size(); ++place) {
        if (place % 16 == 0)
            append(index, static_cast<std::uint32_t>(texts.size()));
        const QByteArray name = packed(m_places[place].name.toUtf8());
        const QByteArray others = packed(m_places[place].alternatives.join(u'\n').toUtf8());
        appendVarint(texts, static_cast<std::uint32_t>(name.size() * 2 + (others.isEmpty() ? 0 : 1)));
        texts.append(name);
        if (others.isEmpty())
            continue;
        appendVarint(texts, static_cast<std::uint32_t>(others.size()));
        texts.append(others);
    }
    const QByteArray symbols = QByteArray(1, 1).append("?").append(7, '\0').repeated(255);
    sections.insert(sections.end(), {index, texts, symbols, symbols});
}

void GazetteerBuilder::addWordStarts() {
    const QByteArray table = foldingTable();
    const NameFolding folding(std::as_bytes(std::span(table.constData(), static_cast<std::size_t>(table.size()))));
    std::vector<std::pair<std::string, std::uint32_t>> starts;
    const auto addLaterWords = [&](const std::string& text, std::uint32_t place, std::uint32_t ordinal) {
        for (std::size_t space = text.find(' '); space != std::string::npos; space = text.find(' ', space + 1))
            starts.emplace_back(text.substr(space + 1), place * 64 + ordinal++);
        return ordinal;
    };
    for (std::uint32_t place = 0; place < m_places.size(); ++place) {
        std::string name;
        folding.fold(m_places[place].name.toStdString(), name);
        starts.emplace_back(name, place * 64);
        addLaterWords(name, place, 1);
        std::uint32_t alternative = 8;
        std::uint32_t laterWord = 56;
        for (const QString& text : m_places[place].alternatives) {
            starts.emplace_back(text.toStdString(), place * 64 + alternative++);
            laterWord = addLaterWords(text.toStdString(), place, laterWord);
        }
    }
    std::ranges::sort(starts);
    QByteArray bytes;
    for (const auto& [text, value] : starts) {
        for (const unsigned shift : {0U, 8U, 16U})
            bytes.append(static_cast<char>(value >> shift & 0xFFU));
    }
    sections.push_back(bytes);
    QByteArray blocks;
    QByteArray heads;
    for (std::size_t block = 0; block < starts.size(); block += 64) {
        std::uint32_t best = 0xFFFFFF;
        for (std::size_t index = block; index < std::min(block + 64, starts.size()); ++index)
            best = std::min(best, starts[index].second / 64);
        for (const unsigned shift : {0U, 8U, 16U})
            blocks.append(static_cast<char>(best >> shift & 0xFFU));
        heads.append(QByteArray::fromStdString(starts[block].first.substr(0, 8)).leftJustified(8, '\0'));
    }
    sections.push_back(blocks);
    sections.push_back(heads);
}

void GazetteerBuilder::addRegions() {
    QByteArray regions;
    QByteArray countries;
    QByteArray strings;
    QByteArray words;
    const auto appendText = [&strings](QByteArray& record, const QString& text) {
        append(record, static_cast<std::uint32_t>(strings.size()));
        append(record, static_cast<std::uint16_t>(text.toUtf8().size()));
        strings.append(text.toUtf8());
    };
    for (std::size_t place = 0; place < m_places.size(); ++place) {
        appendText(regions, m_places[place].region);
        append(regions, static_cast<std::uint16_t>(place));
        append(regions, static_cast<std::uint32_t>(words.size()));
        for (const QString& text : {m_places[place].region, m_places[place].abbreviation, m_places[place].country,
                                    m_places[place].countryCode})
            words.append(' ').append(text.toLower().toUtf8());
        words.append('\n');
        appendText(countries, m_places[place].country);
        countries.append(m_places[place].countryCode.toLatin1().leftJustified(2, ' '));
    }
    sections.insert(sections.end(), {regions, countries, strings, words});
}

QByteArray GazetteerBuilder::file() const {
    QByteArray table;
    QByteArray body;
    const auto tableSize = static_cast<std::uint32_t>((sections.size() * 8 + 7) / 8 * 8);
    for (const QByteArray& section : sections) {
        append(table, static_cast<std::uint32_t>(headerSize + tableSize + static_cast<std::uint32_t>(body.size())));
        append(table, static_cast<std::uint32_t>(section.size()));
        body.append(padded(section));
    }
    body.prepend(padded(table));
    QByteArray file("CORVPLAC");
    append(file, std::uint32_t{1});
    append(file, static_cast<std::uint32_t>(sections.size()));
    append(file, static_cast<std::uint32_t>(headerSize + body.size()));
    append(file, std::uint32_t{0});
    append(file, std::uint64_t{0});
    file.append(body);
    mendChecksum(file);
    return file;
}

void mendChecksum(QByteArray& file) {
    constexpr std::uint64_t basis = 0xcbf29ce484222325;
    constexpr std::uint64_t prime = 0x100000001b3;
    std::array<std::uint64_t, 4> lanes{basis, basis + 1, basis + 2, basis + 3};
    for (qsizetype at = headerSize, lane = 0; at + 8 <= file.size(); at += 8, ++lane) {
        std::uint64_t& sum = lanes.at(static_cast<std::size_t>(lane % 4));
        sum = (sum ^ qFromLittleEndian<std::uint64_t>(file.constData() + at)) * prime;
    }
    std::uint64_t whole = basis;
    for (const std::uint64_t lane : lanes)
        whole = (whole ^ lane) * prime;
    qToLittleEndian(whole, file.data() + 24);
}

GazetteerOnDisk::GazetteerOnDisk(const QByteArray& bytes) {
    QFile file(path());
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
}

} // namespace corvanta::testing
