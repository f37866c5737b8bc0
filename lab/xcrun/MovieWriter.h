// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QFile>
#include <QSize>

#include <chrono>
#include <vector>

namespace corvanta::lab {

/// Writes a QuickTime movie of JPEG pictures, each shown for as long as it is told.
///
/// The pictures go to the file as they come; the movie can be played once `finish()` has returned.
class MovieWriter {
public:
    /// `path` is created or emptied. Throws std::runtime_error, as every function here.
    MovieWriter(const QString& path, QSize size);

    /// Adds a picture, the whole of a JPEG file, that is shown from then on.
    void add(const QByteArray& picture, std::chrono::milliseconds from);

    /// Writes what players need; the last picture is shown until `end`.
    void finish(std::chrono::milliseconds end);

    [[nodiscard]] std::size_t pictures() const { return m_samples.size(); }

private:
    struct Sample {
        std::uint64_t offset = 0;
        std::uint32_t size = 0;
        std::uint32_t from = 0;
    };

    void write(const QByteArray& bytes);
    [[nodiscard]] QByteArray header(std::uint32_t duration) const;

    QFile m_file;
    QSize m_size;
    std::vector<Sample> m_samples;
};

} // namespace corvanta::lab
