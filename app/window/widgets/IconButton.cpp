// SPDX-License-Identifier: MIT
#include "window/widgets/IconButton.h"

#include "window/widgets/ProgressIndicator.h"

#include <QHBoxLayout>
#include <QMouseEvent>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

IconButton::IconButton(Symbol symbol, const QString& accessibleName, Frame frame, QWidget* parent)
    : QPushButton(parent)
    , m_symbol(symbol) {
    setProperty("frame", frame == Frame::bare ? u"bare"_s : u"shown"_s);
    setIcon(Symbols::icon(symbol));
    setIconSize(QSize(16, 16));
    setAccessibleName(accessibleName);
    setFocusPolicy(Qt::TabFocus);
    setAutoDefault(false);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void IconButton::setClock(const Clock& clock) {
    m_progress = new ProgressIndicator(clock, this);
    m_progress->setAttribute(Qt::WA_TransparentForMouseEvents, false);
    auto* const inside = new QHBoxLayout(this);
    inside->setContentsMargins(0, 0, 0, 0);
    inside->addWidget(m_progress, 0, Qt::AlignCenter);
}

void IconButton::setBusy(bool isBusy) {
    if (m_progress == nullptr || isBusy == m_progress->isActive())
        return;
    if (isBusy)
        m_sizeWithSymbol = QPushButton::sizeHint();
    m_progress->setActive(isBusy);
    setIcon(isBusy ? QIcon() : Symbols::icon(m_symbol));
}

bool IconButton::isBusy() const {
    return m_progress != nullptr && m_progress->isActive();
}

QSize IconButton::sizeHint() const {
    return isBusy() ? m_sizeWithSymbol : QPushButton::sizeHint();
}

void IconButton::mouseDoubleClickEvent(QMouseEvent* event) {
    event->accept();
}

} // namespace corvanta
