// SPDX-License-Identifier: MIT
#include "support/Text.h"

#include <QStringDecoder>

#include <algorithm>

namespace corvanta {

namespace {

bool isTrimmed(QChar character) {
    return character.isSpace() || character == QChar(0x200B);
}

} // namespace

QString trimmedText(QStringView text) {
    const auto first = std::find_if_not(text.begin(), text.end(), isTrimmed);
    while (text.end() != first && isTrimmed(text.back()))
        text.chop(1);
    return text.sliced(first - text.begin()).toString();
}

std::optional<QString> decodeUTF8(QByteArrayView bytes) {
    using Flag = QStringDecoder::Flag;
    QStringDecoder decoder(QStringDecoder::Utf8, Flag::Stateless | Flag::ConvertInitialBom);
    QString text = decoder.decode(bytes);
    if (decoder.hasError())
        return std::nullopt;
    return text;
}

} // namespace corvanta
