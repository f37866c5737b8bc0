// SPDX-License-Identifier: MIT
#include "window/widgets/Card.h"

#include "window/widgets/AccessibleRoles.h"

#include <QVBoxLayout>

namespace corvanta {

using namespace Qt::Literals::StringLiterals;

Card::Card(const QString& name, QWidget* parent)
    : QFrame(parent)
    , m_rows(new QVBoxLayout(this)) {
    setObjectName(u"card"_s);
    setAccessibleRole(*this, QAccessible::Grouping);
    setAccessibleName(name);
    m_rows->setContentsMargins(12, 12, 12, 12);
    m_rows->setSpacing(8);
}

Card& addCard(QWidget& section, const QString& name) {
    auto* const outer = new QVBoxLayout(&section);
    outer->setContentsMargins(0, 0, 0, 0);
    auto* const card = new Card(name);
    outer->addWidget(card);
    return *card;
}

} // namespace corvanta
