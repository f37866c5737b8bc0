// SPDX-License-Identifier: MIT
#pragma once

#include "window/Symbols.h"

#include <QWidget>

namespace corvanta {

/// A symbol that stands still: a state, or the sign of a heading. A state reads by its shape as well as by its colour.
class SymbolMark final : public QWidget {
    Q_OBJECT

public:
    explicit SymbolMark(int side = 16, QWidget* parent = nullptr);

    /// `name` is what the symbol means; empty where the text beside it says that already.
    void setSymbol(Symbol symbol, Tint tint, const QString& name = {});

    [[nodiscard]] Symbol symbol() const { return m_symbol; }

    [[nodiscard]] Tint tint() const { return m_tint; }

    [[nodiscard]] QSize sizeHint() const override { return {m_side, m_side}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_side;
    Symbol m_symbol = Symbol::phaseIdle;
    Tint m_tint = Tint::text;
};

} // namespace corvanta
