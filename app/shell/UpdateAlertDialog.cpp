// SPDX-License-Identifier: MIT
#include "shell/UpdateAlertDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace corvanta {

namespace {

constexpr int textWidth = 360;
constexpr int maxMessageHeight = 260;

} // namespace

UpdateAlertDialog::UpdateAlertDialog(const UpdateAlertContent& content, QWidget* parent)
    : QDialog(parent) {
    setWindowTitle(content.title);
    setAccessibleName(content.title);
    setAttribute(Qt::WA_DeleteOnClose);
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(12);
    layout->addWidget(makeTitle(content.title));
    layout->addWidget(makeMessage(content.message));
    layout->addWidget(makeButtons(content));
}

QWidget* UpdateAlertDialog::makeTitle(const QString& title) {
    auto* const label = new QLabel(this);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setText(title);
    QFont font = label->font();
    font.setBold(true);
    label->setFont(font);
    return label;
}

QWidget* UpdateAlertDialog::makeMessage(const QString& message) {
    auto* const view = new QPlainTextEdit(this);
    view->setReadOnly(true);
    view->setTabChangesFocus(true);
    view->setFrameShape(QFrame::NoFrame);
    view->viewport()->setAutoFillBackground(false);
    view->document()->setDocumentMargin(0);
    view->setPlainText(message);
    const QRect needed = view->fontMetrics().boundingRect(QRect(0, 0, textWidth, maxMessageHeight),
                                                          Qt::AlignLeft | Qt::TextWordWrap, message.left(4096));
    constexpr int slack = 6;
    view->setMinimumWidth(textWidth);
    view->setFixedHeight(std::min(needed.height() + slack, maxMessageHeight));
    return view;
}

QWidget* UpdateAlertDialog::makeButtons(const UpdateAlertContent& content) {
    auto* const box = new QDialogButtonBox(this);
    for (const UpdateAlertButton& button : content.buttons) {
        const bool isStandard = button.role == UpdateAlertButtonRole::standard;
        QPushButton* const widget =
            box->addButton(button.text, isStandard ? QDialogButtonBox::AcceptRole : QDialogButtonBox::RejectRole);
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
