// SPDX-License-Identifier: MIT
#include "support/NameOrder.h"

#include <QCollator>
#include <QLocale>
#include <QString>

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

} // namespace

int compareNames(QStringView left, QStringView right) {
    // A collator sets itself up at its first comparison, which is not safe across threads.
    thread_local const QCollator collator = makeCollator();
    return collator.compare(left, right);
}

bool containsName(QStringView text, QStringView part) {
    if (part.isEmpty())
        return false;
    const QLocale locale = nameLocale();
    return folded(text, locale).contains(folded(part, locale));
}

} // namespace corvanta
