// SPDX-License-Identifier: MIT
#pragma once

#include "setup/SetupCheck.h"

#include <QWidget>

class QPushButton;

namespace corvanta {

class SymbolMark;
class TextLabel;

/// One setup check: its state, what it is about, what was found, and the button that mends it.
class CheckRow final : public QWidget {
    Q_OBJECT

public:
    enum class Position { first, further };

    /// Above and below its texts.
    static constexpr int space = 6;

    explicit CheckRow(Position position, QWidget* parent = nullptr);

    void showCheck(const SetupCheck& check);

Q_SIGNALS:
    void actionRequested(corvanta::SetupRecoveryAction action);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Position m_position;
    SetupRecoveryAction m_action = SetupRecoveryAction::none;
    SymbolMark* m_state;
    TextLabel* m_title;
    TextLabel* m_detail;
    QPushButton* m_button;
};

} // namespace corvanta
