// SPDX-License-Identifier: MIT
#pragma once

#include <QFrame>

class QVBoxLayout;

namespace corvanta {

/// A rounded card with 12 points of space inside and 8 between its rows, which its layout takes.
class Card final : public QFrame {
    Q_OBJECT

public:
    /// `name` is what the group is called by those who hear the window instead of seeing it.
    explicit Card(const QString& name, QWidget* parent = nullptr);

    [[nodiscard]] QVBoxLayout& rows() const { return *m_rows; }

private:
    QVBoxLayout* m_rows;
};

/// Gives a section the one card that it consists of.
[[nodiscard]] Card& addCard(QWidget& section, const QString& name);

} // namespace corvanta
