// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace corvanta::lab {

/// Replaces the file's content in one step: whoever reads sees the old content or the new one, also when the writer is
/// ended half-way. The new content is on the disk when it returns.
///
/// One writer at a time: the caller holds a lock that every writer of the file takes. Throws std::runtime_error.
void writeFileAtomically(const QString& path, const QByteArray& content);

} // namespace corvanta::lab
