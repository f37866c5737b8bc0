// SPDX-License-Identifier: MIT
#include "MovieWriter.h"

#include <QtEndian>

#include <stdexcept>

namespace corvanta::lab {

namespace {

/// Units of time in a second: milliseconds.
constexpr std::uint32_t timeScale = 1000;

template<typename Number>
QByteArray number(Number value) {
    QByteArray bytes(sizeof value, Qt::Uninitialized);
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray u16(int value) {
    return number(static_cast<std::uint16_t>(value));
}

QByteArray u32(std::uint32_t value) {
    return number(value);
}

QByteArray zeros(int count) {
    return QByteArray(count, '\0');
}

QByteArray atom(const char* type, const QByteArray& content) {
    return u32(static_cast<std::uint32_t>(content.size() + 8)) + QByteArray(type, 4) + content;
}

/// A rotation by nothing, as the format spells it.
QByteArray unitMatrix() {
    return u32(0x10000) + zeros(12) + u32(0x10000) + zeros(12) + u32(0x40000000);
}

} // namespace

MovieWriter::MovieWriter(const QString& path, QSize size)
    : m_file(path)
    , m_size(size) {
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate)) {
        throw std::runtime_error(m_file.errorString().toStdString());
    }
    write(atom("ftyp", QByteArray("qt  ") + u32(0) + "qt  "));
    // The length of the pictures, which is not known before the end, in the wide form.
    write(u32(1) + "mdat" + zeros(8));
}

void MovieWriter::write(const QByteArray& bytes) {
    if (m_file.write(bytes) != bytes.size()) {
        throw std::runtime_error(m_file.errorString().toStdString());
    }
}

void MovieWriter::add(const QByteArray& picture, std::chrono::milliseconds from) {
    m_samples.push_back({static_cast<std::uint64_t>(m_file.pos()), static_cast<std::uint32_t>(picture.size()),
                         static_cast<std::uint32_t>(from.count())});
    write(picture);
}

void MovieWriter::finish(std::chrono::milliseconds end) {
    constexpr int mediaStart = 20;
    const qint64 length = m_file.pos();
    write(header(static_cast<std::uint32_t>(end.count())));
    if (!m_file.seek(mediaStart + 8)) {
        throw std::runtime_error(m_file.errorString().toStdString());
    }
    write(number(static_cast<std::uint64_t>(length - mediaStart)));
    m_file.close();
    if (m_file.error() != QFileDevice::NoError) {
        throw std::runtime_error(m_file.errorString().toStdString());
    }
}

QByteArray MovieWriter::header(std::uint32_t duration) const {
    const std::uint32_t count = static_cast<std::uint32_t>(m_samples.size());
    QByteArray times;
    QByteArray sizes;
    QByteArray places;
    for (std::size_t index = 0; index < m_samples.size(); ++index) {
        const std::uint32_t next = index + 1 < m_samples.size() ? m_samples[index + 1].from : duration;
        times += u32(1) + u32(next > m_samples[index].from ? next - m_samples[index].from : 1);
        sizes += u32(m_samples[index].size);
        places += number(m_samples[index].offset);
    }
    const QByteArray description = zeros(6) + u16(1) + zeros(16) + u16(m_size.width()) + u16(m_size.height()) +
                                   u32(0x480000) + u32(0x480000) + zeros(4) + u16(1) +
                                   QByteArray("\x0cPhoto - JPEG", 13) + zeros(19) + u16(24) + u16(-1);
    const QByteArray table =
        atom("stsd", u32(0) + u32(1) + atom("jpeg", description)) + atom("stts", u32(0) + u32(count) + times) +
        atom("stsc", u32(0) + u32(1) + u32(1) + u32(1) + u32(1)) + atom("stsz", u32(0) + u32(0) + u32(count) + sizes) +
        atom("co64", u32(0) + u32(count) + places);
    const QByteArray information =
        atom("vmhd", u32(1) + u16(0) + zeros(6)) + atom("hdlr", zeros(4) + "dhlrurl " + zeros(12) + zeros(1)) +
        atom("dinf", atom("dref", u32(0) + u32(1) + atom("url ", u32(1)))) + atom("stbl", table);
    const QByteArray media = atom("mdhd", zeros(12) + u32(timeScale) + u32(duration) + zeros(4)) +
                             atom("hdlr", zeros(4) + "mhlrvide" + zeros(12) + zeros(1)) + atom("minf", information);
    const QByteArray track = atom("tkhd", u32(7) + zeros(8) + u32(1) + zeros(4) + u32(duration) + zeros(16) +
                                              unitMatrix() + u32(static_cast<std::uint32_t>(m_size.width()) << 16) +
                                              u32(static_cast<std::uint32_t>(m_size.height()) << 16)) +
                             atom("mdia", media);
    const QByteArray movie = atom("mvhd", zeros(12) + u32(timeScale) + u32(duration) + u32(0x10000) + u16(0x100) +
                                              zeros(10) + unitMatrix() + zeros(24) + u32(2));
    return atom("moov", movie + atom("trak", track));
}

} // namespace corvanta::lab
