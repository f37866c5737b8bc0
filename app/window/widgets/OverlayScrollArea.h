// SPDX-License-Identifier: MIT
#pragma once

#include <QScrollArea>

class QScrollBar;

namespace corvanta {

/// Scrolls its content vertically alone, with a bar that lies over the margin and takes no width.
class OverlayScrollArea final : public QScrollArea {
    Q_OBJECT

public:
    enum class Height { free, ofContent };

    /// With `ofContent` it asks for the height of its content and scrolls only what it is not given.
    explicit OverlayScrollArea(Height height, QWidget* parent = nullptr);

    /// Takes ownership of what is scrolled, which shows the ground that it lies on.
    void setContent(QWidget* content);

    [[nodiscard]] bool hasHeightForWidth() const override { return m_height == Height::ofContent; }

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void placeBar();

    Height m_height;
    QScrollBar* m_bar;
};

} // namespace corvanta
