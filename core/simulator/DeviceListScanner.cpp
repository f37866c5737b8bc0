// SPDX-License-Identifier: MIT
#include "simulator/DeviceListScanner.h"

#include <QHash>
#include <QSet>
#include <QStringDecoder>

#include <bit>
#include <cstdint>
#include <cstring>
#include <utility>

namespace corvanta::DeviceListScanner {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int deepestLevel = 32;
/// More digits than a number of the tool has; what they would mean is not this reader's business.
constexpr int mostDigits = 15;
/// A record of the tool's is about twice as long. What is reserved too much is never touched.
constexpr qsizetype shortestRecord = 256;

constexpr std::uint64_t everyByte(std::uint8_t byte) {
    return 0x0101010101010101U * byte;
}

/// Marks the first byte that is zero by its highest bit; bytes behind it may be marked wrongly.
constexpr std::uint64_t firstZeroByte(std::uint64_t word) {
    return (word - everyByte(0x01)) & ~word & everyByte(0x80);
}

/// Characters that every text has as they are: printable ASCII without quotation mark and backslash.
bool isOrdinary(char character) {
    const auto byte = static_cast<std::uint8_t>(character);
    return byte >= 0x20 && byte < 0x80 && byte != '"' && byte != '\\';
}

/// A string as it stands between its quotation marks.
struct RawText {
    QByteArrayView bytes;
    bool hasEscapes = false;
    bool isASCII = true;
};

char unescaped(char character) {
    switch (character) {
    case 'b':
        return '\b';
    case 'f':
        return '\f';
    case 'n':
        return '\n';
    case 'r':
        return '\r';
    case 't':
        return '\t';
    default:
        return character;
    }
}

/// Reads one document. Every step answers false when the document is unusual; nothing is read after that.
class Scanner {
public:
    explicit Scanner(const QByteArray& document)
        : m_at(document.constData())
        , m_end(document.constData() + document.size()) {
        m_devices.reserve(static_cast<std::size_t>(document.size() / shortestRecord));
    }

    bool scan() {
        const bool isRead = object([this](const RawText& key) {
            if (key.bytes != "devices")
                return skipValue(deepestLevel);
            return !std::exchange(m_hasDevices, true) && object([this](const RawText& name) { return runtime(name); });
        });
        skipSpace();
        return isRead && m_hasDevices && m_at == m_end;
    }

    [[nodiscard]] std::vector<SimulatorDevice> takeDevices() { return std::move(m_devices); }

private:
    bool runtime(const RawText& name) {
        const auto identifier = text(name);
        if (!identifier || m_runtimes.contains(*identifier))
            return false;
        m_runtimes.insert(*identifier);
        const bool isIOS = identifier->contains("CoreSimulator.SimRuntime.iOS"_L1);
        return array([&] { return device(*identifier, isIOS); });
    }

    bool device(const QString& runtime, bool isIOS) {
        RawText udid;
        RawText name;
        RawText state;
        RawText type;
        std::optional<bool> isAvailable;
        const bool isRead = object([&](const RawText& key) {
            if (key.bytes == "udid")
                return udid.bytes.isNull() && string(udid);
            if (key.bytes == "name")
                return name.bytes.isNull() && string(name);
            if (key.bytes == "state")
                return state.bytes.isNull() && string(state);
            if (key.bytes == "deviceTypeIdentifier")
                return type.bytes.isNull() && string(type);
            if (key.bytes == "isAvailable")
                return !isAvailable && boolean(isAvailable);
            return skipValue(deepestLevel);
        });
        if (!isRead || udid.bytes.isNull() || name.bytes.isNull() || state.bytes.isNull())
            return false;
        if (!isIOS || !isAvailable.value_or(true))
            return true;
        const auto udidText = text(udid);
        const auto nameText = text(name);
        const auto stateText = repeatedText(state);
        const auto typeText = type.bytes.isNull() ? QString() : repeatedText(type);
        if (!udidText || !nameText || !stateText || !typeText)
            return false;
        m_devices.push_back({.udid = *udidText,
                             .name = *nameText,
                             .state = *stateText,
                             .runtimeIdentifier = runtime,
                             .deviceTypeIdentifier = type.bytes.isNull() ? std::nullopt : typeText,
                             .isAvailable = true});
        return true;
    }

    /// Calls `member` behind the colon of each key.
    template<typename Member>
    bool object(Member member) {
        if (!take('{'))
            return false;
        if (take('}'))
            return true;
        do {
            RawText key;
            // Another spelling of a key might be one that is looked for.
            if (!string(key) || key.hasEscapes || !take(':') || !member(key))
                return false;
        } while (take(','));
        return take('}');
    }

    template<typename Element>
    bool array(Element element) {
        if (!take('['))
            return false;
        if (take(']'))
            return true;
        do {
            if (!element())
                return false;
        } while (take(','));
        return take(']');
    }

