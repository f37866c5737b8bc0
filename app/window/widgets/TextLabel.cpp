// SPDX-License-Identifier: MIT
#include "window/widgets/TextLabel.h"

#include "window/DisplayText.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

/// Words up to here stay whole; longer ones are addresses, paths and identifiers rather than words.
constexpr qsizetype longestWholeWord = 15;
constexpr QChar breakPlace = QChar(0x200B);

bool isPunctuation(QChar letter) {
    return letter.isPunct() || letter.isSymbol();
}

/// Adds the places inside a long word: after its punctuation, and anywhere in what has none for too long.
void appendWord(QString& result, QStringView word) {
    qsizetype start = 0;
    while (start < word.size()) {
        qsizetype end = start;
        while (end < word.size() && !isPunctuation(word[end]))
            ++end;
        const bool isLong = end - start > longestWholeWord;
        for (qsizetype index = start; index < end; ++index) {
            result += word[index];
            const bool isInsideCharacter =
                index + 1 < end && (word[index + 1].isLowSurrogate() || word[index + 1].isMark());
            if (isLong && index + 1 < end && !isInsideCharacter)
                result += breakPlace;
        }
        while (end < word.size() && isPunctuation(word[end]))
            result += word[end++];
        if (end < word.size())
            result += breakPlace;
        start = end;
    }
}

QString withBreakPlaces(const QString& text) {
    QString result;
    qsizetype start = 0;
    while (start < text.size()) {
        qsizetype end = start;
        while (end < text.size() && !text[end].isSpace())
            ++end;
        const QStringView word = QStringView(text).mid(start, end - start);
        if (word.size() > longestWholeWord)
            appendWord(result, word);
        else
            result += word;
        while (end < text.size() && text[end].isSpace())
            result += text[end++];
        start = end;
    }
    return result;
}

} // namespace

TextLabel::TextLabel(TextStyle style, const QString& text, QWidget* parent)
    : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setWordWrap(true);
    switch (style) {
    case TextStyle::title:
        setObjectName(u"title"_s);
        break;
    case TextStyle::heading:
        setObjectName(u"heading"_s);
        break;
    case TextStyle::body:
        setObjectName(u"body"_s);
        break;
    case TextStyle::label:
        setObjectName(u"fieldLabel"_s);
        break;
    case TextStyle::secondary:
        setObjectName(u"secondary"_s);
        break;
    }
    showText(text);
}

void TextLabel::showText(const QString& text) {
    if (m_text == text && !this->text().isEmpty())
        return;
    m_text = text;
    const QString shown = displayText(text);
    setText(withBreakPlaces(shown));
    setAccessibleName(shown);
}

void TextLabel::setSelectable() {
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

QString TextLabel::selection() const {
    return selectedText().remove(breakPlace);
}

void TextLabel::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy) && hasSelectedText()) {
        QGuiApplication::clipboard()->setText(selection());
        event->accept();
        return;
    }
    QLabel::keyPressEvent(event);
}

void TextLabel::mouseReleaseEvent(QMouseEvent* event) {
    QLabel::mouseReleaseEvent(event);
    if (QClipboard* const clipboard = QGuiApplication::clipboard();
        clipboard->supportsSelection() && hasSelectedText() && clipboard->ownsSelection())
        clipboard->setText(selection(), QClipboard::Selection);
}

void TextLabel::contextMenuEvent(QContextMenuEvent* event) {
    if (!textInteractionFlags().testFlag(Qt::TextSelectableByMouse)) {
        QLabel::contextMenuEvent(event);
        return;
    }
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    QAction* const copy =
        menu->addAction(u"Copy"_s, this, [this] { QGuiApplication::clipboard()->setText(selection()); });
    copy->setEnabled(hasSelectedText());
    menu->addAction(u"Select All"_s, this, [this] { setSelection(0, static_cast<int>(text().size())); });
    menu->popup(event->globalPos());
}

TextLabel* makeLineLabel(TextStyle style, const QString& text) {
    auto* const label = new TextLabel(style, text);
    label->setWordWrap(false);
    return label;
}

} // namespace corvanta
