// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <optional>

namespace corvanta {

/// `text` without white space and line breaks at either end: the Unicode separators, U+0009 to U+000D, U+0085 and the
/// zero-width space U+200B, as the Mac's set of white space and newlines has them.
[[nodiscard]] QString trimmedText(QStringView text);

/// `bytes` as text, or nothing when they are not valid UTF-8. A byte-order mark is kept. No bytes are the empty text.
[[nodiscard]] std::optional<QString> decodeUTF8(QByteArrayView bytes);

} // namespace corvanta