    bool skipValue(int levels) {
        skipSpace();
        if (m_at == m_end || levels == 0)
            return false;
        RawText ignored;
        switch (*m_at) {
        case '"':
            return string(ignored);
        case '{':
            return object([&](const RawText&) { return skipValue(levels - 1); });
        case '[':
            return array([&] { return skipValue(levels - 1); });
        case 't':
            return word("true");
        case 'f':
            return word("false");
        case 'n':
            return word("null");
        default:
            return number();
        }
    }

    bool string(RawText& read) {
        if (!take('"'))
            return false;
        const char* const begin = m_at;
        for (;;) {
            skipOrdinary();
            if (m_at == m_end)
                return false;
            const auto byte = static_cast<std::uint8_t>(*m_at);
            if (byte == '"') {
                read.bytes = QByteArrayView(begin, m_at);
                ++m_at;
                // Bytes that are no text are an error even where nobody reads them.
                return read.isASCII || decoded(read.bytes, false);
            }
            if (byte >= 0x80) {
                read.isASCII = false;
                ++m_at;
            } else if (byte == '\\' && m_at + 1 != m_end && std::strchr("\"\\/bfnrt", m_at[1]) != nullptr &&
                       m_at[1] != '\0') {
                read.hasEscapes = true;
                m_at += 2;
            } else {
                return false;
            }
        }
    }

    void skipOrdinary() {
        if constexpr (std::endian::native == std::endian::little) {
            while (m_end - m_at >= 8) {
                std::uint64_t word = 0;
                std::memcpy(&word, m_at, sizeof word);
                const std::uint64_t special =
                    firstZeroByte(word ^ everyByte('"')) | firstZeroByte(word ^ everyByte('\\')) |
                    ((word - everyByte(0x20)) & ~word & everyByte(0x80)) | (word & everyByte(0x80));
                if (special != 0) {
                    m_at += std::countr_zero(special) / 8;
                    return;
                }
                m_at += 8;
            }
        }
        while (m_at != m_end && isOrdinary(*m_at))
            ++m_at;
    }

    bool boolean(std::optional<bool>& read) {
        skipSpace();
        if (m_at == m_end)
            return false;
        read = *m_at == 't';
        return word(*read ? "true" : "false");
    }

    bool word(const char* expected) {
        const auto length = static_cast<std::ptrdiff_t>(std::strlen(expected));
        if (m_end - m_at < length || std::memcmp(m_at, expected, static_cast<std::size_t>(length)) != 0)
            return false;
        m_at += length;
        return true;
    }

    /// Without an exponent, which no number of the tool has.
    bool number() {
        if (*m_at == '-')
            ++m_at;
        const char* const begin = m_at;
        if (!digits() || (*begin == '0' && m_at - begin > 1))
            return false;
        if (m_at == m_end || *m_at != '.')
            return m_at != m_end && *m_at != 'e' && *m_at != 'E';
        ++m_at;
        return digits() && m_at != m_end && *m_at != 'e' && *m_at != 'E';
    }

    bool digits() {
        const char* const begin = m_at;
        while (m_at != m_end && *m_at >= '0' && *m_at <= '9')
            ++m_at;
        return m_at != begin && m_at - begin <= mostDigits;
    }

    bool take(char expected) {
        skipSpace();
        if (m_at == m_end || *m_at != expected)
            return false;
        ++m_at;
        return true;
    }

    void skipSpace() {
        while (m_at != m_end && (*m_at == ' ' || *m_at == '\n' || *m_at == '\r' || *m_at == '\t'))
            ++m_at;
    }

    /// Nothing when the bytes are no UTF-8.
    [[nodiscard]] static std::optional<QString> text(const RawText& raw) {
        if (!raw.hasEscapes)
            return decoded(raw.bytes, raw.isASCII);
        QByteArray bytes;
        bytes.reserve(raw.bytes.size());
        for (qsizetype at = 0; at < raw.bytes.size(); ++at) {
            const char character = raw.bytes.at(at);
            bytes.append(character == '\\' ? unescaped(raw.bytes.at(++at)) : character);
        }
        return decoded(bytes, raw.isASCII);
    }

    [[nodiscard]] static std::optional<QString> decoded(QByteArrayView bytes, bool isASCII) {
        if (isASCII)
            return QString::fromLatin1(bytes);
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        QString decoded = decoder(bytes);
        return decoder.hasError() ? std::nullopt : std::optional(std::move(decoded));
    }

    /// The same for a text that many records share.
    [[nodiscard]] std::optional<QString> repeatedText(const RawText& raw) {
        if (const auto known = m_repeated.constFind(raw.bytes); known != m_repeated.cend())
            return *known;
        const auto read = text(raw);
        if (read)
            m_repeated.insert(raw.bytes, *read);
        return read;
    }

    const char* m_at;
    const char* m_end;
    bool m_hasDevices = false;
    QSet<QString> m_runtimes;
    QHash<QByteArrayView, QString> m_repeated;
    std::vector<SimulatorDevice> m_devices;
};

} // namespace

std::optional<std::vector<SimulatorDevice>> availableIOSDevices(const QByteArray& output) {
    Scanner scanner(output);
    if (!scanner.scan())
        return std::nullopt;
    return scanner.takeDevices();
}

} // namespace corvanta::DeviceListScanner
