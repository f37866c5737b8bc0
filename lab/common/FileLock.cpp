// SPDX-License-Identifier: MIT
#include "FileLock.h"

#include <QFile>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/file.h>
#include <unistd.h>

namespace corvanta::lab {

FileLock::FileLock(const QString& path, const std::function<void()>& check)
    : m_descriptor(open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0600)) {
    if (m_descriptor < 0) {
        throw std::runtime_error("cannot lock " + QFile::encodeName(path).toStdString() + ": " + std::strerror(errno));
    }
    while (flock(m_descriptor, LOCK_EX) != 0) {
        if (errno != EINTR) {
            const std::string reason = std::strerror(errno);
            close(m_descriptor);
            throw std::runtime_error("cannot lock " + QFile::encodeName(path).toStdString() + ": " + reason);
        }
    }
    if (check) {
        try {
            check();
        } catch (...) {
            close(m_descriptor);
            throw;
        }
    }
}

FileLock::~FileLock() {
    close(m_descriptor);
}

} // namespace corvanta::lab
