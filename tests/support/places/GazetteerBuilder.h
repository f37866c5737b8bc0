// SPDX-License-Identifier: MIT
#pragma once

#include "locations/Coordinate.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdint>
#include <functional>
#include <vector>

namespace corvanta::testing {

/// Writes a small gazetteer, byte by byte and not packed, as docs/places.md describes the format.
class GazetteerBuilder {
public:
    struct Place {
        QString name;
        std::uint32_t population = 0;
        Coordinate coordinate = {};
        QString region = {};
        QString country = {};
        /// Folded already.
        QStringList alternatives = {};
        QString abbreviation = {};
        QString countryCode = QStringLiteral("XX");
    };

    /// In any order.
    explicit GazetteerBuilder(std::vector<Place> places);

    /// The sections in the order of the file, to be spoilt by a test.
    std::vector<QByteArray> sections;

    /// The whole file, with a good checksum.
    [[nodiscard]] QByteArray file() const;

private:
    void addPositions();
    void addPopulations();
    void addTexts();
    void addWordStarts();
    void addRegions();

    std::vector<Place> m_places;
};

/// Makes the checksum of a gazetteer that was changed a good one again.
void mendChecksum(QByteArray& file);

/// A file with those bytes for as long as this lives.
class GazetteerOnDisk {
public:
    explicit GazetteerOnDisk(const QByteArray& bytes);

    [[nodiscard]] QString path() const { return m_folder.filePath(QStringLiteral("places.gazetteer")); }

private:
    QTemporaryDir m_folder;
};

} // namespace corvanta::testing
