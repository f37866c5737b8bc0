// SPDX-License-Identifier: MIT
#include "AtomicFile.h"

#include <QFile>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <unistd.h>

namespace corvanta::lab {

namespace {

[[noreturn]] void fail(const QByteArray& path) {
    throw std::runtime_error("cannot write " + path.toStdString() + ": " + std::strerror(errno));
}

bool writeAll(int file, const QByteArray& content) {
    qsizetype done = 0;
    while (done < content.size()) {
        const ssize_t written = write(file, content.constData() + done, std::size_t(content.size() - done));
        if (written < 0 && errno != EINTR) {
            return false;
        }
        done += std::max<ssize_t>(written, 0);
    }
    return fsync(file) == 0;
}

} // namespace

void writeFileAtomically(const QString& path, const QByteArray& content) {
    const QByteArray target = QFile::encodeName(path);
    // Always the same name: what a writer that was ended left behind is overwritten by the next.
    const QByteArray fresh = target + ".new";
    const int file = open(fresh.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (file < 0) {
        fail(target);
    }
    const bool isWritten = writeAll(file, content);
    if (close(file) != 0 || !isWritten || std::rename(fresh.constData(), target.constData()) != 0) {
        fail(target);
    }
}

} // namespace corvanta::lab
