// SPDX-License-Identifier: MIT
#include "shell/UpdateAlertDialog.h"

#include "window/DisplayText.h"
#include "window/widgets/SymbolMark.h"
#include "window/widgets/TextLabel.h"

#include <QDialogButtonBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTextDocument>
#include <QTextOption>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int signSide = 36;
constexpr int textWidth = 340;
constexpr int maxMessageLines = 14;
/// More than a person reads in an alert.
constexpr qsizetype mostLines = 30'000;
/// Between the frame of a message that scrolls and its text.
constexpr int framePadding = 8;

/// How high the text becomes in that width.
int heightOf(const QString& text, const QFont& font) {
    QTextDocument document;
    document.setDocumentMargin(0);
    document.setDefaultFont(font);
    QTextOption wrapping;
    wrapping.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document.setDefaultTextOption(wrapping);
    document.setPlainText(text);
    document.setTextWidth(textWidth);
    // The view that shows it counts a last line that ends with it as one that is cut.
    return static_cast<int>(std::ceil(document.size().height())) + 1;
}

/// Without lines that would take seconds to lay out.
QString readable(const QString& message) {
    QStringList lines = message.split(u'\n');
    lines = lines.first(std::min(lines.size(), mostLines));
    for (QString& line : lines)
        line = displayText(line);
    return lines.join(u'\n');
}

} // namespace

UpdateAlertDialog::UpdateAlertDialog(const UpdateAlertContent& content, QWidget* parent)
    : QDialog(parent) {
    setObjectName(u"updateAlert"_s);
    const QString title = displayText(content.title, longestLine);
    setWindowTitle(title);
    setAccessibleName(title);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(6);
    texts->addWidget(new TextLabel(TextStyle::title, title));
    if (QWidget* const message = makeMessage(content.message))
        texts->addWidget(message);
    texts->addStretch(1);

    auto* const sign = new SymbolMark(signSide);
    sign->setSymbol(Symbol::workspace, Tint::accent);
    auto* const upper = new QHBoxLayout;
    upper->setSpacing(14);
    upper->addWidget(sign, 0, Qt::AlignTop);
    upper->addLayout(texts, 1);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(16);
    layout->addLayout(upper);
    layout->addWidget(makeButtons(content));
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

QWidget* UpdateAlertDialog::makeMessage(const QString& message) {
    if (message.isEmpty())
        return nullptr;
    // Nobody needs to measure what does not fit anyway.
    constexpr qsizetype measured = 4096;
    ensurePolished();
    const int needed = heightOf(message.left(measured), font());
    const int most = maxMessageLines * fontMetrics().lineSpacing();
    const bool isScrolled = needed > most || message.size() > measured;

    auto* const view = new QPlainTextEdit(this);
    view->setObjectName(isScrolled ? u"scrolledMessage"_s : u"message"_s);
    view->setReadOnly(true);
    view->setTabChangesFocus(true);
    view->setFrameShape(isScrolled ? QFrame::StyledPanel : QFrame::NoFrame);
    view->viewport()->setAutoFillBackground(false);
    view->document()->setDocumentMargin(0);
    view->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    view->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    view->setVerticalScrollBarPolicy(isScrolled ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
    auto* const bar = new QScrollBar(Qt::Vertical);
    bar->setObjectName(u"overlay"_s);
    view->setVerticalScrollBar(bar);
    view->setPlainText(readable(message));
    view->setFixedSize(textWidth, isScrolled ? most + 2 * framePadding : needed);
    view->setFocusPolicy(isScrolled ? Qt::StrongFocus : Qt::ClickFocus);
    return view;
}

QWidget* UpdateAlertDialog::makeButtons(const UpdateAlertContent& content) {
    auto* const box = new QDialogButtonBox(this);
    for (const UpdateAlertButton& button : content.buttons) {
        const bool isStandard = button.role == UpdateAlertButtonRole::standard;
        auto* const widget = new QPushButton(button.text);
        // Said before the box lays it out.
        if (isStandard)
            widget->setProperty("emphasis", u"prominent"_s);
        box->addButton(widget, isStandard ? QDialogButtonBox::AcceptRole : QDialogButtonBox::RejectRole);
        widget->setDefault(isStandard);
        widget->setAutoDefault(isStandard);
        if (isStandard)
            widget->setFocus();
        connect(widget, &QPushButton::clicked, this, [this, address = button.opens] {
            if (address)
                Q_EMIT addressRequested(*address);
            accept();
        });
    }
    return box;
}

} // namespace corvanta
