// SPDX-License-Identifier: MIT
// A list of places from anybody, signed as whoever means harm would do it.
#include "GazetteerBuilder.h"
#include "Input.h"
#include "places/Gazetteer.h"
#include "places/GazetteerError.h"

#include <QFile>
#include <QtEndian>

#include <sys/mman.h>
#include <unistd.h>

using namespace corvanta;

namespace {

/// A file that never reaches a disk.
class FileInMemory {
public:
    explicit FileInMemory(const QByteArray& bytes)
        : m_descriptor(memfd_create("gazetteer", 0)) {
        fuzz::require(write(m_descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())) == bytes.size(),
                      "the file is there");
    }

    FileInMemory(const FileInMemory&) = delete;
    FileInMemory& operator=(const FileInMemory&) = delete;

    ~FileInMemory() { close(m_descriptor); }

    [[nodiscard]] QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(m_descriptor); }

private:
    int m_descriptor;
};

/// Size and checksum as they must be, so that the rest is looked at.
QByteArray signedFile(QByteArray file) {
    constexpr qsizetype headerSize = 32;
    file.resize(qMax(file.size() / 8 * 8, headerSize));
    qToLittleEndian(static_cast<std::uint32_t>(file.size()), file.data() + 16);
    testing::mendChecksum(file);
    return file;
}

void read(const Gazetteer& gazetteer) {
    constexpr std::size_t most = 10;
    for (const auto* const text : {u"p", u"paris", u"paris texas", u"new york ny", u"münchen", u"aa oe ue"}) {
        const auto found = gazetteer.search(QString::fromUtf16(text), most);
        fuzz::require(found.size() <= most, "no more is found than was asked for");
        for (const PlaceIndex index : found) {
            fuzz::require(index < gazetteer.count(), "what is found is there");
            [[maybe_unused]] const GazetteerPlace place = gazetteer.place(index);
        }
    }
    std::size_t visited = 0;
    gazetteer.visitPlaces({.south = -60, .west = 170, .north = 80, .east = 160}, 1, most,
                          [&](PlaceIndex index, Coordinate /*coordinate*/) {
                              ++visited;
                              return !gazetteer.name(index).isEmpty();
                          });
    fuzz::require(visited <= most, "no more is visited than was asked for");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryBound bound(size);
    const FileInMemory file(signedFile(fuzz::inputBytes(data, size)));
    try {
        read(Gazetteer(file.path()));
    } catch (const GazetteerError& error) {
        fuzz::require(!error.errorDescription().isEmpty(), "an error says what is wrong");
    }
    return 0;
}
