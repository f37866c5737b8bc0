// SPDX-License-Identifier: MIT
#include "ShownText.h"

#include <glib.h>

#include <array>
#include <optional>

namespace corvanta::lab {

namespace {

constexpr gunichar lineSeparator = 0x2028;
constexpr gunichar paragraphSeparator = 0x2029;
constexpr gunichar replacement = 0xFFFD;

/// Embeddings, overrides and isolates of a direction, and their ends.
bool turnsDirection(gunichar character) {
    return (character >= 0x202A && character <= 0x202E) || (character >= 0x2066 && character <= 0x2069);
}

bool isControl(gunichar character) {
    return g_unichar_iscntrl(character) != FALSE || character == lineSeparator || character == paragraphSeparator;
}

/// Takes the first character from `text`, which has one; a byte that is none counts as a replacement character.
gunichar takeCharacter(std::string_view& text) {
    constexpr std::size_t longestCharacter = 4;
    const std::string_view start = text.substr(0, longestCharacter);
    const gunichar character =
        start.front() == '\0' ? 0 : g_utf8_get_char_validated(start.data(), static_cast<gssize>(start.size()));
    const bool isCharacter = g_unichar_validate(character) != FALSE;
    text.remove_prefix(isCharacter ? static_cast<std::size_t>(g_unichar_to_utf8(character, nullptr)) : 1);
    return isCharacter ? character : replacement;
}

void append(std::string& text, gunichar character) {
    constexpr std::size_t room = 6;
    std::array<char, room> bytes{};
    text.append(bytes.data(), static_cast<std::size_t>(g_unichar_to_utf8(character, bytes.data())));
}

std::string cleaned(std::string_view text, std::size_t most, std::optional<gunichar> kept) {
    std::string shown;
    std::size_t count = 0;
    std::size_t beforeLast = 0;
    while (!text.empty()) {
        const gunichar character = takeCharacter(text);
        if (turnsDirection(character))
            continue;
        if (count == most) {
            shown.resize(beforeLast);
            return shown + "…";
        }
        beforeLast = shown.size();
        append(shown, isControl(character) && character != kept ? U' ' : character);
        ++count;
    }
    return shown;
}

} // namespace

std::string shownLine(std::string_view text, std::size_t most) {
    return cleaned(text, most, std::nullopt);
}

std::string shownText(std::string_view text, std::size_t most) {
    return cleaned(text, most, U'\n');
}

} // namespace corvanta::lab
