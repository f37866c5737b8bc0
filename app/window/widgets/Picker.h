// SPDX-License-Identifier: MIT
#pragma once

#include <QComboBox>

namespace corvanta {

/// A picker whose arrows say that it opens a list. What does not fit is elided, and the tooltip shows it whole.
class Picker final : public QComboBox {
    Q_OBJECT

public:
    explicit Picker(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace corvanta
