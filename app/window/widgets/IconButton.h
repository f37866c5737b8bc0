// SPDX-License-Identifier: MIT
#pragma once

#include "window/Symbols.h"

#include <QPushButton>

namespace corvanta {

class Clock;
class ProgressIndicator;

/// A square button with a symbol alone, which shows in place of the symbol that its work is under way.
class IconButton final : public QPushButton {
    Q_OBJECT

public:
    enum class Frame { shown, bare };

    IconButton(Symbol symbol, const QString& accessibleName, Frame frame, QWidget* parent = nullptr);

    /// Prepares the indicator for `setBusy`. `clock` outlives the button.
    void setClock(const Clock& clock);

    void setBusy(bool isBusy);

    [[nodiscard]] bool isBusy() const;

    [[nodiscard]] QSize sizeHint() const override;

protected:
    /// The second press of a double click: what was under the pointer may have made room for something else.
    void mouseDoubleClickEvent(QMouseEvent* event) override;

private:
    Symbol m_symbol;
    /// What the button wants with its symbol; it keeps that without.
    QSize m_sizeWithSymbol;
    ProgressIndicator* m_progress = nullptr;
};

} // namespace corvanta
