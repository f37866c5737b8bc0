// SPDX-License-Identifier: MIT
#pragma once

#include "window/Symbols.h"

#include <QPushButton>

#include <optional>

namespace corvanta {

/// One row of a list that is pressed as a whole: a title, under it perhaps a second line, with symbols before and
/// after.
///
/// What does not fit is elided, and the tooltip shows it whole. The button's text is the title.
class ListRow final : public QPushButton {
    Q_OBJECT

public:
    explicit ListRow(QWidget* parent = nullptr);

    void showTexts(const QString& title, const QString& subtitle = {});
    void setSymbols(std::optional<Symbol> leading, std::optional<Symbol> trailing);

    [[nodiscard]] const std::optional<Symbol>& leadingSymbol() const { return m_leading; }

    [[nodiscard]] const std::optional<Symbol>& trailingSymbol() const { return m_trailing; }

    /// Keeps that much free at the end of the row for a control that lies over it.
    void setTrailingSpace(int width);

    /// Whether a hairline parts it from the row above.
    void setSeparated(bool isSeparated);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;

private:
    [[nodiscard]] QFont subtitleFont() const;
    [[nodiscard]] QRect textArea() const;
    void updateToolTip();

    QString m_title;
    QString m_subtitle;
    std::optional<Symbol> m_leading;
    std::optional<Symbol> m_trailing;
    int m_trailingSpace = 0;
    bool m_isSeparated = false;
};

/// Scrolls every area that `widget` stands in so that it is in sight.
void scrollIntoSight(QWidget& widget);

} // namespace corvanta
