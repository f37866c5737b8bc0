// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

namespace corvanta::IOSRuntimeParser {

/// How many usable iOS runtimes the simulator tool's JSON runtime list holds.
///
/// Throws JsonDecodingError when the document has another shape.
[[nodiscard]] int availableIOSRuntimeCount(const QByteArray& output);

} // namespace corvanta::IOSRuntimeParser
