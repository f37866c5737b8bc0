// SPDX-License-Identifier: MIT
#pragma once

#include "setup/SetupCheck.h"
#include "workspace/WorkspacePhase.h"

#include <QComboBox>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QWidget>

#include <vector>

class QGridLayout;
class QVBoxLayout;

/// The small parts that the sections of the control window are made of.
namespace corvanta {

/// A rounded card with 12 points of space inside; its layout takes the rows.
class Card final : public QFrame {
    Q_OBJECT

public:
    explicit Card(QWidget* parent = nullptr);

    [[nodiscard]] QVBoxLayout& rows() const { return *m_rows; }

private:
    QVBoxLayout* m_rows;
};

/// A state as a coloured shape, so that it reads without colour too.
class StateMark final : public QWidget {
    Q_OBJECT

public:
    enum class Shape { check, cross, dash, dot };

    explicit StateMark(QWidget* parent = nullptr);

    void setState(SetupCheckState state);
    void setPhase(WorkspacePhase phase);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Shape m_shape = Shape::dot;
    QColor m_colour;
};

/// A turning indicator for work that is under way; takes its space also while it is inactive.
class ProgressIndicator final : public QWidget {
    Q_OBJECT

public:
    explicit ProgressIndicator(QWidget* parent = nullptr);

    void setActive(bool isActive);

    [[nodiscard]] bool isActive() const { return m_timer != 0; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    int m_timer = 0;
    int m_angle = 0;
};

/// A picker whose arrows say that it opens a list.
class Picker final : public QComboBox {
    Q_OBJECT

public:
    explicit Picker(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// Buttons in one row where they fit and in two rows where they do not, in the same order, all as wide as the card.
class ButtonRows final : public QWidget {
    Q_OBJECT

public:
    /// Takes ownership of the buttons.
    explicit ButtonRows(std::vector<QPushButton*> buttons, QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void place(int width);
    [[nodiscard]] int widthOfOneRow() const;

    std::vector<QPushButton*> m_buttons;
    QGridLayout* m_grid;
};

/// A button that shrinks to the width it is given, its text elided with the whole of it as the tooltip.
class ElidingButton final : public QPushButton {
    Q_OBJECT

public:
    explicit ElidingButton(const QString& text, QWidget* parent = nullptr);

    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showElided(int width);

    QString m_text;
};

/// The text as a tooltip that shows it letter by letter; tooltips take anything that looks like mark-up for mark-up.
[[nodiscard]] QString plainToolTip(const QString& text);

enum class TextStyle { title, heading, body, secondary };

/// A plain-text label that wraps and never cuts its text.
[[nodiscard]] QLabel* makeLabel(TextStyle style, const QString& text = {});

} // namespace corvanta
