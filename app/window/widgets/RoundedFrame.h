// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

namespace corvanta {

/// A hairline with round corners that lies over all of its parent and covers what sticks out at the corners, so that
/// the rows beneath may be rectangles and may scroll.
class RoundedFrame final : public QWidget {
    Q_OBJECT

public:
    /// Follows the size of `parent`.
    explicit RoundedFrame(QWidget& parent);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void cover();
};

} // namespace corvanta
