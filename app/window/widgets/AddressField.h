// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>

namespace corvanta {

/// A field for a page's address. One that does not fit shows its beginning, and the tooltip the whole of it.
class AddressField final : public QLineEdit {
    Q_OBJECT

public:
    explicit AddressField(QWidget* parent = nullptr);

    /// Replaces the text unless it is the same, so that nothing moves while somebody types.
    void showAddress(const QString& address);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void showWhatFits();
};

} // namespace corvanta
