// SPDX-License-Identifier: MIT
#pragma once

#include "window/Symbols.h"

#include <QTabBar>

#include <vector>

namespace corvanta {

/// A few tabs side by side in one frame, the current one standing out.
class SegmentedTabs final : public QTabBar {
    Q_OBJECT

public:
    explicit SegmentedTabs(const QString& accessibleName, QWidget* parent = nullptr);

    void addSegment(Symbol symbol, const QString& text);

    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    [[nodiscard]] QSize tabSizeHint(int index) const override;
    [[nodiscard]] QSize minimumTabSizeHint(int index) const override;
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<Symbol> m_symbols;
};

} // namespace corvanta
