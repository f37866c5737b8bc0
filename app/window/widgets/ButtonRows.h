// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

#include <vector>

class QPushButton;

namespace corvanta {

/// Buttons in one row where they fit and in two rows where they do not, in the same order, each below another as wide
/// as that one and together as wide as the card.
class ButtonRows final : public QWidget {
    Q_OBJECT

public:
    /// Takes ownership of the buttons.
    explicit ButtonRows(std::vector<QPushButton*> buttons, QWidget* parent = nullptr);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

    [[nodiscard]] bool hasHeightForWidth() const override { return true; }

    [[nodiscard]] int heightForWidth(int width) const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool event(QEvent* event) override;

private:
    void place();
    [[nodiscard]] int columnWidth(std::size_t column, std::size_t columns) const;
    [[nodiscard]] int widthWith(std::size_t columns) const;
    [[nodiscard]] std::vector<int> columnWidths(std::size_t columns) const;
    [[nodiscard]] std::size_t columnsFor(int width) const;
    [[nodiscard]] int buttonHeight() const;

    std::vector<QPushButton*> m_buttons;
};

} // namespace corvanta
