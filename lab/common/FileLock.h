// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <functional>

namespace corvanta::lab {

/// A lock between processes, and between the threads of one, held for the object's life. Freed by the system when its
/// process ends, whatever the way.
class FileLock {
public:
    /// Creates the file if needed and waits for the lock. Throws std::runtime_error when the file cannot be opened or
    /// locked: nobody goes on without the lock.
    ///
    /// `check` is called once the lock is held; what it throws is passed on, and the lock is let go.
    explicit FileLock(const QString& path, const std::function<void()>& check = {});
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;
    ~FileLock();

    /// The open file that stands for the lock. Who inherits it holds the lock as well, until every one of them has
    /// closed it.
    [[nodiscard]] int descriptor() const { return m_descriptor; }

private:
    int m_descriptor = -1;
};

} // namespace corvanta::lab
