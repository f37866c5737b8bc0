// SPDX-License-Identifier: MIT
#include "MovieWriter.h"

#include <QTemporaryDir>
#include <QtEndian>

#include <gtest/gtest.h>

#include <stdexcept>

namespace corvanta::lab {

namespace {

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

std::uint32_t word(const QByteArray& bytes, qsizetype place) {
    return qFromBigEndian<std::uint32_t>(bytes.constData() + place);
}

/// The content of the atom at the end of the path; empty when there is none.
QByteArray atom(QByteArray bytes, const QList<QByteArray>& path) {
    for (const QByteArray& type : path) {
        QByteArray found;
        for (qsizetype place = 0; place + 8 <= bytes.size();) {
            qsizetype size = word(bytes, place);
            qsizetype start = 8;
            if (size == 1) {
                size = static_cast<qsizetype>(qFromBigEndian<std::uint64_t>(bytes.constData() + place + 8));
                start = 16;
            }
            if (size < start || place + size > bytes.size()) {
                return {};
            }
            if (bytes.sliced(place + 4, 4) == type) {
                found = bytes.sliced(place + start, size - start);
            }
            place += size;
        }
        bytes = found;
    }
    return bytes;
}

class MovieWriterTest : public ::testing::Test {
protected:
    /// A movie of two pictures, 100 ms and 250 ms long.
    QByteArray write() const {
        MovieWriter movie(path, QSize(402, 874));
        movie.add("\xff\xd8 one", 0ms);
        movie.add("\xff\xd8 second", 100ms);
        EXPECT_EQ(movie.pictures(), 2U);
        movie.finish(350ms);
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QTemporaryDir folder;
    QString path = folder.filePath(u"movie.mov"_s);
    const QList<QByteArray> table{"moov", "trak", "mdia", "minf", "stbl"};
};

TEST_F(MovieWriterTest, KeepsThePicturesAsTheyAre) {
    const QByteArray movie = write();
    EXPECT_EQ(atom(movie, {"mdat"}), QByteArray("\xff\xd8 one\xff\xd8 second"));
    EXPECT_EQ(atom(movie, {"ftyp"}).first(4), "qt  ");
}

TEST_F(MovieWriterTest, TellsWherePicturesAreAndHowLongEachIsShown) {
    const QByteArray movie = write();
    const QByteArray places = atom(movie, table + QList<QByteArray>{"co64"});
    const QByteArray sizes = atom(movie, table + QList<QByteArray>{"stsz"});
    const QByteArray times = atom(movie, table + QList<QByteArray>{"stts"});
    ASSERT_EQ(word(places, 4), 2U);
    for (int index = 0; index < 2; ++index) {
        const auto place = qFromBigEndian<std::uint64_t>(places.constData() + 8 + 8 * index);
        EXPECT_EQ(movie.sliced(qsizetype(place), word(sizes, 12 + 4 * index)),
                  index == 0 ? QByteArray("\xff\xd8 one") : QByteArray("\xff\xd8 second"));
    }
    EXPECT_EQ(word(times, 4), 2U);
    EXPECT_EQ(word(times, 12), 100U);
    EXPECT_EQ(word(times, 20), 250U);
}

TEST_F(MovieWriterTest, TellsItsLengthAndItsSize) {
    const QByteArray movie = write();
    const QByteArray header = atom(movie, {"moov", "mvhd"});
    ASSERT_EQ(header.size(), 100);
    EXPECT_EQ(word(header, 12), 1000U);
    EXPECT_EQ(word(header, 16), 350U);
    const QByteArray track = atom(movie, {"moov", "trak", "tkhd"});
    ASSERT_EQ(track.size(), 84);
    EXPECT_EQ(word(track, 76) >> 16, 402U);
    EXPECT_EQ(word(track, 80) >> 16, 874U);
    const QByteArray description = atom(movie, table + QList<QByteArray>{"stsd"});
    EXPECT_EQ(description.size(), 8 + 86);
    EXPECT_EQ(description.sliced(12, 4), "jpeg");
}

TEST_F(MovieWriterTest, SaysWhereItCannotWrite) {
    EXPECT_THROW(MovieWriter(folder.filePath(u"none/movie.mov"_s), QSize(1, 1)), std::runtime_error);
}

} // namespace

} // namespace corvanta::lab
