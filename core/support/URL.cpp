// SPDX-License-Identifier: MIT
#include "support/URL.h"

#include <QByteArray>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

/// What RFC 3986 allows beside letters and digits, part by part.
constexpr QStringView zoneExtras = u"-._~";
constexpr QStringView schemeExtras = u"+-.";
constexpr QStringView hostExtras = u"-._~!$&'()*+,;=";
constexpr QStringView userExtras = u"-._~!$&'()*+,;=:";
constexpr QStringView pathExtras = u"-._~!$&'()*+,;=:@/";
constexpr QStringView queryExtras = u"-._~!$&'()*+,;=:@/?";

bool isDigit(QChar character) {
    return character >= u'0' && character <= u'9';
}

bool isLetter(QChar character) {
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

bool isHexDigit(QChar character) {
    return isDigit(character) || (character >= u'a' && character <= u'f') || (character >= u'A' && character <= u'F');
}

bool isAllowed(QChar character, QStringView extras) {
    return isLetter(character) || isDigit(character) || extras.contains(character);
}

bool isEscape(QStringView text, qsizetype index) {
    return text[index] == u'%' && index + 2 < text.size() && isHexDigit(text[index + 1]) && isHexDigit(text[index + 2]);
}

bool consistsOf(QStringView text, QStringView extras) {
    return std::ranges::all_of(text, [extras](QChar character) { return isAllowed(character, extras); });
}

/// `text` with everything percent-encoded that is neither allowed nor an escape already.
QString encoded(QStringView text, QStringView extras) {
    QString result;
    result.reserve(text.size());
    for (qsizetype index = 0; index < text.size(); ++index) {
        if (isAllowed(text[index], extras) || isEscape(text, index)) {
            result += text[index];
            continue;
        }
        const bool isPair =
            text[index].isHighSurrogate() && index + 1 < text.size() && text[index + 1].isLowSurrogate();
        const QByteArray bytes = text.sliced(index, isPair ? 2 : 1).toUtf8();
        const QByteArray digits = bytes.toHex().toUpper();
        for (qsizetype digit = 0; digit < digits.size(); digit += 2)
            result += u'%' + QString::fromLatin1(digits.sliced(digit, 2));
        index += isPair ? 1 : 0;
    }
    return result;
}

/// The position of the colon behind a scheme, or -1 in a relative reference.
///
/// A bracket or an at sign before the first colon means that a host was typed, whose port the colon introduces.
qsizetype schemeEnd(QStringView text) {
    const auto end =
        std::ranges::find_if(text, [](QChar character) { return QStringView(u":/?#[]@").contains(character); });
    const bool isScheme = end != text.end() && end != text.begin() && *end == u':';
    return isScheme ? end - text.begin() : -1;
}

/// The end of `text` from `start` up to the first of `delimiters`.
qsizetype endOfPart(QStringView text, qsizetype start, QStringView delimiters) {
    qsizetype end = start;
    while (end < text.size() && !delimiters.contains(text[end]))
        ++end;
    return end;
}

/// An address in brackets: only a zone behind `%` is encoded, everything else must be legal already.
std::optional<QString> encodedAddressLiteral(QStringView inner) {
    const qsizetype percent = inner.indexOf(u'%');
    if (!consistsOf(percent < 0 ? inner : inner.first(percent), userExtras))
        return std::nullopt;
    if (percent < 0)
        return inner.toString();
    QStringView zone = inner.sliced(percent + 1);
    if (zone.startsWith(u"25"))
        zone = zone.sliced(2);
    return inner.first(percent).toString() + u"%25"_s + encoded(zone, zoneExtras);
}

bool isLegalHost(QStringView host) {
    for (qsizetype index = 0; index < host.size(); ++index) {
        if (!isAllowed(host[index], hostExtras) && !isEscape(host, index))
            return false;
    }
    return true;
}

std::optional<QString> encodedHostName(QStringView host) {
    if (isLegalHost(host))
        return host.toString();
    const bool isASCII = std::ranges::all_of(host, [](QChar character) { return character.unicode() < 0x80; });
    if (isASCII)
        return std::nullopt;
    QString international = QString::fromLatin1(QUrl::toAce(host.toString()));
    if (international.isEmpty() || !isLegalHost(international))
        return std::nullopt;
    return international;
}

struct Authority {
    QString host;
    QString absoluteString;
};

/// The host and the port behind the user information; `prefix` stands before them in the result.
std::optional<Authority> parseHostAndPort(QStringView text, const QString& prefix) {
    const qsizetype bracket = text.startsWith(u'[') ? text.indexOf(u']') : -1;
    const qsizetype hostEnd = bracket >= 0 ? bracket + 1 : endOfPart(text, 0, u":");
    const QStringView port = text.sliced(hostEnd);
    if (!port.isEmpty() && (port.front() != u':' || !std::ranges::all_of(port.sliced(1), isDigit)))
        return std::nullopt;

    const auto host =
        bracket >= 0 ? encodedAddressLiteral(text.sliced(1, bracket - 1)) : encodedHostName(text.first(hostEnd));
    if (!host)
        return std::nullopt;
    const QString spelled = bracket >= 0 ? u'[' + *host + u']' : *host;
    return Authority{*host, prefix + spelled + port.toString()};
}

std::optional<Authority> parseAuthority(QStringView text) {
    const qsizetype at = text.lastIndexOf(u'@');
    const QString user = at < 0 ? QString() : encoded(text.first(at), userExtras) + u'@';
    return parseHostAndPort(text.sliced(at + 1), user);
}

} // namespace

std::optional<URL> URL::parse(QStringView text) {
    URL url;
    qsizetype position = 0;
    if (const qsizetype end = schemeEnd(text); end >= 0) {
        const QStringView scheme = text.first(end);
        if (!isLetter(scheme.front()) || !consistsOf(scheme, schemeExtras))
            return std::nullopt;
        url.m_scheme = scheme.toString();
        url.m_absoluteString = *url.m_scheme + u':';
        position = end + 1;
    }
    if (text.sliced(position).startsWith(u"//")) {
        const qsizetype end = endOfPart(text, position + 2, u"/?#");
        const auto authority = parseAuthority(text.sliced(position + 2, end - position - 2));
        if (!authority)
            return std::nullopt;
        url.m_host = authority->host;
        url.m_absoluteString += u"//"_s + authority->absoluteString;
        position = end;
    }

    const qsizetype pathEnd = endOfPart(text, position, u"?#");
    const QString path = encoded(text.sliced(position, pathEnd - position), pathExtras);
    url.m_path = QString::fromUtf8(QByteArray::fromPercentEncoding(path.toLatin1()));
    url.m_absoluteString += path;
    position = pathEnd;

    if (position < text.size() && text[position] == u'?') {
        const qsizetype queryEnd = endOfPart(text, position + 1, u"#");
        url.m_absoluteString += u'?' + encoded(text.sliced(position + 1, queryEnd - position - 1), queryExtras);
        position = queryEnd;
    }
    if (position < text.size())
        url.m_absoluteString += u'#' + encoded(text.sliced(position + 1), queryExtras);
    return url;
}

QString URL::absoluteString() const {
    return m_absoluteString;
}

std::optional<QString> URL::scheme() const {
    return m_scheme;
}

std::optional<QString> URL::host() const {
    return m_host;
}

QString URL::path() const {
    return m_path;
}

} // namespace corvanta
