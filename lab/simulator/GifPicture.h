// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QSize>

namespace corvanta::lab {

/// A picture as the bytes of a GIF file, in the nearest of six shades of red, green and blue. A row begins every
/// `rowLength` bytes with red, green and blue of its first pixel; a pixel takes `pixelLength` bytes.
///
/// Larger than need be: the file is not compressed.
[[nodiscard]] QByteArray gifPicture(const unsigned char* pixels, QSize size, int rowLength, int pixelLength);

} // namespace corvanta::lab
