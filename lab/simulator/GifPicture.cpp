// SPDX-License-Identifier: MIT
#include "GifPicture.h"

#include <algorithm>
#include <cstdint>

namespace corvanta::lab {

namespace {

constexpr int shades = 6;
constexpr int codeBits = 9;
constexpr std::uint32_t clearCode = 256;
constexpr std::uint32_t endCode = 257;

void addNumber(QByteArray& bytes, int value) {
    bytes.append(static_cast<char>(value & 0xff));
    bytes.append(static_cast<char>(value >> 8 & 0xff));
}

/// Codes of nine bits, lowest bit first, in blocks that tell their length.
class CodeWriter {
public:
    void add(std::uint32_t code) {
        m_bits |= code << m_count;
        m_count += codeBits;
        while (m_count >= 8) {
            put();
        }
    }

    [[nodiscard]] QByteArray finish() {
        while (m_count > 0) {
            put();
        }
        flush();
        return m_bytes + '\0';
    }

private:
    void put() {
        m_block.append(static_cast<char>(m_bits & 0xff));
        m_bits >>= 8;
        m_count -= 8;
        if (m_block.size() == 255) {
            flush();
        }
    }

    void flush() {
        if (!m_block.isEmpty()) {
            m_bytes.append(static_cast<char>(m_block.size())).append(m_block);
            m_block.clear();
        }
    }

    QByteArray m_bytes;
    QByteArray m_block;
    std::uint32_t m_bits = 0;
    int m_count = 0;
};

std::uint32_t shade(unsigned char value) {
    return (value * (shades - 1) + 127U) / 255U;
}

} // namespace

QByteArray gifPicture(const unsigned char* pixels, QSize size, int rowLength, int pixelLength) {
    QByteArray file("GIF89a");
    addNumber(file, size.width());
    addNumber(file, size.height());
    file.append("\xf7\0\0", 3);
    for (int colour = 0; colour < 256; ++colour) {
        const int last = shades * shades * shades - 1;
        const int known = std::min(colour, last);
        for (const int part : {known / (shades * shades), known / shades % shades, known % shades}) {
            file.append(static_cast<char>(part * 255 / (shades - 1)));
        }
    }
    file.append(',');
    addNumber(file, 0);
    addNumber(file, 0);
    addNumber(file, size.width());
    addNumber(file, size.height());
    file.append("\0\x08", 2);
    CodeWriter codes;
    // A reader's table grows with each code; started anew in time, the codes never get longer than nine bits.
    constexpr int longest = 250;
    int sinceClear = longest;
    for (int y = 0; y < size.height(); ++y) {
        const unsigned char* pixel = pixels + static_cast<std::ptrdiff_t>(y) * rowLength;
        for (int x = 0; x < size.width(); ++x, pixel += pixelLength) {
            if (sinceClear == longest) {
                codes.add(clearCode);
                sinceClear = 0;
            }
            codes.add((shade(pixel[0]) * shades + shade(pixel[1])) * shades + shade(pixel[2]));
            ++sinceClear;
        }
    }
    codes.add(endCode);
    return file + codes.finish() + ';';
}

} // namespace corvanta::lab
