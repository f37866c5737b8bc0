// SPDX-License-Identifier: MIT
#include "window/widgets/CheckRow.h"

#include "window/Appearance.h"
#include "window/DisplayText.h"
#include "window/widgets/AccessibleRoles.h"
#include "window/widgets/Buttons.h"
#include "window/widgets/SymbolMark.h"
#include "window/widgets/TextLabel.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

namespace {

QString actionLabel(SetupRecoveryAction action) {
    switch (action) {
    case SetupRecoveryAction::none:
        return {};
    case SetupRecoveryAction::openSoftwareUpdate:
        return u"Update macOS"_s;
    case SetupRecoveryAction::openXcodeDownload:
        return u"Get Xcode"_s;
    case SetupRecoveryAction::openXcode:
        return u"Open Xcode"_s;
    case SetupRecoveryAction::requestAccessibility:
        return u"Allow Access"_s;
    case SetupRecoveryAction::openSafari:
        return u"Open Safari"_s;
    }
    return {};
}

void showState(SymbolMark& mark, SetupCheckState state) {
    switch (state) {
    case SetupCheckState::passed:
        mark.setSymbol(Symbol::passed, Tint::passed, u"Passed"_s);
        break;
    case SetupCheckState::failed:
        mark.setSymbol(Symbol::failed, Tint::failed, u"Failed"_s);
        break;
    case SetupCheckState::blocked:
        mark.setSymbol(Symbol::blocked, Tint::blocked, u"Blocked"_s);
        break;
    }
}

} // namespace

CheckRow::CheckRow(Position position, QWidget* parent)
    : QWidget(parent)
    , m_position(position)
    , m_state(new SymbolMark)
    , m_title(new TextLabel(TextStyle::body))
    , m_detail(new TextLabel(TextStyle::secondary))
    , m_button(makeSmallButton({})) {
    setAccessibleRole(*this, QAccessible::ListItem);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(0, space, 0, space);
    row->setSpacing(10);
    row->addWidget(m_state);
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(1);
    texts->addWidget(m_title);
    texts->addWidget(m_detail);
    row->addLayout(texts, 1);
    row->addWidget(m_button);
    m_button->hide();
    connect(m_button, &QPushButton::clicked, this, [this] { Q_EMIT actionRequested(m_action); });
}

void CheckRow::showCheck(const SetupCheck& check) {
    m_action = check.recoveryAction;
    showState(*m_state, check.state);
    m_title->showText(check.title);
    m_detail->showText(check.detail);
    const QString name = displayText(check.title, longestLine);
    setAccessibleName(name);
    if (m_action != SetupRecoveryAction::none)
        m_button->setText(actionLabel(m_action));
    setVisibleKeepingFocus(*m_button, m_action != SetupRecoveryAction::none);
    m_button->setAccessibleDescription(name);
}

void CheckRow::paintEvent(QPaintEvent*) {
    if (m_position == Position::first)
        return;
    QPainter painter(this);
    painter.fillRect(QRect(0, 0, width(), 1), Appearance::current().hairline);
}

} // namespace corvanta
