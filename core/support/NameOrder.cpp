// SPDX-License-Identifier: MIT
#include "support/NameOrder.h"

#include <QCollator>
#include <QHash>
#include <QLocale>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace corvanta {

namespace {

QLocale nameLocale() {
    const QLocale user;
    return user.language() == QLocale::C ? QLocale(QLocale::English, QLocale::UnitedStates) : user;
}

QCollator makeCollator() {
    QCollator collator(nameLocale());
    collator.setNumericMode(true);
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    return collator;
}

bool hasDottedAndDotlessI(const QLocale& locale) {
    return locale.language() == QLocale::Turkish || locale.language() == QLocale::Azerbaijani;
}

/// Composed first, so that the two spellings of an accented letter are one.
QString folded(QStringView text, const QLocale& locale) {
    const QString composed = text.toString().normalized(QString::NormalizationForm_C);
    return hasDottedAndDotlessI(locale) ? locale.toLower(composed) : composed.toCaseFolded();
}

/// Something that is quick to compare and puts most names in the right order: first signs, then numbers, then letters.
void appendGuessedKey(QStringView name, std::u16string& key) {
    constexpr char16_t digits = 0x100;
    constexpr char16_t letters = 0x200;
    const auto isDigit = [](QChar character) { return character >= u'0' && character <= u'9'; };
    for (qsizetype at = 0; at < name.size(); ++at) {
        const char16_t unit = name[at].unicode();
        if (isDigit(name[at])) {
            while (at + 1 < name.size() && name[at] == u'0' && isDigit(name[at + 1]))
                ++at;
            const qsizetype begin = at;
            while (at + 1 < name.size() && isDigit(name[at + 1]))
                ++at;
            const QStringView number = name.sliced(begin, at + 1 - begin);
            // Of two numbers the one with more digits is the greater one.
            key += static_cast<char16_t>(digits + std::min<qsizetype>(number.size(), digits - 1));
            for (const QChar digit : number)
                key += digit.unicode();
        } else if (unit >= u'A' && unit <= u'Z') {
            key += static_cast<char16_t>(letters + unit - u'A');
        } else if (unit >= u'a' && unit <= u'z') {
            key += static_cast<char16_t>(letters + unit - u'a');
        } else {
            key += unit < digits ? unit : static_cast<char16_t>(std::max<int>(unit, 2 * letters));
        }
    }
}

struct DistinctName {
    QStringView name;
    /// Where its guessed key stands among those of all names.
    std::size_t keyBegin;
    std::size_t keyEnd;
    /// How many others were met before it.
    std::size_t number;
};

/// How each name compares with the one behind which it stands; zero for the first.
std::vector<int> comparisonsInOrder(const std::vector<DistinctName>& order) {
    std::vector<int> comparisons;
    comparisons.reserve(order.size());
    for (std::size_t at = 0; at < order.size(); ++at)
        comparisons.push_back(at == 0 ? 0 : compareNames(order[at - 1].name, order[at].name));
    return comparisons;
}

} // namespace

int compareNames(QStringView left, QStringView right) {
    // A collator sets itself up at its first comparison, which is not safe across threads.
    thread_local const QCollator collator = makeCollator();
    return collator.compare(left, right);
}

std::vector<std::size_t> nameRanks(const std::vector<QStringView>& names) {
    std::vector<DistinctName> order;
    std::u16string keys;
    std::vector<std::size_t> ranks;
    QHash<QStringView, std::size_t> known;
    ranks.reserve(names.size());
    for (const QStringView name : names) {
        const auto found = known.constFind(name);
        ranks.push_back(found != known.cend() ? *found : order.size());
        if (found == known.cend()) {
            known.insert(name, order.size());
            const std::size_t keyBegin = keys.size();
            appendGuessedKey(name, keys);
            order.push_back({name, keyBegin, keys.size(), order.size()});
        }
    }
    std::ranges::sort(order, {}, [&keys](const DistinctName& name) {
        return std::u16string_view(keys).substr(name.keyBegin, name.keyEnd - name.keyBegin);
    });
    std::vector<int> steps = comparisonsInOrder(order);
    // The guess is good only if the real order agrees.
    if (std::ranges::any_of(steps, [](int step) { return step > 0; })) {
        std::ranges::sort(order, [](const DistinctName& left, const DistinctName& right) {
            return compareNames(left.name, right.name) < 0;
        });
        steps = comparisonsInOrder(order);
    }
    std::vector<std::size_t> rankOfNumber(order.size());
    std::size_t rank = 0;
    for (std::size_t at = 0; at < order.size(); ++at) {
        if (steps[at] != 0)
            ++rank;
        rankOfNumber[order[at].number] = rank;
    }
    for (std::size_t& number : ranks)
        number = rankOfNumber[number];
    return ranks;
}

bool containsName(QStringView text, QStringView part) {
    if (part.isEmpty())
        return false;
    const QLocale locale = nameLocale();
    return folded(text, locale).contains(folded(part, locale));
}

} // namespace corvanta
