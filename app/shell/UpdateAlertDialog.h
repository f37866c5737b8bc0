// SPDX-License-Identifier: MIT
#pragma once

#include "support/URL.h"
#include "updates/UpdateAlert.h"

#include <QDialog>

namespace corvanta {

/// An alert about updates. Its texts are shown as they stand, however long they are and whatever they look like.
class UpdateAlertDialog final : public QDialog {
    Q_OBJECT

public:
    UpdateAlertDialog(const UpdateAlertContent& content, QWidget* parent);

Q_SIGNALS:
    /// A button that opens an address was pressed; the alert closes with it.
    void addressRequested(const corvanta::URL& address);

private:
    /// Null where there is nothing to say.
    [[nodiscard]] QWidget* makeMessage(const QString& message);
    [[nodiscard]] QWidget* makeButtons(const UpdateAlertContent& content);
};

} // namespace corvanta
