// SPDX-License-Identifier: MIT
#include "window/DisplayText.h"

#include <algorithm>
#include <functional>

namespace corvanta {

namespace {

constexpr QChar ellipsis = QChar(0x2026);

/// Embeddings, overrides and isolates of a direction, and their ends.
bool turnsDirection(QChar character) {
    const char16_t unit = character.unicode();
    return (unit >= 0x202A && unit <= 0x202E) || (unit >= 0x2066 && unit <= 0x2069);
}

bool isControl(QChar character) {
    return character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

} // namespace

QString displayText(const QString& text, qsizetype most) {
    const bool isLine = most <= longestLine;
    const auto isOrdinary = [isLine](QChar character) {
        return !turnsDirection(character) && (!isControl(character) || (character == u'\n' && !isLine));
    };
    QString shown = text.left(most + 1);
    if (!std::ranges::all_of(shown, isOrdinary)) {
        shown.removeIf(turnsDirection);
        std::ranges::replace_if(shown, std::not_fn(isOrdinary), QChar(u' '));
    }
    if (text.size() <= most)
        return shown;
    shown.truncate(std::min(shown.size(), most) - 1);
    // Not in the middle of a character.
    if (!shown.isEmpty() && shown.back().isHighSurrogate())
        shown.chop(1);
    return shown + ellipsis;
}

} // namespace corvanta
