// SPDX-License-Identifier: MIT
#include "updates/DecimalInteger.h"

#include <QByteArray>

#include <charconv>
#include <system_error>

namespace corvanta {

std::optional<std::int64_t> decimalInteger(QStringView text) {
    if (text.startsWith(u'+')) {
        text = text.sliced(1);
        // The parser below takes a minus of its own.
        if (text.startsWith(u'-'))
            return std::nullopt;
    }
    const QByteArray bytes = text.toUtf8();
    std::int64_t number = 0;
    const char* const end = bytes.constData() + bytes.size();
    const auto [parsed, error] = std::from_chars(bytes.constData(), end, number);
    if (error != std::errc{} || parsed != end)
        return std::nullopt;
    return number;
}

} // namespace corvanta
